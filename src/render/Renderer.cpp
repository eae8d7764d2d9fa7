// SPDX-License-Identifier: MIT
#include "render/Renderer.h"

#include "platform/graphics/Draw.h"
#include "render/RendererInternal.h"

namespace pintalux::Renderer {

Shadow MarkContext::shadow(const QColor& color, double drop, double blur) const
{
    const double devicePixels = scale() * graphics.deviceScale();
    return {color, {0, drop * devicePixels}, blur * devicePixels};
}

Shadow MarkContext::standardShadow() const { return shadow(QColor::fromRgbF(0, 0, 0, 0.32F), 1.2, 3.5); }

void draw(const Document& document, const BeautifySettings& beautify, EffectCache& cache,
    const Overlay& overlay, GraphicsContext& context)
{
    drawPicture(document, beautify, context);
    {
        const GraphicsContext::Saved saved(context);
        enterPicture(document, beautify, context);
        const QRectF composition(QPointF(), compositionSize(document.image, beautify, document.pixelScale));
        const auto behind = backdrop(document, beautify, [&](GraphicsContext& cleared) {
            const GraphicsContext::Saved blended(cleared);
            cleared.setBlendMode(QPainter::CompositionMode_Clear);
            cleared.fill(composition, QColor(Qt::black));
        });
        for (const auto& mark : document.annotations)
            if (overlay.hiddenID != mark.id)
                drawAnnotation(mark, document, cache, context, true, behind);
        if (overlay.draft)
            drawAnnotation(
                *overlay.draft, document, cache, context, overlay.glyphlessID != overlay.draft->id, behind);
    }
    drawOverlay(document, beautify, overlay, context);
}

void drawPicture(const Document& document, const BeautifySettings& beautify, GraphicsContext& context)
{
    const double scale = document.pixelScale;
    const GraphicsContext::Saved saved(context);
    if (beautify.enabled) {
        const auto outline = imageOutline(imageRect(document.image, beautify, scale), beautify, scale);
        drawFrameBackground(
            compositionSize(document.image, beautify, scale), outline, beautify, scale, context);
    }
    enterPicture(document, beautify, context);
    context.setInterpolation(GraphicsContext::Interpolation::high);
    Draw::image(document.image, QRectF(document.image.rect()), context);
}

void enterPicture(const Document& document, const BeautifySettings& beautify, GraphicsContext& context)
{
    const double scale = document.pixelScale;
    const auto frame = imageRect(document.image, beautify, scale);
    if (beautify.enabled && beautify.cornerRadius > 0)
        context.clip(imageOutline(context.pixelAligned(frame), beautify, scale));
    else
        context.clip(frame);
    context.translate(frame.topLeft());
}

void drawOverlay(const Document& document, const BeautifySettings& beautify, const Overlay& overlay,
    GraphicsContext& context)
{
    {
        const GraphicsContext::Saved saved(context);
        enterPicture(document, beautify, context);
        const auto* selected = overlay.selectedID ? document.annotation(*overlay.selectedID) : nullptr;
        if (selected)
            drawSelection(*selected, context);
        const auto* withNodes = overlay.nodesFor ? document.annotation(*overlay.nodesFor) : nullptr;
        if (withNodes && withNodes->hasNodes())
            drawNodes(*withNodes, overlay.pointScale, context);
        if (overlay.crop)
            drawCropOverlay(*overlay.crop, document.imageSize(), context);
    }
    if (beautify.enabled && beautify.border)
        drawFrameBorder(
            imageRect(document.image, beautify, document.pixelScale), beautify, document.pixelScale, context);
}

void drawAnnotation(const Annotation& annotation, const Document& document, EffectCache& cache,
    GraphicsContext& graphics, bool withText, const Backdrop& backdrop)
{
    const GraphicsContext::Saved saved(graphics);
    const MarkContext context{document, cache, graphics, withText, backdrop};
    switch (annotation.kind) {
    case AnnotationKind::arrow:
        return drawArrow(annotation, context);
    case AnnotationKind::rectangle:
    case AnnotationKind::ellipse:
        return drawShape(annotation, context);
    case AnnotationKind::line:
        return drawLine(annotation, context);
    case AnnotationKind::pen:
    case AnnotationKind::highlighter:
        return drawFreehand(annotation, context);
    case AnnotationKind::text:
        return drawText(annotation, context);
    case AnnotationKind::step:
        return drawStep(annotation, context);
    case AnnotationKind::blur:
        return drawBlur(annotation, context);
    case AnnotationKind::image:
        return drawInsertedImage(annotation, context);
    }
}

} // namespace pintalux::Renderer
