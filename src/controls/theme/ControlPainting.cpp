// SPDX-License-Identifier: MIT
#include "controls/theme/ControlPainting.h"

#include "model/Palette.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/GraphicsContext.h"
#include "platform/graphics/TextBlock.h"
#include "platform/graphics/TextLine.h"

#include <QConicalGradient>
#include <QPainter>
#include <QWidget>

namespace pintalux::ControlPainting {

namespace {

constexpr double focusWidth = 2;
constexpr double focusGap = 2;
/// Height of the capitals of the interface's font, in parts of its size.
constexpr double capHeight = 0.727;

void strokeWithin(const QRectF& shape, double radius, const QColor& color, double width, QPainter& painter)
{
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(Draw::roundedRect(expanded(shape, -width / 2), std::max(0.0, radius - width / 2)));
}

QRectF around(QPointF center, double diameter)
{
    return {center - QPointF(diameter, diameter) / 2, QSizeF(diameter, diameter)};
}

/// For the length of a block the painter draws smoothly and is put back afterwards.
class Smooth {
public:
    explicit Smooth(QPainter& smoothed)
        : painter(smoothed)
    {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
    }
    Smooth(const Smooth&) = delete;
    Smooth& operator=(const Smooth&) = delete;
    ~Smooth() { painter.restore(); }

private:
    QPainter& painter;
};

} // namespace

void focusRing(const QRectF& shape, double radius, const Theme& theme, QPainter& painter)
{
    const Smooth smooth(painter);
    strokeWithin(expanded(shape, focusReach), radius + focusReach, theme.focus, focusWidth, painter);
    static_assert(focusReach == focusGap + focusWidth);
}

void hoverFill(
    const QRectF& shape, double radius, double amount, bool pressed, const Theme& theme, QPainter& painter)
{
    const auto fill = pressed ? theme.press : faded(theme.hover, amount);
    if (fill.alpha() == 0)
        return;
    const Smooth smooth(painter);
    painter.fillPath(Draw::roundedRect(shape, radius), fill);
}

double hairline(const QPainter& painter) { return 1 / std::max(1.0, painter.device()->devicePixelRatioF()); }

void box(const QRectF& shape, double radius, const QBrush& fill, const QColor& border, double borderWidth,
    QPainter& painter)
{
    const Smooth smooth(painter);
    painter.fillPath(Draw::roundedRect(shape, radius), fill);
    strokeWithin(shape, radius, border, borderWidth, painter);
}

void knob(QPointF center, const Knob& look, QPainter& painter)
{
    GraphicsContext context(painter);
    const GraphicsContext::Saved saved(context);
    const double scale = context.deviceScale();
    const auto disc = Draw::ellipse(around(center, look.diameter));
    context.setShadow({withAlpha(Qt::black, look.shadowAlpha), {0, scale}, look.shadowBlur * scale});
    context.fill(disc, QColor(Qt::white));
    context.clearShadow();
    if (look.ringAlpha > 0)
        context.stroke(
            Draw::ellipse(around(center, look.diameter + 0.5)), {withAlpha(Qt::black, look.ringAlpha), 0.5});
}

void control(const QWidget& widget, const std::function<void(QPainter&)>& paint, QPainter& painter)
{
    if (widget.isEnabled())
        return paint(painter);
    const double ratio = widget.devicePixelRatioF();
    QImage layer((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(ratio);
    layer.fill(Qt::transparent);
    {
        QPainter inner(&layer);
        paint(inner);
    }
    painter.setOpacity(Theme::disabledOpacity);
    painter.drawImage(QPointF(), layer);
    painter.setOpacity(1);
}

void checkerboard(const QRectF& rect, double cell, QPainter& painter)
{
    painter.fillRect(rect, Qt::white);
    for (int row = 0; row * cell < rect.height(); ++row)
        for (int column = row % 2; column * cell < rect.width(); column += 2)
            painter.fillRect(QRectF(rect.left() + column * cell, rect.top() + row * cell, cell, cell) & rect,
                QColor(0xD0, 0xD0, 0xD4));
}

void swatch(QPointF center, double diameter, const QColor& color, double chosen, const Theme& theme,
    QPainter& painter, double ringGap)
{
    constexpr double ringWidth = 2;
    const Smooth smooth(painter);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(around(center, diameter));
    painter.setPen(QPen(theme.swatchEdge(), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(around(center, diameter - 1));
    if (chosen <= 0)
        return;
    painter.setPen(QPen(withAlpha(theme.brand, chosen), ringWidth));
    painter.drawEllipse(around(center, diameter + 2 * ringGap + ringWidth));
}

void colorChooser(QPointF center, const QColor& current, const Theme& theme, QPainter& painter)
{
    constexpr double diameter = 20;
    constexpr double core = 12;
    constexpr std::array<QRgb, 8> hues{
        0xFF4D4D, 0xFFB02E, 0xFFE14D, 0x37D67A, 0x2FA8FF, 0x8E6CFF, 0xFF5FC4, 0xFF4D4D};
    // The toolkit turns counter-clockwise; the hues go round clockwise from the top.
    QConicalGradient ring(center, 90);
    for (std::size_t index = 0; index < hues.size(); ++index)
        ring.setColorAt(1 - double(index) / double(hues.size() - 1), QColor(hues[index]));
    const Smooth smooth(painter);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ring);
    painter.drawEllipse(around(center, diameter));
    painter.setBrush(theme.card);
    painter.drawEllipse(around(center, core + 4));
    painter.setBrush(current);
    painter.drawEllipse(around(center, core));
}

void text(const QString& text, const Font& font, const QColor& color, const QRectF& rect,
    Qt::Alignment alignment, QPainter& painter)
{
    const TextAttributes attributes{font, color};
    TextBlock block(text, attributes);
    if (block.size().width() > rect.width() + 0.5)
        block = TextBlock(shortenedInTheMiddle(text, attributes, rect.width()), attributes);
    const double width = block.size().width();
    double left = rect.left();
    if (alignment & Qt::AlignRight)
        left = rect.right() - width;
    else if (alignment & Qt::AlignHCenter)
        left = rect.center().x() - width / 2;
    const double baseLine = rect.center().y() + capHeight * font.size / 2;
    const double pixel = hairline(painter);
    block.draw(painter, {left, std::round(baseLine / pixel) * pixel - block.ascent()});
}

double textWidth(const QString& text, const Font& font)
{
    return TextBlock(text, {font, Qt::black}).size().width();
}

QStringList wrapped(const QString& text, const Font& font, double width)
{
    QStringList lines;
    QString line;
    for (const auto& word : text.split(u' ')) {
        const auto longer = line.isEmpty() ? word : line + u' ' + word;
        if (line.isEmpty() || textWidth(longer, font) <= width) {
            line = longer;
        } else {
            lines << line;
            line = word;
        }
    }
    return lines << line;
}

} // namespace pintalux::ControlPainting
