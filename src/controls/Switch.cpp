// SPDX-License-Identifier: MIT
#include "controls/Switch.h"

#include "controls/theme/ControlPainting.h"
#include "controls/theme/FocusRing.h"
#include "platform/graphics/Draw.h"

#include <QKeyEvent>
#include <QPainter>

namespace pintalux {

namespace {

constexpr QSize pillSize(34, 20);
constexpr double knobTravel = 14;

} // namespace

Switch::Switch(const QString& name, QWidget* parent)
    : QAbstractButton(parent)
    , knob(this, Theme::knobMilliseconds, Theme::knobMilliseconds, QEasingCurve::InOutCubic)
    , color(this, Theme::toggleMilliseconds, Theme::toggleMilliseconds, QEasingCurve::OutCubic)
    , hover(this)
{
    setCheckable(true);
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setFixedSize(pillSize);
    new FocusRing(this, pillSize.height() / 2.0);
    connect(this, &QAbstractButton::toggled, this, [this](bool on) {
        knob.setOn(on);
        color.setOn(on);
    });
}

QSize Switch::sizeHint() const { return pillSize; }

bool Switch::hitButton(const QPoint& position) const { return rect().contains(position); }

void Switch::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void Switch::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    ControlPainting::control(
        *this, [this](QPainter& on) { paint(on); }, painter);
}

void Switch::paint(QPainter& painter) const
{
    const auto& theme = Theme::of(palette());
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF pill(QPointF(0, 0), pillSize);
    const double radius = pill.height() / 2;
    const auto shape = Draw::roundedRect(pill, radius);
    if (color.amount() < 1)
        painter.fillPath(shape, theme.off);
    painter.setOpacity(color.amount());
    painter.fillPath(shape, Theme::brandGradient(pill));
    painter.setOpacity(1);
    ControlPainting::hoverFill(pill, radius, hover.amount(), isDown(), theme, painter);
    ControlPainting::knob(
        {radius + knob.amount() * knobTravel, radius}, ControlPainting::switchKnob, painter);
}

} // namespace pintalux
