// SPDX-License-Identifier: MIT
#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QRectF>

#include <vector>

namespace pintalux {

/// A point of a path with the directions (unit vectors) in which the path arrives and goes on. At a corner
/// they differ; along a curve both are its tangent.
struct PathPoint {
    QPointF at;
    QPointF in;
    QPointF out;
};

/// A part of a path whose curves have become lines.
struct FlattenedPiece {
    std::vector<PathPoint> points; ///< two at least; a closed one does not repeat its first
    bool closed = false;
    bool capAtStart = true; ///< it begins where the path does, instead of being cut there
    bool capAtEnd = true;
};

/// The subpaths of `path` for a stroke that reaches `reach` to either side: the lines, and those `reach`
/// beside them, stay within `tolerance` of the curves. Without what has nothing to do within `visible`: a
/// subpath may come in several pieces, cut where nothing shows.
std::vector<FlattenedPiece> flattened(
    const QPainterPath& path, double tolerance, double reach, const QRectF& visible);

/// The points of a cubic Bézier curve after its first one, near enough to each other for lines between them.
void appendCurve(std::vector<QPointF>& to, QPointF a, QPointF b, QPointF c, QPointF d, double tolerance);

} // namespace pintalux
