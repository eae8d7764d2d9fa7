// SPDX-License-Identifier: MIT
#include "editor/style/StyleButtons.h"

#include "controls/theme/ControlPainting.h"
#include "controls/theme/Theme.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/Symbol.h"

#include <QPainter>

namespace pintalux {

namespace {

// Points.
constexpr double ringWidth = 2;
constexpr double barLength = 16;
constexpr double dropDisc = 20;
constexpr double dropChevron = 14;
constexpr double dropInset = 4; ///< from the edge to the disc
constexpr double dropChevronInset = 1;

QRectF squareIn(const QRectF& rect, double side)
{
    return {rect.center() - QPointF(side, side) / 2, QSizeF(side, side)};
}

} // namespace

SwatchButton::SwatchButton(const QColor& color, const QString& name, QWidget* parent)
    : ChromeButton(name, Theme::toolRadius, parent)
    , offered(color)
{
}

void SwatchButton::setMetrics(const Metrics& lengths)
{
    metrics = lengths;
    setFocusRadius(focusShape().width() / 2);
    update();
}

/// Around the ring of a chosen colour, so that both can be seen.
QRectF SwatchButton::focusShape() const
{
    return squareIn(rect(), metrics.disc + 2 * (metrics.ringGap + ringWidth));
}

void SwatchButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const double chosen = markedAmount();
    const double grown = std::max(hoverAmount(), looksPressed() ? 1.0 : 0.0) * (1 - chosen);
    ControlPainting::swatch(QRectF(rect()).center(), std::lerp(metrics.disc, metrics.hoveredDisc, grown),
        offered, chosen, theme(), painter, metrics.ringGap);
}

ColorChooserButton::ColorChooserButton(const QString& help, QWidget* parent)
    : ChromeButton(help, Theme::toggleRadius, parent)
{
}

void ColorChooserButton::setColor(const QColor& color)
{
    current = color;
    update();
}

void ColorChooserButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF whole(rect());
    const double side = std::min(whole.width(), whole.height());
    fillForPointer(painter, Draw::roundedRect(squareIn(whole, side), cornerRadius()));
    ControlPainting::colorChooser(whole.center(), current, theme(), painter);
}

DropColorButton::DropColorButton(const QString& help, QWidget* parent)
    : ChromeButton(help, Theme::controlRadius, parent)
{
}

void DropColorButton::setColor(const QColor& color)
{
    current = color;
    update();
}

void DropColorButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF whole(rect());
    fillForPointer(painter, Draw::roundedRect(whole, cornerRadius()));
    const double middle = whole.center().y();
    ControlPainting::swatch({dropInset + dropDisc / 2, middle}, dropDisc, current, 0, theme(), painter);
    Symbol::draw(u"chevron",
        QRectF(whole.right() - dropChevronInset - dropChevron, middle - dropChevron / 2, dropChevron,
            dropChevron),
        theme().icon, painter);
}

WidthButton::WidthButton(double height, const QString& name, QWidget* parent)
    : ChromeButton(name, Theme::toggleRadius, parent)
    , barHeight(height)
{
}

void WidthButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF whole(rect());
    const auto path = Draw::roundedRect(whole, cornerRadius());
    const double marked = markedAmount();
    if (marked > 0)
        painter.fillPath(path, faded(theme().selected, marked));
    fillForPointer(painter, path);
    // Whole points from the top keep the thin bar sharp.
    const QRectF bar(
        (whole.width() - barLength) / 2, std::floor((whole.height() - barHeight) / 2), barLength, barHeight);
    painter.fillPath(Draw::roundedRect(bar, barHeight / 2), mixed(theme().icon, theme().onSelected, marked));
}

} // namespace pintalux
