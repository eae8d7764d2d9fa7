// SPDX-License-Identifier: MIT
#include "platform/graphics/Draw.h"
#include "platform/image/PixelSampler.h"
#include "render/RendererInternal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace pintalux::Renderer {

namespace {

bool isShown(const Annotation& redaction)
{
    const auto rect = redaction.rect();
    return rect.width() > 1 && rect.height() > 1;
}

/// What a redaction shows where these columns and rows of the document cross.
QImage redactedPixels(const Annotation& mark, const Document& document, EffectCache& cache,
    std::span<const int> columns, std::span<const int> rows)
{
    const auto inCapture = [](std::span<const int> pixels, int origin) {
        std::vector<int> moved(pixels.begin(), pixels.end());
        for (int& pixel : moved)
            pixel += origin;
        return moved;
    };
    return cache.pixels(mark.blurStyle, document.capture(), document.pixelScale,
        inCapture(columns, document.cropOrigin.x()), inCapture(rows, document.cropOrigin.y()));
}

} // namespace

QRect redactedRegion(const Annotation& mark, double pixelScale)
{
    // A rounding of 4 points takes up to 1.2 points off the corner, each way.
    const int margin = int(std::ceil(1.2 * pixelScale));
    return mark.rect().toAlignedRect().adjusted(-margin, -margin, margin, margin);
}

void drawBlur(const Annotation& mark, const MarkContext& context)
{
    if (!isShown(mark))
        return;
    const auto& document = context.document;
    const double scale = context.scale();
    const auto region = redactedRegion(mark, scale);
    // The rounding is for the looks; about as small as a cell, there is none to see.
    const bool small = std::min(region.width(), region.height()) < 2 * EffectCache::cellSide(scale);
    auto& graphics = context.graphics;
    for (const QRect& part : context.backdrop.where.intersected(mark.rect().toAlignedRect())) {
        const GraphicsContext::Saved saved(graphics);
        graphics.clipToBounds(part);
        context.backdrop.paint(graphics);
    }
    const auto shape = Draw::roundedRect(region, small ? 0 : 4 * scale);
    const auto area = region & document.image.rect();
    bool lacksMemory = false;
    graphics.drawPixels(area, shape, [&](auto columns, auto rows) {
        auto made = redactedPixels(mark, document, context.cache, columns, rows);
        lacksMemory = lacksMemory || made.isNull();
        return made;
    });
    if (lacksMemory) // a plain field hides it as well
        graphics.fill(QRectF(area), Qt::gray);
}

std::optional<QColor> pictureColor(const Document& document, QPoint pixel, EffectCache& cache)
{
    const auto hides = [&](const Annotation& mark) {
        return mark.kind == AnnotationKind::blur && isShown(mark)
            && redactedRegion(mark, document.pixelScale).contains(pixel);
    };
    const auto& marks = document.annotations;
    const auto top = std::find_if(marks.rbegin(), marks.rend(), hides);
    if (top == marks.rend() || !document.image.valid(pixel))
        return PixelSampler::color(document.image, pixel.x(), pixel.y());
    const std::array column{pixel.x()};
    const std::array row{pixel.y()};
    return PixelSampler::color(redactedPixels(*top, document, cache, column, row), 0, 0);
}

Backdrop backdrop(const Document& document, const BeautifySettings& beautify,
    const std::function<void(GraphicsContext&)>& behind)
{
    const double scale = document.pixelScale;
    const auto frame = imageRect(document.image, beautify, scale);
    Backdrop result;
    if (document.image.hasAlphaChannel()) {
        result.where = document.image.rect();
    } else if (beautify.enabled && beautify.cornerRadius > 0) {
        const int radius = int(std::ceil(scale * beautify.cornerRadius)) + 1;
        const auto image = document.image.rect();
        const auto middle = image.adjusted(radius, radius, -radius, -radius);
        result.where = QRegion(image) - QRect(image.left(), middle.top(), image.width(), middle.height())
            - QRect(middle.left(), image.top(), middle.width(), image.height());
    }
    result.paint = [=](GraphicsContext& context) {
        context.translate(-frame.topLeft());
        behind(context);
        if (beautify.enabled)
            drawFrameBackground(compositionSize(document.image, beautify, scale),
                imageOutline(frame, beautify, scale), beautify, scale, context);
    };
    return result;
}

} // namespace pintalux::Renderer
