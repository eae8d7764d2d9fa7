// SPDX-License-Identifier: MIT
#include "platform/graphics/Geometry.h"
#include "render/Renderer.h"

namespace pintalux::Renderer {

namespace {

/// How far a shadow of `drop` and `blur` points leaves its caster, in points: its Gaussian ends after 3.5 σ.
constexpr double shadowReach(double drop, double blur) { return drop + 3.5 * blur / 2; }

QRectF shape(const Annotation& mark, double scale)
{
    const double width = mark.lineWidth;
    switch (mark.kind) {
    case AnnotationKind::arrow: {
        // Barbs, the outline's stroke and a sketch's bow leave the curve by parts of width and length.
        const auto curve = boundsOf(mark.curveSamples());
        return expanded(curve, std::max(7 * width, 16 * scale) + 0.02 * length(mark.end - mark.start));
    }
    case AnnotationKind::highlighter:
        return expanded(boundsOf(mark.points), 5 * width);
    case AnnotationKind::text:
    case AnnotationKind::step:
        // The white rim is a tenth of the radius at most; glyphs may leave their line boxes.
        return expanded(mark.bounds(), mark.fontSize + width + 2 * scale);
    case AnnotationKind::blur:
        return redactedRegion(mark, scale);
    case AnnotationKind::rectangle:
    case AnnotationKind::ellipse:
    case AnnotationKind::line:
    case AnnotationKind::pen:
    case AnnotationKind::image:
        break;
    }
    return mark.bounds();
}

} // namespace

QRectF paintedBounds(const Annotation& mark, double scale, double devicePixel)
{
    const double reach = mark.kind == AnnotationKind::image ? shadowReach(4, 14) : shadowReach(1.2, 3.5);
    return expanded(shape(mark, scale), reach * scale + 2 * devicePixel);
}

QRectF selectionBounds(const Annotation& mark, double devicePixel)
{
    return expanded(mark.bounds(), 2 * devicePixel);
}

QRectF nodeBounds(const Annotation& mark, double pointScale)
{
    QRectF bounds = mark.kind == AnnotationKind::text ? mark.textBubble() : mark.rect();
    if (mark.isCurvable())
        bounds = united(bounds, mark.curveMidpoint());
    if (mark.supportsPointer())
        bounds = united(bounds, mark.pointerNode());
    constexpr double handleAndShadow = 6 + shadowReach(1, 3) + 1;
    return expanded(bounds, handleAndShadow * pointScale);
}

} // namespace pintalux::Renderer
