// SPDX-License-Identifier: MIT
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "render/RendererInternal.h"

#include <algorithm>

namespace pintalux::Renderer {

void drawShape(const Annotation& mark, const MarkContext& context)
{
    const auto rect = mark.rect();
    context.graphics.setShadow(context.standardShadow());
    const auto path = mark.kind == AnnotationKind::ellipse
        ? Draw::ellipse(rect)
        : Draw::roundedRect(rect, 2 * context.scale() + 1.4 * mark.lineWidth);
    if (mark.filled)
        context.graphics.fill(path, mark.color);
    else
        context.graphics.stroke(path, {mark.color, mark.lineWidth});
}

void drawLine(const Annotation& mark, const MarkContext& context)
{
    QPainterPath path(mark.start);
    if (mark.control)
        path.quadTo(*mark.control, mark.end);
    else
        path.lineTo(mark.end);
    context.graphics.setShadow(context.standardShadow());
    context.graphics.stroke(path, {mark.color, mark.lineWidth});
}

void drawFreehand(const Annotation& mark, const MarkContext& context)
{
    auto& graphics = context.graphics;
    const auto path = smoothPath(mark.points);
    if (mark.kind == AnnotationKind::pen) {
        graphics.setShadow(context.standardShadow());
        graphics.stroke(path, {mark.color, mark.lineWidth});
        return;
    }
    // Multiplying darkens what lies beneath without hiding it, as a real highlighter does.
    graphics.setBlendMode(QPainter::CompositionMode_Multiply);
    graphics.setAlpha(0.42);
    graphics.stroke(path, {mark.color, 5 * mark.lineWidth, Qt::SquareCap});
}

void drawInsertedImage(const Annotation& mark, const MarkContext& context)
{
    const auto rect = mark.rect();
    if (mark.image.isNull() || rect.width() <= 1 || rect.height() <= 1)
        return;
    auto& graphics = context.graphics;
    const double scale = context.scale();
    const auto path
        = Draw::roundedRect(rect, std::min(0.08 * std::min(rect.width(), rect.height()), 10 * scale));
    {
        const GraphicsContext::Saved saved(graphics);
        graphics.setShadow(context.shadow(withAlpha(Qt::black, 0.3), 4, 14));
        graphics.fill(path, QColor(Qt::white));
    }
    graphics.drawImage(mark.image, rect, path);
    graphics.stroke(path, {withAlpha(Qt::white, 0.5), scale});
}

} // namespace pintalux::Renderer
