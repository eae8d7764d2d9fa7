// SPDX-License-Identifier: MIT
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "render/RendererInternal.h"

namespace pintalux::Renderer {

namespace {

const QColor handleOutline = QColor::fromRgbF(0.45F, 0.45F, 0.45F);
const QColor plusGrey = QColor::fromRgbF(0.35F, 0.35F, 0.35F);

Stroke sharp(const QColor& color, double width, const QList<double>& dashes = {})
{
    return {color, width, Qt::FlatCap, Qt::MiterJoin, dashes};
}

QPainterPath rectPath(const QRectF& rect) { return Draw::roundedRect(rect, 0); }

/// Draws the handles of one mark, all `pointScale` times as large as on screen.
class Handles {
public:
    Handles(double pointScale, GraphicsContext& graphics)
        : p(pointScale)
        , graphics(graphics)
    {
    }

    void add(QPointF center, const QColor& fill = Qt::white, const QColor& outline = handleOutline)
    {
        const auto square = expanded(QRectF(center, QSizeF(0, 0)), 6 * p);
        {
            const GraphicsContext::Saved saved(graphics);
            const double device = graphics.deviceScale();
            graphics.setShadow({withAlpha(Qt::black, 0.4), {0, p * device}, 3 * p * device});
            graphics.fill(Draw::roundedRect(square, 2.5 * p), fill);
        }
        graphics.stroke(Draw::roundedRect(expanded(square, -0.5 * p), 2 * p), {outline, p});
    }

    /// The tail's handle; a plus sign invites to pull a tail out while there is none.
    void addPointer(const Annotation& mark)
    {
        const auto center = mark.pointerNode();
        add(center);
        if (mark.hasPointer())
            return;
        const double arm = 3 * p;
        auto plus = Draw::polyline({center - QPointF(arm, 0), center + QPointF(arm, 0)});
        plus.addPath(Draw::polyline({center - QPointF(0, arm), center + QPointF(0, arm)}));
        graphics.stroke(plus, sharp(plusGrey, 1.4 * p));
    }

    void addCurve(const Annotation& mark)
    {
        const auto guide = Draw::polyline({mark.start, mark.curveMidpoint(), mark.end});
        graphics.stroke(guide, sharp(withAlpha(Palette::brand, 0.55), p, {4 * p, 3 * p}));
        add(mark.start);
        add(mark.end);
        add(mark.curveMidpoint(), Palette::brand, Qt::white);
    }

    void addCallout(const Annotation& mark)
    {
        const auto bubble = mark.textBubble();
        add({bubble.left(), bubble.center().y()});
        add({bubble.right(), bubble.center().y()});
        addPointer(mark);
    }

    void addImage(const Annotation& mark)
    {
        graphics.stroke(
            rectPath(mark.rect()), sharp(withAlpha(Palette::brand, 0.8), 1.2 * p, {5 * p, 3 * p}));
        for (const auto corner : mark.imageCorners())
            add(corner);
    }

private:
    double p;
    GraphicsContext& graphics;
};

} // namespace

void drawSelection(const Annotation& mark, GraphicsContext& context)
{
    const GraphicsContext::Saved saved(context);
    context.clearShadow();
    const double devicePixel = 1 / context.deviceScale();
    context.stroke(rectPath(mark.bounds()),
        sharp(Palette::brand, 1.5 * devicePixel, {5 * devicePixel, 4 * devicePixel}));
}

void drawNodes(const Annotation& mark, double pointScale, GraphicsContext& context)
{
    const GraphicsContext::Saved saved(context);
    context.clearShadow();
    Handles handles(pointScale, context);
    if (mark.isCurvable())
        handles.addCurve(mark);
    else if (mark.kind == AnnotationKind::step)
        handles.addPointer(mark);
    else if (mark.kind == AnnotationKind::image)
        handles.addImage(mark);
    else if (mark.supportsPointer())
        handles.addCallout(mark);
}

void drawCropOverlay(const QRectF& crop, const QSizeF& imageSize, GraphicsContext& context)
{
    const GraphicsContext::Saved saved(context);
    context.clearShadow();
    const double devicePixel = 1 / context.deviceScale();

    QPainterPath outside;
    outside.setFillRule(Qt::OddEvenFill);
    outside.addRect(QRectF(QPointF(), imageSize));
    outside.addRect(crop);
    context.fill(outside, withAlpha(Qt::black, 0.5));

    QPainterPath guides;
    for (const double third : {1 / 3.0, 2 / 3.0}) {
        const double x = crop.left() + third * crop.width();
        const double y = crop.top() + third * crop.height();
        guides.addPath(Draw::polyline({{x, crop.top()}, {x, crop.bottom()}}));
        guides.addPath(Draw::polyline({{crop.left(), y}, {crop.right(), y}}));
    }
    context.stroke(guides, sharp(withAlpha(Qt::white, 0.35), devicePixel));
    context.stroke(rectPath(crop), sharp(Qt::white, 1.5 * devicePixel));

    const double arm = std::min({18 * devicePixel, crop.width() / 3, crop.height() / 3});
    QPainterPath brackets;
    for (const double x : {crop.left(), crop.right()}) {
        for (const double y : {crop.top(), crop.bottom()}) {
            const double inwardX = x == crop.left() ? arm : -arm;
            const double inwardY = y == crop.top() ? arm : -arm;
            brackets.addPath(Draw::polyline({{x + inwardX, y}, {x, y}, {x, y + inwardY}}));
        }
    }
    context.stroke(brackets, {Qt::white, 4 * devicePixel});
}

} // namespace pintalux::Renderer
