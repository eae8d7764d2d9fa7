// SPDX-License-Identifier: MIT
#include "controls/BarButton.h"

#include "controls/theme/Theme.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Symbol.h"

#include <QPainter>

namespace pintalux {

namespace {

constexpr int dividerHeight = 18;

QPainterPath shapeOf(const QRectF& rect, const BarButton::Metrics& metrics)
{
    const double radius = metrics.radius;
    if (metrics.part == BarButton::Part::whole)
        return Draw::roundedRect(rect, radius);
    const bool leading = metrics.part == BarButton::Part::leading;
    const auto beyond = leading ? rect.adjusted(0, 0, radius, 0) : rect.adjusted(-radius, 0, 0, 0);
    QPainterPath half;
    half.addRect(rect);
    return Draw::roundedRect(beyond, radius).intersected(half);
}

} // namespace

BarButton::BarButton(const QString& name, const QString& help, QWidget* parent, const Metrics& lengths)
    : ChromeButton(help, lengths.radius, parent)
    , symbol(name)
    , metrics(lengths)
{
    setFixedSize(metrics.size);
}

BarButton::BarButton(const QString& name, const QString& help, QWidget* parent)
    : BarButton(name, help, parent, Metrics{})
{
}

void BarButton::setSymbol(const QString& name)
{
    symbol = name;
    update();
}

void BarButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto path = shapeOf(rect(), metrics);
    const double marked = markedAmount();
    if (marked > 0)
        painter.fillPath(path, faded(theme().selected, marked));
    fillForPointer(painter, path);
    QRectF place(0, 0, metrics.symbolSize, metrics.symbolSize);
    place.moveCenter(QRectF(rect()).center());
    const auto color = isEnabled() ? mixed(theme().icon, theme().onSelected, marked) : theme().disabled;
    Symbol::draw(symbol, place, color, painter);
}

BarDivider::BarDivider(int leading, int trailing, QWidget* parent)
    : QWidget(parent)
    , before(leading)
{
    setFixedSize(leading + 1 + trailing, dividerHeight);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void BarDivider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(QRectF(before, 0, 1, height()), Theme::of(palette()).hair);
}

} // namespace pintalux
