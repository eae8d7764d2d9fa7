// SPDX-License-Identifier: MIT
#include "controls/theme/Fade.h"

#include "controls/theme/Theme.h"
#include "platform/windowing/Compositor.h"

#include <QEvent>
#include <QWidget>

namespace pintalux {

Fade::Fade(QWidget* faded, int in, int out, const QEasingCurve& curve)
    : QObject(faded)
    , widget(faded)
    , inMilliseconds(in)
    , outMilliseconds(out)
{
    animation.setEasingCurve(curve);
    connect(&animation, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        current = value.toDouble();
        widget->update();
    });
}

void Fade::setOn(bool on)
{
    const double target = on ? 1 : 0;
    const bool running = animation.state() == QAbstractAnimation::Running;
    if (target == (running ? animation.endValue().toDouble() : current))
        return;
    animation.stop();
    if (!widget->isVisible() || prefersReducedMotion()) {
        current = target;
        widget->update();
        return;
    }
    animation.setStartValue(current);
    animation.setEndValue(target);
    animation.setDuration(int((on ? inMilliseconds : outMilliseconds) * std::abs(target - current)));
    animation.start();
}

HoverFade::HoverFade(QWidget* hovered)
    : Fade(hovered, Theme::hoverInMilliseconds, Theme::hoverOutMilliseconds, QEasingCurve::Linear)
{
    hovered->installEventFilter(this);
}

bool HoverFade::eventFilter(QObject* watched, QEvent* event)
{
    const auto* hovered = static_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::Enter:
        setOn(hovered->isEnabled());
        break;
    case QEvent::EnabledChange:
        setOn(hovered->isEnabled() && hovered->underMouse());
        break;
    case QEvent::Leave:
    case QEvent::Hide:
        setOn(false);
        break;
    default:
        break;
    }
    return false;
}

} // namespace pintalux
