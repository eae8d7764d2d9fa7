// SPDX-License-Identifier: MIT
#include "capture/OverlayDrawing.h"

#include "model/Palette.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/image/PixelSampler.h"

using namespace Qt::StringLiterals;

namespace pintalux::OverlayDrawing {

namespace {

QColor white(double alpha) { return withAlpha(Qt::white, alpha); }
QColor black(double alpha) { return withAlpha(Qt::black, alpha); }

Stroke sharp(const QColor& color, double width)
{
    return {.color = color, .width = width, .cap = Qt::FlatCap, .join = Qt::MiterJoin};
}

QPainterPath box(const QRectF& rect)
{
    QPainterPath path;
    path.addRect(rect);
    return path;
}

/// Dims `area` but for `bright`, side by side: rectangles are blended much faster than a path.
void dimAround(const QRectF& bright, const QRectF& area, GraphicsContext& context)
{
    const auto shade = black(0.38);
    if (bright.isEmpty())
        return context.fill(area, shade);
    context.fill(QRectF(area.topLeft(), QPointF(area.right(), bright.top())), shade);
    context.fill(QRectF(QPointF(area.left(), bright.bottom()), area.bottomRight()), shade);
    context.fill(QRectF(QPointF(area.left(), bright.top()), bright.bottomLeft()), shade);
    context.fill(QRectF(bright.topRight(), QPointF(area.right(), bright.bottom())), shade);
}

void dim(const OverlayLayout& layout, const QRectF& damage, GraphicsContext& context)
{
    // Beyond the damage, or its edges would be half covered where points do not fall on pixels.
    const auto reach = expanded(damage, 2);
    if (!layout.selection)
        return context.fill(reach, black(0.38));
    if (context.isPixelAligned(*layout.selection))
        return dimAround(*layout.selection & reach, reach, context);
    QPainterPath outside = box(reach);
    outside.setFillRule(Qt::OddEvenFill);
    outside.addRect(*layout.selection);
    context.fill(outside, black(0.38));
}

/// The stroke of a large rectangle, side by side: as a path it would cost milliseconds.
void strokeSides(const QRectF& rect, const QColor& color, double width, GraphicsContext& context)
{
    const auto outer = expanded(rect, width / 2);
    const double between = outer.height() - 2 * width;
    context.fill(QRectF(outer.left(), outer.top(), outer.width(), width), color);
    context.fill(QRectF(outer.left(), outer.bottom() - width, outer.width(), width), color);
    context.fill(QRectF(outer.left(), outer.top() + width, width, between), color);
    context.fill(QRectF(outer.right() - width, outer.top() + width, width, between), color);
}

void drawFrame(const QRectF& selection, bool handles, GraphicsContext& context)
{
    strokeSides(expanded(selection, 0.5), white(0.9), 1, context);
    strokeSides(expanded(selection, 2), withAlpha(Palette::brand, 0.9), 2, context);
    if (!handles)
        return;
    constexpr double radius = 4;
    for (const auto corner :
        {selection.topLeft(), selection.topRight(), selection.bottomLeft(), selection.bottomRight()})
        context.fillAndStroke(
            Draw::ellipse(expanded(QRectF(corner, QSizeF()), radius)), Qt::white, {Palette::brand, 1.5});
}

void drawBar(const OverlayLayout::Bar& bar, GraphicsContext& context)
{
    Draw::pill(bar.frame, withAlpha(QColor::fromRgbF(0.08f, 0.08f, 0.08f), 0.78), context);
    const auto outline = expanded(bar.frame, -0.5);
    context.stroke(Draw::roundedRect(outline, bar.frame.height() / 2 - 0.5), {white(0.14), 1});
    bar.text.draw(context, bar.textOrigin);
}

void drawPixels(const OverlayLayout::Loupe& loupe, const QImage& image, GraphicsContext& context)
{
    constexpr int reach = loupePixels / 2;
    const QRect source(loupe.pixel - QPoint(reach, reach), QSize(loupePixels, loupePixels));
    const QRect crop = source & image.rect();
    if (crop.isEmpty())
        return;
    const auto offset = QPointF(crop.topLeft() - source.topLeft()) * loupeCell;
    context.setInterpolation(GraphicsContext::Interpolation::none);
    context.drawImage(image, QRectF(loupe.frame.topLeft() + offset, QSizeF(crop.size()) * loupeCell), crop);
}

void drawGrid(const QRectF& frame, GraphicsContext& context)
{
    QPainterPath grid;
    for (int k = 1; k < loupePixels; ++k) {
        const double along = k * loupeCell;
        grid.moveTo(frame.left() + along, frame.top());
        grid.lineTo(frame.left() + along, frame.bottom());
        grid.moveTo(frame.left(), frame.top() + along);
        grid.lineTo(frame.right(), frame.top() + along);
    }
    context.stroke(grid, sharp(white(0.12), 0.5));
    constexpr int before = loupePixels / 2;
    constexpr double middle = before * loupeCell;
    const QRectF centre(frame.topLeft() + QPointF(middle, middle), QSizeF(loupeCell, loupeCell));
    context.stroke(box(expanded(centre, 2)), sharp(withAlpha(Qt::black, 0.45), 1)); // seen on white too
    context.stroke(box(expanded(centre, 0.75)), sharp(Qt::white, 1.5));
}

void drawReadout(const OverlayLayout::Loupe& loupe, const QImage& image, GraphicsContext& context)
{
    const auto& pill = loupe.readout;
    Draw::pill(pill, black(0.75), context);
    const auto color = PixelSampler::color(image, loupe.pixel.x(), loupe.pixel.y());
    if (color) {
        const QRectF swatch(pill.left() + 7, pill.center().y() - 6, 12, 12);
        context.fillAndStroke(Draw::ellipse(swatch), *color, {white(0.8), 1});
    }
    const TextBlock text(readoutText(color ? hexString(*color) : u"—"_s, loupe.pixel), readoutAttributes());
    context.draw(text, {pill.left() + 24, pill.center().y() - text.size().height() / 2});
}

void drawLoupe(const OverlayLayout::Loupe& loupe, const QImage& image, GraphicsContext& context)
{
    constexpr double radius = 16;
    const auto body = Draw::roundedRect(loupe.frame, radius);
    {
        const GraphicsContext::Saved saved(context);
        const double scale = context.deviceScale();
        context.setShadow({black(0.45), QPointF(0, 6) * scale, 18 * scale});
        context.fill(body, Qt::black);
    }
    {
        const GraphicsContext::Saved saved(context);
        context.clip(body);
        drawPixels(loupe, image, context);
        drawGrid(loupe.frame, context);
    }
    context.stroke(Draw::roundedRect(expanded(loupe.frame, -0.5), radius), {white(0.85), 1.5});
    drawReadout(loupe, image, context);
}

} // namespace

void draw(const OverlayLayout& layout, const QImage& image, const QRectF& damage, GraphicsContext& context)
{
    context.setInterpolation(GraphicsContext::Interpolation::high);
    Draw::image(image, layout.picture, context);
    if (layout.isDimmed())
        dim(layout, damage, context);
    if (layout.selection)
        drawFrame(*layout.selection, layout.hasHandles(), context);
    if (layout.label && layout.label->pill.intersects(damage)) {
        Draw::pill(layout.label->pill, black(0.72), context);
        layout.label->text.draw(context, layout.label->textOrigin);
    }
    if (layout.loupe)
        drawLoupe(*layout.loupe, image, context);
    if (layout.bar && layout.bar->frame.intersects(damage))
        drawBar(*layout.bar, context);
}

} // namespace pintalux::OverlayDrawing
