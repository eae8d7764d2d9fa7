#pragma once

#include "editor/ChromeButton.h"
#include "model/Tool.h"

namespace pintalux {

/// One way to draw arrows, shown by an arrow drawn that way.
class ArrowStyleIcon : public ChromeButton {
    Q_OBJECT

public:
    ArrowStyleIcon(ArrowStyle style, QWidget* parent);

    ArrowStyle style() const { return shownStyle; }

    /// Draws the preview in a box of 44 × 36 points whose top-left corner is the painter's origin.
    static void draw(ArrowStyle style, const QColor& color, QPainter& painter);

    static constexpr QSize box{44, 36}; ///< points

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ArrowStyle shownStyle;
};

} // namespace pintalux
