// SPDX-License-Identifier: MIT
#include "platform/graphics/Outline.h"

#include "platform/graphics/FlattenedPath.h"
#include "platform/graphics/Geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace pintalux {

namespace {

double cross(QPointF a, QPointF b) { return a.x() * b.y() - a.y() * b.x(); }

/// Walks along a path at half the stroke's width.
class Stroker {
public:
    Stroker(const Stroke& stroke, double tolerance, Outline& outline)
        : half(stroke.width / 2)
        , cap(stroke.cap)
        , join(stroke.join)
        , tolerance(tolerance)
        , arcStep(2 * std::acos(std::max(0.0, 1 - tolerance / half)))
        , outline(outline)
    {
    }

    void add(const FlattenedPiece& piece)
    {
        std::vector<QPointF> left;
        std::vector<QPointF> right;
        left.reserve(2 * piece.points.size() + 64);
        right.reserve(piece.points.size() + 16);
        addSide(piece, +1, left);
        addSide(piece, -1, right);
        std::ranges::reverse(right);
        if (piece.closed) {
            outline.addPolygon(left);
            outline.addPolygon(right);
            return;
        }
        if (piece.capAtEnd)
            addCap(piece.points.back().at, piece.points.back().in, left);
        left.insert(left.end(), right.begin(), right.end());
        if (piece.capAtStart)
            addCap(piece.points.front().at, -piece.points.front().out, left);
        outline.addPolygon(left);
    }

private:
    /// One side of the stroke: the left one for +1, the right one for −1.
    void addSide(const FlattenedPiece& piece, int side, std::vector<QPointF>& to) const
    {
        const auto& points = piece.points;
        const auto count = points.size();
        for (std::size_t i = 0; i < count; ++i) {
            const auto former = to.size();
            if (!piece.closed && i == 0)
                to.push_back(points[i].at + beside(points[i].out, side));
            else if (!piece.closed && i == count - 1)
                to.push_back(points[i].at + beside(points[i].in, side));
            else
                addJoin(points[(i + count - 1) % count].at, points[i], points[(i + 1) % count].at, side, to);
            if (i > 0)
                keepForward(points[i - 1].at, points[i].at, side, former, to);
        }
        if (piece.closed) {
            const auto former = to.size();
            to.push_back(to.front());
            keepForward(points.back().at, points.front().at, side, former, to);
            to.pop_back();
        }
    }

    QPointF beside(QPointF direction, int side) const { return leftNormal(direction) * (half * side); }

    void addJoin(
        QPointF before, const PathPoint& point, QPointF after, int side, std::vector<QPointF>& to) const
    {
        const double cosine = QPointF::dotProduct(point.in, point.out);
        const auto first = beside(point.in, side);
        const auto last = beside(point.out, side);
        if (cosine > 0 && half * (1 - cosine) / 4 <= tolerance) // as far as the eye goes, no corner
            return to.push_back(point.at + unit(first + last) * half);

        const double halfTurnCosine = std::sqrt(std::max(0.0, (1 + cosine) / 2));
        const auto corner = [&] { return point.at + unit(first + last) * (half / halfTurnCosine); };
        if (side * cross(point.in, point.out) > 0) {
            // Inside of the turn both sides meet, if they are long enough. Else each ends on the path: so the
            // area is put together of parts that all go round the same way, and none cuts a hole.
            const double needed = half * std::sqrt(std::max(0.0, 1 - cosine)) / std::sqrt(1 + cosine);
            if (2 * needed <= std::min(distance(before, point.at), distance(point.at, after)))
                return to.push_back(corner());
            to.push_back(point.at + first);
            to.push_back(point.at);
            return to.push_back(point.at + last);
        }
        constexpr double miterLimit = 2;
        if (join == Qt::MiterJoin && halfTurnCosine * miterLimit >= 1)
            return to.push_back(corner());
        to.push_back(point.at + first);
        if (join == Qt::RoundJoin)
            addArc(point.at, first, side * -std::acos(std::clamp(cosine, -1.0, 1.0)), to);
        to.push_back(point.at + last);
    }

    /// Where a curve is tighter than the stroke is wide, the side of the line between two of its points (the
    /// one that begins at `next` in `to` ends there) would run backward and count as negative area. It goes
    /// forward in a rectangle of its own instead.
    void keepForward(QPointF before, QPointF at, int side, std::size_t next, std::vector<QPointF>& to) const
    {
        const auto along = at - before;
        if (QPointF::dotProduct(to[next] - to[next - 1], along) >= 0)
            return;
        const auto across = beside(unit(along, 1e-300), side);
        const QPointF detour[]{before, before + across, at + across, at};
        to.insert(to.begin() + std::ptrdiff_t(next), std::begin(detour), std::end(detour));
    }

    /// The end of a stroke that arrives at `end` in `direction`, from its left to its right side.
    void addCap(QPointF end, QPointF direction, std::vector<QPointF>& to) const
    {
        const auto left = beside(direction, +1);
        if (cap == Qt::RoundCap)
            addArc(end, left, -M_PI, to);
        if (cap == Qt::SquareCap) {
            to.push_back(end + left + direction * half);
            to.push_back(end - left + direction * half);
        }
    }

    /// The inner points of the arc around `center` from `radius` on.
    void addArc(QPointF center, QPointF radius, double angle, std::vector<QPointF>& to) const
    {
        const int count = int(std::ceil(std::abs(angle) / arcStep));
        for (int i = 1; i < count; ++i) {
            const auto turned = polar(angle * i / count, 1);
            to.push_back(center + turned.x() * radius + turned.y() * leftNormal(radius));
        }
    }

