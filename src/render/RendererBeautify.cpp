// SPDX-License-Identifier: MIT
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "render/RendererInternal.h"

#include <QLinearGradient>
#include <QRadialGradient>

#include <array>
#include <cmath>

namespace pintalux::Renderer {

double padding(const BeautifySettings& beautify, double scale)
{
    return beautify.enabled ? std::round(scale * beautify.padding) : 0;
}

QSizeF compositionSize(const QImage& image, const BeautifySettings& beautify, double scale)
{
    const double margin = 2 * padding(beautify, scale);
    return {image.width() + margin, image.height() + margin};
}

QRectF imageRect(const QImage& image, const BeautifySettings& beautify, double scale)
{
    const double margin = padding(beautify, scale);
    return {QPointF(margin, margin), QSizeF(image.size())};
}

QPainterPath imageOutline(const QRectF& imageRect, const BeautifySettings& beautify, double scale)
{
    return Draw::roundedRect(imageRect, beautify.enabled ? scale * beautify.cornerRadius : 0);
}

void drawGradient(const Palette::Gradient& gradient, const QRectF& rect, GraphicsContext& context)
{
    QLinearGradient diagonal(rect.topLeft(), rect.bottomRight());
    const auto count = gradient.colors.size();
    for (qsizetype i = 0; i < count; ++i)
        diagonal.setColorAt(count > 1 ? double(i) / double(count - 1) : 0, gradient.colors[i]);

    const QPointF glow(rect.left() + 0.18 * rect.width(), rect.top() + 0.1 * rect.height());
    QRadialGradient highlight(glow, 0.7 * std::max(rect.width(), rect.height()));
    highlight.setColorAt(0, withAlpha(Qt::white, 0.22));
    highlight.setColorAt(1, withAlpha(Qt::white, 0));

    context.fillRows(rect, std::array<QBrush, 2>{diagonal, highlight});
}

void drawFrameBackground(const QSizeF& composition, const QPainterPath& outline,
    const BeautifySettings& beautify, double scale, GraphicsContext& context)
{
    const auto& gradients = Palette::gradients();
    if (beautify.gradient >= 0 && beautify.gradient < gradients.size())
        drawGradient(gradients[beautify.gradient], QRectF(QPointF(), composition), context);
    if (!beautify.shadow)
        return;
    // The caster is covered by the image, which is painted next: only its shadow shows.
    const GraphicsContext::Saved saved(context);
    const double devicePixels = scale * context.deviceScale();
    context.setShadow({withAlpha(Qt::black, 0.38), {0, 14 * devicePixels}, 44 * devicePixels});
    context.fill(outline, QColor(Qt::black));
}

void drawFrameBorder(
    const QRectF& imageRect, const BeautifySettings& beautify, double scale, GraphicsContext& context)
{
    const auto inset = expanded(imageRect, -0.5 * scale);
    const double radius
        = std::min(scale * beautify.cornerRadius, std::min(imageRect.width(), imageRect.height()) / 2);
    context.stroke(
        Draw::roundedRect(inset, std::max(0.0, radius - 0.5 * scale)), {withAlpha(Qt::white, 0.22), scale});
}

} // namespace pintalux::Renderer
