// SPDX-License-Identifier: MIT
#include "platform/graphics/FlattenedPath.h"

#include "platform/graphics/Geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

namespace pintalux {

namespace {

/// User units that are nothing: what is left where arithmetic should have come back to the same place.
constexpr double hair = 1e-9;

bool isSame(QPointF a, QPointF b) { return std::abs(a.x() - b.x()) < hair && std::abs(a.y() - b.y()) < hair; }

/// A line or a cubic Bézier curve of a path.
struct Segment {
    std::array<QPointF, 4> points;
    bool curved = false;

    QPointF start() const { return points[0]; }
    QPointF end() const { return points[3]; }
    QRectF bounds() const { return boundsOf(points); }

    // A control point may lie on its end: then the next one gives the tangent.
    QPointF startTangent() const
    {
        const auto other = std::ranges::find_if(points, [&](QPointF p) { return !isSame(p, points[0]); });
        return unit(*other - points[0], hair);
    }
    QPointF endTangent() const
    {
        const auto other
            = std::find_if(points.rbegin(), points.rend(), [&](QPointF p) { return !isSame(p, points[3]); });
        return unit(points[3] - *other, hair);
    }
    bool isPoint() const
    {
        return std::ranges::all_of(points, [&](QPointF p) { return isSame(p, points[0]); });
    }
};

struct Subpath {
    std::vector<Segment> segments;
    bool closed = false;
};

std::vector<Subpath> subpaths(const QPainterPath& path)
{
    std::vector<Subpath> all;
    QPointF at;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo()) {
            all.emplace_back();
            at = element;
            continue;
        }
        Segment segment{{at, at, element, element}, false};
        if (element.isCurveTo()) {
            segment = {{at, element, path.elementAt(i + 1), path.elementAt(i + 2)}, true};
            i += 2;
        }
        at = segment.end();
        if (!segment.isPoint())
            all.back().segments.push_back(segment);
    }
    for (auto& subpath : all)
        subpath.closed = !subpath.segments.empty()
            && isSame(subpath.segments.front().start(), subpath.segments.back().end());
    return all;
}

/// How far a curve may be from the line between its ends: an eighth of its largest second derivative.
double departure(const std::array<QPointF, 4>& p)
{
    return 0.75 * std::max(length(p[0] - 2 * p[1] + p[2]), length(p[1] - 2 * p[2] + p[3]));
}

QPointF pointOn(const std::array<QPointF, 4>& p, double t)
{
    const double u = 1 - t;
    return u * u * u * p[0] + 3 * u * u * t * p[1] + 3 * u * t * t * p[2] + t * t * t * p[3];
}

/// Appends the points of one subpath.
class Flattener {
public:
    Flattener(double tolerance, double reach)
        : tolerance(tolerance)
        , reach(reach)
    {
    }

    void add(const Segment& segment, std::vector<PathPoint>& to) const
    {
        const auto from = segment.startTangent();
        const auto until = segment.endTangent();
        if (to.empty())
            to.push_back({segment.start(), from, from});
        to.back().out = from;
        if (segment.curved)
            addInner(segment.points, from, until, 0, to);
        to.push_back({segment.end(), until, until});
    }

private:
    // A curve that bends gently is cut into parts of equal parameter. The line between two of their ends
    // departs from the curve, and the line `reach` beside it from its own by reach · turn² / 8, where turn²
    // is about 2 (1 − cos turn): both shrink with the square of the number of parts.
    void addInner(const std::array<QPointF, 4>& p, QPointF from, QPointF until, int depth,
        std::vector<PathPoint>& to) const
    {
        constexpr int deepest = 8;
        const double cosine = QPointF::dotProduct(from, until);
        const double apart = departure(p) + reach * (1 - cosine) / 4;
        if (apart <= tolerance)
            return;
        if (depth < deepest && !isGentle(p, cosine))
            return addHalves(p, from, until, depth, to);
        constexpr double most = 1024;
        const int count = int(std::clamp(std::ceil(std::sqrt(apart / tolerance)), 1.0, most));
        for (int i = 1; i < count; ++i) {
            const double t = double(i) / count;
            const double u = 1 - t;
            const auto along = u * u * (p[1] - p[0]) + 2 * u * t * (p[2] - p[1]) + t * t * (p[3] - p[2]);
            const auto tangent = length(along) < hair ? from : unit(along, hair); // at a cusp there is none
            to.push_back({pointOn(p, t), tangent, tangent});
        }
    }

