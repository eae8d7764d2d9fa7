// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

namespace pintalux {

/// Whether the person moves through the interface by keyboard: true from a key press until the next press of
/// a mouse button. Rings of the keyboard focus show only then.
bool isKeyboardInUse();

/// The ring around a control that has the keyboard focus.
///
/// The ring lies outside of the control, so it is a widget of its own beside it in the same parent, which
/// lets the mouse through. It shows only after keyboard use. Belongs to its control.
class FocusRing : public QObject {
    Q_OBJECT

public:
    /// `radius` is that of the control's shape.
    FocusRing(QWidget* control, double radius);
    ~FocusRing() override;

    /// What gives the control's visible shape in its own coordinates, where it is not the whole widget.
    void setShape(std::function<QRectF()> shape);
    void setRadius(double radius);
    /// Follows a shape that has changed.
    void place();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Ring;

    void follow();

    QWidget* control;
    std::function<QRectF()> shape; ///< none: the whole control
    double radius;
    QPointer<Ring> ring;
};

} // namespace pintalux
