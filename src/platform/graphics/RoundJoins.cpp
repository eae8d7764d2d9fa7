// SPDX-License-Identifier: MIT
#include "platform/graphics/RoundJoins.h"

#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>

namespace pintalux {

namespace {

double degrees(QPointF direction)
{
    return std::atan2(direction.y(), direction.x()) * 180 / std::numbers::pi;
}

/// How many joins of a path have each direction of the circle in the arc that they get.
class JoinDirections {
public:
    void add(QPointF before, QPointF after)
    {
        const double turn = std::remainder(degrees(after) - degrees(before), 360.0);
        if (turn == 0)
            return;
        // Only the outer side gets an arc: the left one, stroked forward, or the right one, stroked backward.
        const double from = turn > 0 ? degrees(before) : degrees(after) + 180;
        const double to = from + std::abs(turn);
        acrossZero = acrossZero || (std::floor(from / 360) + 1) * 360 < to;
        for (int degree = int(std::floor(from)); degree <= int(std::floor(to)); ++degree)
            ++counts[std::size_t((degree + 720) % 360)];
    }

    /// The middle of the widest range of directions with the fewest joins; 0 when no join lies across 0.
    double free() const
    {
        if (!acrossZero)
            return 0;
        const int fewest = *std::ranges::min_element(counts);
        const auto isFree = [&](int degree) { return counts[std::size_t(degree % 360)] == fewest; };
        int best = 0;
        int widest = 0;
        int width = 0;
        for (int degree = 0; degree < 2 * 360; ++degree) { // twice round, for a range may lie across 0
            width = isFree(degree) ? width + 1 : 0;
            if (width > widest && width <= 360) {
                widest = width;
                best = degree - width + 1;
            }
        }
        return best + widest / 2.0;
    }

private:
    std::array<int, 360> counts{};
    bool acrossZero = false;
};

} // namespace

double turnForRoundJoins(const QPainterPath& path)
{
    JoinDirections directions;
    QPointF at;
    QPointF start;
    std::optional<QPointF> first;  ///< direction in which the subpath leaves its start
    std::optional<QPointF> before; ///< direction in which the path arrives at `at`
    const auto endSubpath = [&] {
        if (first && before && at == start)
            directions.add(*before, *first);
    };
    for (int i = 0; i < path.elementCount(); ++i) {
        const auto element = path.elementAt(i);
        if (element.isMoveTo()) {
            endSubpath();
            at = start = element;
            first = before = std::nullopt;
            continue;
        }
        std::array<QPointF, 4> points{at, element, element, element};
        if (element.isCurveTo()) {
            points[2] = path.elementAt(++i);
            points[3] = path.elementAt(++i);
        }
        at = points[3];
        // A control point may lie on its end: then the next one gives the tangent.
        const auto next = std::ranges::find_if(points, [&](QPointF p) { return p != points[0]; });
        if (next == points.end())
            continue;
        const auto previous
            = std::find_if(points.rbegin(), points.rend(), [&](QPointF p) { return p != at; });
        const auto leaving = *next - points[0];
        if (before)
            directions.add(*before, leaving);
        else
            first = leaving;
        before = at - *previous;
    }
    endSubpath();
    return -directions.free();
}

} // namespace pintalux
