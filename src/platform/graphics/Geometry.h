// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <algorithm>
#include <cmath>
#include <span>

namespace pintalux {

inline double length(QPointF v) { return std::hypot(v.x(), v.y()); }
inline double distance(QPointF a, QPointF b) { return length(b - a); }
inline QPointF midpoint(QPointF a, QPointF b) { return (a + b) / 2; }
/// `v` scaled to length 1; the zero vector stays (nearly) zero instead of dividing by nothing.
inline QPointF unit(QPointF v, double smallest = 0.0001) { return v / std::max(length(v), smallest); }
/// `v` turned by a quarter, (x, y) → (−y, x).
inline QPointF leftNormal(QPointF v) { return {-v.y(), v.x()}; }
/// The point at `angle` (radians, clockwise on screen from the x axis) and `radius` from the origin.
inline QPointF polar(double angle, double radius)
{
    return {radius * std::cos(angle), radius * std::sin(angle)};
}
inline double direction(QPointF v) { return std::atan2(v.y(), v.x()); }

/// `rect` with every side moved outward by `by` (inward when negative).
inline QRectF expanded(const QRectF& rect, double by) { return rect.adjusted(-by, -by, by, by); }

/// True from the minimum edges (included) to the maximum edges (excluded). Unlike the toolkit's own test it
/// decides every point for exactly one of two adjoining rectangles.
inline bool containsPoint(const QRectF& rect, QPointF point)
{
    return point.x() >= rect.left() && point.x() < rect.right() && point.y() >= rect.top()
        && point.y() < rect.bottom();
}

/// The smallest rectangle with `rect` and `point` in it. A rectangle of size zero counts as its position,
/// which the toolkit's union leaves out.
inline QRectF united(const QRectF& rect, QPointF point)
{
    const QPointF least(std::min(rect.left(), point.x()), std::min(rect.top(), point.y()));
    const QPointF most(std::max(rect.right(), point.x()), std::max(rect.bottom(), point.y()));
    return {least, most};
}

/// The smallest rectangle with all `points` in it; the null rectangle for none.
inline QRectF boundsOf(std::span<const QPointF> points)
{
    if (points.empty())
        return {};
    QRectF bounds(points.front(), QSizeF(0, 0));
    for (const auto point : points)
        bounds = united(bounds, point);
    return bounds;
}

/// Distance from `point` to the segment from `a` to `b`; a segment of no length counts as its point.
inline double distanceToSegment(QPointF point, QPointF a, QPointF b)
{
    const auto along = b - a;
    const double squared = QPointF::dotProduct(along, along);
    if (squared <= 0)
        return distance(point, a);
    const double t = std::clamp(QPointF::dotProduct(point - a, along) / squared, 0.0, 1.0);
    return distance(point, a + along * t);
}

} // namespace pintalux