    double half;
    Qt::PenCapStyle cap;
    Qt::PenJoinStyle join;
    double tolerance;
    double arcStep;
    Outline& outline;
};

/// Leaves of a polygon what lies on the side of a line where `inside` is not negative. What is cut off
/// becomes a way to and fro along the line, which covers nothing.
template <typename Inside> std::vector<QPointF> cutAtLine(const std::vector<QPointF>& polygon, Inside inside)
{
    std::vector<QPointF> left;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const auto from = polygon[i];
        const auto to = polygon[(i + 1) % polygon.size()];
        const double before = inside(from);
        const double after = inside(to);
        if (before >= 0)
            left.push_back(from);
        if ((before >= 0) != (after >= 0))
            left.push_back(from + (to - from) * (before / (before - after)));
    }
    return left;
}

/// Cuts a piece into dashes.
std::vector<FlattenedPiece> dashed(const FlattenedPiece& piece, const QList<double>& lengths)
{
    auto points = piece.points;
    if (piece.closed)
        points.push_back(points.front());
    std::vector<FlattenedPiece> dashes;
    qsizetype index = 0; // even ones are dashes, odd ones gaps
    double left = lengths[0];
    FlattenedPiece dash{.points = {points.front()}};
    for (std::size_t i = 1; i < points.size(); ++i) {
        QPointF from = points[i - 1].at;
        const auto direction = unit(points[i].at - from, 1e-300);
        double whole = distance(from, points[i].at);
        while (left < whole) {
            from += direction * left;
            whole -= left;
            const PathPoint cut{from, direction, direction};
            if (index % 2 == 0) {
                dash.points.push_back(cut);
                dashes.push_back(std::move(dash));
            }
            dash = {.points = {cut}};
            left = lengths[++index % lengths.size()];
        }
        left -= whole;
        dash.points.push_back(points[i]);
    }
    if (index % 2 == 0)
        dashes.push_back(std::move(dash));
    return dashes;
}

/// Whether these lengths are a pattern: else, and where dashes are too many to be seen, a line is solid.
bool isPattern(const QList<double>& dashes, double tolerance)
{
    return std::ranges::all_of(dashes, [&](double each) { return each > tolerance; })
        && dashes.size() % 2 == 0 && !dashes.isEmpty();
}

} // namespace

Outline Outline::ofFill(const QPainterPath& path, double tolerance)
{
    Outline outline;
    outline.rule = path.fillRule();
    auto& points = outline.points;
    const auto endPolygon = [&] {
        if (!points.empty())
            outline.ends.push_back(points.size());
    };
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo())
            endPolygon();
        if (!element.isCurveTo()) {
            points.push_back(element);
            continue;
        }
        appendCurve(points, points.back(), element, path.elementAt(i + 1), path.elementAt(i + 2), tolerance);
        i += 2;
    }
    endPolygon();
    return outline;
}

Outline Outline::ofStroke(
    const QPainterPath& path, const Stroke& stroke, double tolerance, const QRectF& visible)
{
    Outline outline;
    if (stroke.width <= 0)
        return outline;
    Stroker stroker(stroke, tolerance, outline);
    if (!isPattern(stroke.dashes, tolerance)) {
        for (const auto& piece : flattened(path, tolerance, stroke.width / 2, visible))
            stroker.add(piece);
        return outline;
    }
    constexpr double far = 1e12;
    const QRectF everywhere(-far, -far, 2 * far, 2 * far); // a dash depends on all that come before
    for (const auto& piece : flattened(path, tolerance, stroke.width / 2, everywhere))
        for (const auto& dash : dashed(piece, stroke.dashes))
            stroker.add(dash);
    return outline;
}

Outline Outline::within(const QRectF& rect) const
{
    Outline part;
    part.rule = rule;
    std::size_t start = 0;
    for (const auto end : ends) {
        std::vector<QPointF> polygon(
            points.begin() + std::ptrdiff_t(start), points.begin() + std::ptrdiff_t(end));
        polygon = cutAtLine(polygon, [&](QPointF p) { return p.x() - rect.left(); });
        polygon = cutAtLine(polygon, [&](QPointF p) { return rect.right() - p.x(); });
        polygon = cutAtLine(polygon, [&](QPointF p) { return p.y() - rect.top(); });
        polygon = cutAtLine(polygon, [&](QPointF p) { return rect.bottom() - p.y(); });
        part.addPolygon(polygon);
        start = end;
    }
    return part;
}

void Outline::addPolygon(const std::vector<QPointF>& polygon)
{
    points.insert(points.end(), polygon.begin(), polygon.end());
    ends.push_back(points.size());
}

QPainterPath Outline::onDevice(const QTransform& toDevice) const
{
    // The rasteriser cuts off what is left of a 64th. A quarter of one more keeps the arithmetic between here
    // and there from losing a whole one.
    constexpr double grid = 64;
    const auto snapped = [](double value) {
        const double step = std::floor(value * grid + 0.5);
        return (step < 0 ? step - 0.25 : step + 0.25) / grid;
    };
    QPainterPath path;
    path.setFillRule(rule);
    path.reserve(int(points.size() + ends.size()));
    std::size_t i = 0;
    for (const auto end : ends) {
        for (const auto start = i; i < end; ++i) {
            const auto exact = toDevice.map(points[i]);
            const QPointF at(snapped(exact.x()), snapped(exact.y()));
            if (i == start)
                path.moveTo(at);
            else
                path.lineTo(at);
        }
        if (path.elementCount() > 0)
            path.closeSubpath();
    }
    return path;
}

} // namespace pintalux
