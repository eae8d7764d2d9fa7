// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorModel.h"

#include <QWidget>

namespace pintalux {

/// Shows what the next stroke will look like, drawn by the renderer in the current colour and width.
class StrokeSample : public QWidget {
    Q_OBJECT

public:
    StrokeSample(EditorModel& model, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Annotation mark() const;
    QImage renderStroke(double ratio) const;

    EditorModel& model;
};

} // namespace pintalux
