// SPDX-License-Identifier: MIT
#pragma once

#include "controls/theme/Fade.h"

#include <QAbstractButton>
#include <QPainterPath>

namespace pintalux {

class FocusRing;
struct Theme;

/// A button around the canvas. Its subclass paints it; this gives it its help, its states and its manners.
///
/// A click never takes the focus from the canvas; Tab, F6 and the arrow keys reach the button, and Return
/// presses it like Space. What it shows as chosen follows the model, so a click does not toggle it by itself.
class ChromeButton : public QAbstractButton {
    Q_OBJECT

public:
    /// `cornerRadius` is that of the button's shape, in points.
    ChromeButton(const QString& help, double cornerRadius, QWidget* parent);

    /// The tool tip, which is also the name for assistive technology; its key combinations are written out.
    void setHelp(const QString& help);
    /// While its popover or menu is open a button looks pressed.
    void setOpen(bool open);
    /// Shown as chosen.
    void setMarked(bool marked);
    bool isMarked() const { return isChecked(); }

protected:
    double cornerRadius() const { return radius; }
    /// Where the focus ring goes around, in the widget's points.
    virtual QRectF focusShape() const { return rect(); }
    void setFocusRadius(double radius);
    double hoverAmount() const { return hovering.amount(); } ///< 0 to 1
    double markedAmount() const { return marking.amount(); } ///< 0 to 1
    bool looksPressed() const { return isEnabled() && (isDown() || open); }
    const Theme& theme() const;

    /// Fills `shape` as the pointer's state asks: hovered, pressed or not at all.
    void fillForPointer(QPainter& painter, const QPainterPath& shape) const;

    void keyPressEvent(QKeyEvent* event) override;
    void nextCheckState() override { }

private:
    double radius;
    HoverFade hovering;
    Fade marking;
    FocusRing* ring;
    bool open = false;
};

} // namespace pintalux
