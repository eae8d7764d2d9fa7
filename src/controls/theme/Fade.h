// SPDX-License-Identifier: MIT
#pragma once

#include <QEasingCurve>
#include <QVariantAnimation>

class QWidget;

namespace pintalux {

/// A number that glides between 0 and 1 and repaints its widget: a hover fill, a toggle's cross-fade, a knob.
///
/// On desktops that ask for no motion, and while the widget is not on screen, it jumps.
class Fade : public QObject {
    Q_OBJECT

public:
    /// Times in milliseconds, up to 1 and back to 0.
    Fade(QWidget* widget, int inMilliseconds, int outMilliseconds, const QEasingCurve& curve);

    double amount() const { return current; }
    void setOn(bool on);

private:
    QWidget* widget;
    int inMilliseconds;
    int outMilliseconds;
    double current = 0;
    QVariantAnimation animation;
};

/// The fade of a widget's hover fill: follows the pointer over the whole widget by itself.
class HoverFade : public Fade {
    Q_OBJECT

public:
    explicit HoverFade(QWidget* widget);

    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace pintalux