    void addHalves(const std::array<QPointF, 4>& p, QPointF from, QPointF until, int depth,
        std::vector<PathPoint>& to) const
    {
        const auto ab = midpoint(p[0], p[1]);
        const auto bc = midpoint(p[1], p[2]);
        const auto cd = midpoint(p[2], p[3]);
        const auto abc = midpoint(ab, bc);
        const auto bcd = midpoint(bc, cd);
        const auto middle = midpoint(abc, bcd);
        const auto tangent = isSame(abc, bcd) ? from : unit(bcd - abc, hair);
        addInner({p[0], ab, abc, middle}, from, tangent, depth + 1, to);
        to.push_back({middle, tangent, tangent});
        addInner({middle, bcd, cd, p[3]}, tangent, until, depth + 1, to);
    }

    /// Turns by less than 60°, nowhere much faster than elsewhere.
    static bool isGentle(const std::array<QPointF, 4>& p, double cosine)
    {
        const auto [least, most]
            = std::minmax({distance(p[0], p[1]), distance(p[1], p[2]), distance(p[2], p[3])});
        return cosine > 0.5 && most < 3 * least;
    }

    double tolerance;
    double reach;
};

/// The first point of a closed piece is its last one, too.
void close(FlattenedPiece& piece)
{
    piece.points.front().in = piece.points.back().in;
    piece.points.pop_back();
    piece.closed = true;
}

/// Joins the beginning of a closed subpath, which was cut elsewhere, to its end.
void joinEnds(std::vector<FlattenedPiece>& pieces)
{
    auto first = std::move(pieces.front());
    pieces.erase(pieces.begin());
    auto& last = pieces.back();
    last.points.back().out = first.points.front().out;
    last.points.insert(last.points.end(), first.points.begin() + 1, first.points.end());
    last.capAtEnd = first.capAtEnd;
}

} // namespace

std::vector<FlattenedPiece> flattened(
    const QPainterPath& path, double tolerance, double reach, const QRectF& visible)
{
    const Flattener flattener(tolerance, reach);
    const auto shown = expanded(visible, 2 * reach); // a mitred join may stand out by twice the reach
    const auto isShown = [&](const Segment& segment) {
        const auto bounds = segment.bounds(); // perhaps without area, which the toolkit takes for nothing
        return bounds.left() <= shown.right() && bounds.right() >= shown.left()
            && bounds.top() <= shown.bottom() && bounds.bottom() >= shown.top();
    };
    std::vector<FlattenedPiece> all;
    for (const auto& [segments, closed] : subpaths(path)) {
        std::vector<FlattenedPiece> pieces;
        bool cut = true;
        for (std::size_t i = 0; i < segments.size(); ++i) {
            const bool wasCut = std::exchange(cut, !isShown(segments[i]));
            if (cut) {
                if (!wasCut)
                    pieces.back().capAtEnd = false;
                continue;
            }
            if (wasCut)
                pieces.push_back({.points = {}, .capAtStart = i == 0});
            flattener.add(segments[i], pieces.back().points);
        }
        if (closed && !pieces.empty()) {
            const bool beginsAtStart = pieces.front().capAtStart;
            const bool endsAtEnd = pieces.back().capAtEnd;
            if (beginsAtStart && endsAtEnd && pieces.size() == 1)
                close(pieces.front());
            else if (beginsAtStart && endsAtEnd)
                joinEnds(pieces);
            else
                pieces.front().capAtStart = pieces.back().capAtEnd = false;
        }
        std::ranges::move(pieces, std::back_inserter(all));
    }
    return all;
}

void appendCurve(std::vector<QPointF>& to, QPointF a, QPointF b, QPointF c, QPointF d, double tolerance)
{
    constexpr double most = 4096;
    const int count = int(std::clamp(std::ceil(std::sqrt(departure({a, b, c, d}) / tolerance)), 1.0, most));
    for (int i = 1; i < count; ++i)
        to.push_back(pointOn({a, b, c, d}, double(i) / count));
    to.push_back(d);
}

} // namespace pintalux
