// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorModel.h"

#include <QWidget>

namespace pintalux {

class Switch;

/// The decorative frame's settings: on or off, background, margin, corners and more. The contents of a
/// popover.
class BeautifyPanel : public QWidget {
    Q_OBJECT

public:
    explicit BeautifyPanel(EditorModel& model, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Details;

    void refresh();

    EditorModel& model;
    Switch* enabled;
    Details* details; ///< of use only while the frame is on
};

} // namespace pintalux
