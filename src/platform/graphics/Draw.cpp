// SPDX-License-Identifier: MIT
#include "platform/graphics/Draw.h"

#include <algorithm>

namespace pintalux::Draw {

QPainterPath roundedRect(const QRectF& rect, double radius)
{
    const double bounded = std::clamp(radius, 0.0, std::max(0.0, std::min(rect.width(), rect.height()) / 2));
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    if (bounded > 0)
        path.addRoundedRect(rect, bounded, bounded);
    else
        path.addRect(rect);
    return path;
}

QPainterPath ellipse(const QRectF& rect)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addEllipse(rect);
    return path;
}

QPainterPath polyline(std::initializer_list<QPointF> points)
{
    QPainterPath path(*points.begin());
    for (const auto* point = points.begin() + 1; point != points.end(); ++point)
        path.lineTo(*point);
    return path;
}

void pill(const QRectF& rect, const QColor& color, GraphicsContext& context)
{
    context.fill(roundedRect(rect, std::min(rect.height() / 2, 12.0)), color);
}

double deviceScale(const GraphicsContext& context) { return context.deviceScale(); }

void image(const QImage& image, const QRectF& rect, GraphicsContext& context)
{
    context.drawImage(image, rect);
}

} // namespace pintalux::Draw
