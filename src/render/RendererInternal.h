// SPDX-License-Identifier: MIT
#pragma once

#include "render/Renderer.h"

/// What the renderer's files share among themselves.
namespace pintalux::Renderer {

/// What every mark is drawn with.
struct MarkContext {
    const Document& document;
    EffectCache& cache;
    GraphicsContext& graphics;
    bool drawText;
    const Backdrop& backdrop;

    double scale() const { return document.pixelScale; }
    /// A shadow given per point of the captured display, for the current transform.
    Shadow shadow(const QColor& color, double drop, double blur) const;
    Shadow standardShadow() const;
};

void drawArrow(const Annotation& mark, const MarkContext& context);
void drawShape(const Annotation& mark, const MarkContext& context);
void drawLine(const Annotation& mark, const MarkContext& context);
void drawFreehand(const Annotation& mark, const MarkContext& context);
void drawText(const Annotation& mark, const MarkContext& context);
void drawStep(const Annotation& mark, const MarkContext& context);
void drawBlur(const Annotation& mark, const MarkContext& context);
void drawInsertedImage(const Annotation& mark, const MarkContext& context);

/// Dashed frame around the selected mark.
void drawSelection(const Annotation& mark, GraphicsContext& context);
/// The handles of a mark; `pointScale` is document pixels per point on screen.
void drawNodes(const Annotation& mark, double pointScale, GraphicsContext& context);
/// Dims what a crop would cut off and frames the rest.
void drawCropOverlay(const QRectF& crop, const QSizeF& imageSize, GraphicsContext& context);

/// The rounded outline of the image within its composition.
QPainterPath imageOutline(const QRectF& imageRect, const BeautifySettings& beautify, double scale);
void drawFrameBackground(const QSizeF& composition, const QPainterPath& outline,
    const BeautifySettings& beautify, double scale, GraphicsContext& context);
void drawFrameBorder(
    const QRectF& imageRect, const BeautifySettings& beautify, double scale, GraphicsContext& context);

} // namespace pintalux::Renderer
