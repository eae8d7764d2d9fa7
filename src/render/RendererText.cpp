// SPDX-License-Identifier: MIT
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "render/RendererInternal.h"

#include <QLinearGradient>

namespace pintalux::Renderer {

namespace {

/// The white rim around callouts and steps, with the drop shadow of the whole.
void drawHalo(const QPainterPath& shape, double thickness, const MarkContext& context)
{
    const GraphicsContext::Saved saved(context.graphics);
    context.graphics.setShadow(context.standardShadow());
    context.graphics.stroke(shape, {withAlpha(Qt::white, 0.95), 2 * thickness});
}

/// Light from above at the height of `body`'s upper half, on the part of it that is inside `mask`.
void drawGloss(const QRectF& body, const QPainterPath& mask, double alpha, GraphicsContext& graphics)
{
    QLinearGradient light(QPointF(body.center().x(), body.top()), body.center());
    light.setColorAt(0, withAlpha(Qt::white, alpha));
    light.setColorAt(1, withAlpha(Qt::white, 0));
    const auto all = mask.boundingRect(); // a tail leaves the body at its sides, too
    const QRectF upperHalf(all.left(), body.top(), all.width(), body.height() / 2);
    graphics.fillWithin(upperHalf, mask, light);
}

void drawPlainText(const Annotation& mark, const MarkContext& context)
{
    if (!context.drawText)
        return;
    const bool dark = luminance(mark.color) <= 0.62;
    context.graphics.setShadow(
        context.shadow(dark ? withAlpha(Qt::white, 0.7) : withAlpha(Qt::black, 0.55), 0, 2.5));
    context.graphics.draw(mark.textBlock(), mark.start);
}

void drawCallout(const Annotation& mark, const MarkContext& context)
{
    auto& graphics = context.graphics;
    const auto bubble = mark.textBubble();
    const auto tip = mark.hasPointer() ? mark.pointer : std::nullopt;
    const auto shape = calloutShape(bubble, tip, mark.fontSize);
    drawHalo(shape, std::max(0.055 * mark.fontSize, 1.5 * context.scale()), context);
    graphics.fill(shape, mark.color);
    drawGloss(bubble, shape, 0.16, graphics);
    if (context.drawText)
        graphics.draw(mark.textBlock(), mark.start);
}

/// Twice the area that `path` goes round; negative counterclockwise.
double signedArea(const QPainterPath& path)
{
    double sum = 0;
    const auto polygon = path.toFillPolygon();
    for (qsizetype i = 1; i < polygon.size(); ++i)
        sum += polygon[i - 1].x() * polygon[i].y() - polygon[i].x() * polygon[i - 1].y();
    return sum;
}

/// Unites `shape` with `part` by the winding rule. The toolkit's own union would turn all curves into lines,
/// whose corners show in large marks. What a stroke draws inside the whole is covered by the fill after it.
void addPart(QPainterPath& shape, const QPainterPath& part)
{
    const bool sameSense = (signedArea(shape) < 0) == (signedArea(part) < 0);
    shape.addPath(sameSense ? part : part.toReversed());
}

double bubbleRadius(const QRectF& bubble, double fontSize)
{
    return std::min(bubble.height() / 2, 0.3 * fontSize);
}

/// Where a tail leaves the bubble: the middle of its base and half of the base along the edge.
struct TailBase {
    QPointF middle;
    QPointF half;
};

TailBase tailBase(const QRectF& bubble, QPointF tip, double fontSize)
{
    const double radius = bubbleRadius(bubble, fontSize);
    const auto middle = bubble.center();
    if (tip.y() > bubble.bottom() || tip.y() < bubble.top()) {
        const double half = std::max(0.26 * fontSize, std::min(0.48 * fontSize, 0.12 * bubble.width()));
        const double low = bubble.left() + radius + half;
        const double high = bubble.right() - radius - half;
        const double x
            = low <= high ? std::clamp(middle.x() + 0.6 * (tip.x() - middle.x()), low, high) : middle.x();
        return {{x, tip.y() > bubble.bottom() ? bubble.bottom() : bubble.top()}, {half, 0}};
    }
    const double half = std::max(0.22 * fontSize, std::min(0.4 * fontSize, 0.22 * bubble.height()));
    const double low = bubble.top() + radius + half;
    const double high = bubble.bottom() - radius - half;
    const double y = low <= high ? std::clamp(tip.y(), low, high) : middle.y();
    return {{tip.x() > bubble.right() ? bubble.right() : bubble.left(), y}, {0, half}};
}

} // namespace

void drawText(const Annotation& mark, const MarkContext& context)
{
    if (mark.text.isEmpty())
        return;
    if (mark.filled)
        drawCallout(mark, context);
    else
        drawPlainText(mark, context);
}

QPainterPath bubbleTail(const QRectF& bubble, QPointF tip, double fontSize)
{
    const auto [base, half] = tailBase(bubble, tip, fontSize);
    const auto axis = unit(tip - base, 0.001);
    const auto sunk = base - 0.9 * bubbleRadius(bubble, fontSize) * axis;

    QPainterPath path(sunk - half);
    path.setFillRule(Qt::WindingFill);
    path.lineTo(base - half);
    path.quadTo(midpoint(base - half, tip) + 0.42 * half, tip);
    path.quadTo(midpoint(tip, base + half) - 0.42 * half, base + half);
    path.lineTo(sunk + half);
    path.closeSubpath();
    return path;
}

QPainterPath calloutShape(const QRectF& bubble, std::optional<QPointF> tip, double fontSize)
{
    auto shape = Draw::roundedRect(bubble, bubbleRadius(bubble, fontSize));
    if (tip)
        addPart(shape, bubbleTail(bubble, *tip, fontSize));
    return shape;
}

QPainterPath calloutPath(QPointF center, double radius, QPointF tip)
{
    auto disc = Draw::ellipse(expanded(QRectF(center, QSizeF(0, 0)), radius));
    const double reach = distance(tip, center);
    if (reach <= 1.05 * radius)
        return disc;

    // Long tails get narrower.
    const double angle = direction(tip - center);
    const double opening = std::min(0.8, 0.8 - 0.03 * (reach / radius - 1.5));
    const auto first = center + polar(angle - opening, 0.94 * radius);
    const auto second = center + polar(angle + opening, 0.94 * radius);
    const auto across
        = leftNormal(polar(angle, 1)) * 0.05 * radius; // from the first base point to the second

    QPainterPath wedge(first);
    wedge.setFillRule(Qt::WindingFill);
    wedge.quadTo(midpoint(first, tip) + across, tip);
    wedge.quadTo(midpoint(tip, second) - across, second);
    wedge.lineTo(center);
    wedge.closeSubpath();
    addPart(disc, wedge);
    return disc;
}

void drawStep(const Annotation& mark, const MarkContext& context)
{
    auto& graphics = context.graphics;
    const double radius = mark.stepRadius();
    const auto disc = expanded(QRectF(mark.start, QSizeF(0, 0)), radius);
    const auto shape
        = mark.hasPointer() ? calloutPath(mark.start, radius, *mark.pointer) : Draw::ellipse(disc);
    drawHalo(shape, std::max(0.1 * radius, 1.5 * context.scale()), context);
    graphics.fill(shape, mark.color);
    drawGloss(disc, Draw::ellipse(disc), 0.22, graphics);

    const auto font = Draw::roundedFont(1.12 * radius, FontWeight::bold);
    const TextBlock number(QString::number(mark.number), {font, contrasting(mark.color)});
    const auto size = number.size();
    graphics.draw(number, mark.start - QPointF(size.width(), size.height()) / 2);
}

} // namespace pintalux::Renderer
