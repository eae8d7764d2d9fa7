// SPDX-License-Identifier: MIT
#include "platform/graphics/Draw.h"

#include "platform/graphics/Geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace pintalux::Draw {

namespace {

// Exact on the axes, where rounded corners go on as lines.
constexpr double diagonal = std::numbers::sqrt2 / 2;
constexpr std::array<QPointF, 8> compass{{{1, 0}, {diagonal, diagonal}, {0, 1}, {-diagonal, diagonal},
    {-1, 0}, {-diagonal, -diagonal}, {0, -1}, {diagonal, -diagonal}}};

/// Where a point of the unit circle lies on an ellipse.
QPointF onEllipse(QPointF center, QSizeF radii, QPointF unitPoint)
{
    return center + QPointF(unitPoint.x() * radii.width(), unitPoint.y() * radii.height());
}

/// The eighth of an ellipse from that point of the compass on. Four cubic curves leave a circle by 1/3700 of
/// its radius, eight by 1/240 000.
void addEighth(QPainterPath& path, QPointF center, QSizeF radii, std::size_t eighth)
{
    const double handle = 4 / 3.0 * std::tan(std::numbers::pi / 16);
    const auto from = compass[eighth % 8];
    const auto to = compass[(eighth + 1) % 8];
    path.cubicTo(onEllipse(center, radii, from + handle * leftNormal(from)),
        onEllipse(center, radii, to - handle * leftNormal(to)), onEllipse(center, radii, to));
}

} // namespace

QPainterPath roundedRect(const QRectF& rect, double radius)
{
    const double bounded = std::clamp(radius, 0.0, std::max(0.0, std::min(rect.width(), rect.height()) / 2));
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    if (bounded <= 0) {
        path.addRect(rect);
        return path;
    }
    const QSizeF radii(bounded, bounded);
    const auto middle = rect.adjusted(bounded, bounded, -bounded, -bounded);
    const std::array centers{middle.bottomRight(), middle.bottomLeft(), middle.topLeft(), middle.topRight()};
    path.moveTo(onEllipse(centers[0], radii, compass[0]));
    for (std::size_t quarter = 0; quarter < 4; ++quarter) {
        addEighth(path, centers[quarter], radii, 2 * quarter);
        addEighth(path, centers[quarter], radii, 2 * quarter + 1);
        path.lineTo(onEllipse(centers[(quarter + 1) % 4], radii, compass[(2 * quarter + 2) % 8]));
    }
    return path;
}

QPainterPath ellipse(const QRectF& rect)
{
    const auto radii = rect.size() / 2;
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.moveTo(onEllipse(rect.center(), radii, compass[0]));
    for (std::size_t eighth = 0; eighth < 8; ++eighth)
        addEighth(path, rect.center(), radii, eighth);
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
