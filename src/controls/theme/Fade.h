// SPDX-License-Identifier: MIT
#pragma once

#include <QEasingCurve>
#include <QVariantAnimation>

class QWidget;

namespace pintalux {

/// True when the desktop asks programs not to animate.
bool prefersReducedMotion();

/// A number that glides between 0 and 1 for a widget: its place, its opacity.
///
/// On desktops that ask for no motion, and while the widget is not on screen, it jumps.
class Glide : public QObject {
    Q_OBJECT

public:
    /// Times in milliseconds, up to 1 and back to 0. It starts at 0.
    Glide(QWidget* widget, int inMilliseconds, int outMilliseconds, const QEasingCurve& curve);

    double amount() const { return current; }
    /// Where it is or glides to.
    bool isOn() const { return on; }
    bool isRunning() const { return animation.state() == QAbstractAnimation::Running; }

    void setOn(bool on, bool instantly = false);
    /// Jumps without being finished.
    void jump(bool on);
    void setCurve(const QEasingCurve& curve) { animation.setEasingCurve(curve); }

Q_SIGNALS:
    void changed(); ///< at each step
    void finished();

private:
    QWidget* widget;
    int inMilliseconds;
    int outMilliseconds;
    bool on = false;
    double current = 0;
    QVariantAnimation animation;
};

/// One that repaints its widget: a hover fill, a toggle's cross-fade, a knob.
class Fade : public Glide {
    Q_OBJECT

public:
    Fade(QWidget* widget, int inMilliseconds, int outMilliseconds, const QEasingCurve& curve);
};

/// The fade of a widget's hover fill: follows the pointer over the whole widget by itself.
class HoverFade : public Fade {
    Q_OBJECT

public:
    explicit HoverFade(QWidget* widget);

    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace pintalux
