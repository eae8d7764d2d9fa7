// SPDX-License-Identifier: MIT
#include "controls/theme/Fade.h"

#include "controls/theme/Theme.h"

#include <QApplication>
#include <QEvent>
#include <QStyle>
#include <QWidget>

namespace pintalux {

bool prefersReducedMotion()
{
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) <= 0;
}

Glide::Glide(QWidget* glided, int in, int out, const QEasingCurve& curve)
    : QObject(glided)
    , widget(glided)
    , inMilliseconds(in)
    , outMilliseconds(out)
{
    animation.setEasingCurve(curve);
    connect(&animation, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        current = value.toDouble();
        Q_EMIT changed();
    });
    connect(&animation, &QVariantAnimation::finished, this, &Glide::finished);
}

void Glide::setOn(bool wanted, bool instantly)
{
    if (wanted == on)
        return;
    if (instantly || !widget->isVisible() || prefersReducedMotion()) {
        jump(wanted);
        Q_EMIT finished();
        return;
    }
    animation.stop();
    on = wanted;
    const double target = on ? 1 : 0;
    animation.setStartValue(current);
    animation.setEndValue(target);
    animation.setDuration(int((on ? inMilliseconds : outMilliseconds) * std::abs(target - current)));
    animation.start();
}

void Glide::jump(bool wanted)
{
    animation.stop();
    on = wanted;
    current = on ? 1 : 0;
    Q_EMIT changed();
}

Fade::Fade(QWidget* faded, int in, int out, const QEasingCurve& curve)
    : Glide(faded, in, out, curve)
{
    connect(this, &Glide::changed, faded, [faded] { faded->update(); });
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
