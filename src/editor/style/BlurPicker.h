// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorModel.h"

#include <QWidget>

#include <array>

namespace pintalux {

/// Chooses between the two ways to make something unreadable.
class BlurPicker : public QWidget {
    Q_OBJECT

public:
    BlurPicker(EditorModel& model, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class Segment;

    std::array<Segment*, 2> segments;
};

} // namespace pintalux
