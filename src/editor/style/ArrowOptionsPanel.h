// SPDX-License-Identifier: MIT
#pragma once

#include "controls/FloatingCard.h"
#include "editor/state/EditorModel.h"
#include "editor/state/StyleActions.h"

namespace pintalux {

class ArrowStyleIcon;
class DropColorButton;
class WedgeSlider;

/// Style, width and colour of arrows, floating beside the palette while the arrow tool is chosen. The window
/// places it and shows it by the model's tool and `showArrowOptions`.
class ArrowOptionsPanel : public FloatingCard {
    Q_OBJECT

public:
    ArrowOptionsPanel(EditorModel& model, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void makeStyles();
    void makeWidth();
    void makeColor();
    void refresh();

    EditorModel& model;
    WidthGesture gesture;
    QList<ArrowStyleIcon*> styles;
    WedgeSlider* wedge = nullptr;
    DropColorButton* color = nullptr;
    QString writtenWidth; ///< as it is written beside the slider
};

} // namespace pintalux
