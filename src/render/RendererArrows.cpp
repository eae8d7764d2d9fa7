// SPDX-License-Identifier: MIT
#include "platform/graphics/Geometry.h"
#include "render/RendererInternal.h"
#include "render/SeededRandom.h"

#include <algorithm>
#include <numbers>

namespace pintalux::Renderer {

namespace {

using std::numbers::pi;

/// Distances along a polyline from its first point, one for each point.
QList<double> cumulativeLengths(std::span<const QPointF> points)
{
    QList<double> lengths{0};
    for (std::size_t i = 1; i < points.size(); ++i)
        lengths << lengths.back() + distance(points[i - 1], points[i]);
    return lengths;
}

/// The first point, walking back from the end, that is at least `reach` away from it; else the first point.
QPointF pointBehindTip(std::span<const QPointF> points, double reach)
{
    const auto tip = points.back();
    for (auto i = points.size(); i-- > 0;)
        if (distance(points[i], tip) >= reach)
            return points[i];
    return points.front();
}

/// One station of a tapered shaft.
struct Rib {
    QPointF left;
    QPointF right;
};

QList<Rib> shaftRibs(
    std::span<const QPointF> points, const QList<double>& lengths, double shaftEnd, double width)
{
    const auto last = points.size() - 1;
    const double taperLength = std::max(shaftEnd, 0.0001);
    QList<Rib> ribs;
    for (std::size_t i = 0; i <= last; ++i) {
        if (lengths[qsizetype(i)] >= shaftEnd)
            continue;
        const auto along = points[std::min(i + 1, last)] - points[i > 0 ? i - 1 : 0];
        const double half = width * (lengths[qsizetype(i)] / taperLength * 0.37 + 0.18);
        const auto across = leftNormal(unit(along)) * half;
        ribs.append({points[i] + across, points[i] - across});
    }
    return ribs;
}

/// The open head of a line arrow: two barbs 0.48 rad either side of the axis, seen from `from`.
void addOpenHead(QPainterPath& path, QPointF tip, QPointF from, double headLength)
{
    constexpr double opening = 0.48;
    const double back = direction(tip - from) + pi;
    path.moveTo(tip + polar(back + opening, headLength));
    path.lineTo(tip);
    path.lineTo(tip + polar(back - opening, headLength));
}

/// `points` without the last `cut` of their length, but with half of it at least.
QList<QPointF> withoutEnd(std::span<const QPointF> points, double cut)
{
    const auto lengths = cumulativeLengths(points);
    const double kept = std::max(lengths.back() - cut, lengths.back() / 2);
    QList<QPointF> shorter;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double reached = lengths[qsizetype(i)];
        if (reached < kept) {
            shorter << points[i];
            continue;
        }
        const double last = lengths[qsizetype(i) - 1];
        return shorter << points[i - 1] + (points[i] - points[i - 1]) * ((kept - last) / (reached - last));
    }
    return shorter;
}

/// One of the two strokes of a sketch arrow. The order of the draws from `random` is what makes a mark look
/// the same for ever: it must not change.
class SketchPass {
public:
    SketchPass(std::span<const QPointF> points, double length, double width, SeededRandom& random)
        : points(points)
        , length(length)
        , width(width)
        , random(random)
    {
    }

    QPainterPath shaft(double amplitude, bool shiftStart)
    {
        const double phase = random.next() * pi;
        const double frequency = random.next() * 1.3 + 1.2;
        const double bow = length * (random.next() - 0.5) * 0.018;
        const auto count = points.size();
        QList<QPointF> wobbly;
        for (std::size_t i = 0; i < count; ++i) {
            const double t = double(i) / double(count - 1);
            const auto along = points[std::min(i + 1, count - 1)] - points[std::max<std::size_t>(i, 1) - 1];
            const double offset = bow * std::sin(pi * t)
                + amplitude * 0.6 * std::sin(2 * phase + 2 * frequency * pi * t)
                + amplitude * (random.next() - 0.5) * 0.25;
            wobbly << points[i] + leftNormal(unit(along)) * offset;
        }
        if (shiftStart)
            wobbly.front() += jitter(1);
        return smoothPath(wobbly);
    }

    void addBarb(QPainterPath& path, double backAngle, double side, double headLength)
    {
        const auto tip = points.back();
        const double angle = backAngle + side * ((random.next() - 0.5) * 0.08 + 0.42);
        const double reach = headLength * (random.next() * 0.16 + 0.92);
        const auto from = tip + polar(angle, reach) + jitter(0.5);
        const auto to = tip + jitter(0.4);
        const auto control = midpoint(from, to) + jitter(0.6);
        path.moveTo(from);
        path.quadTo(control, to);
    }

private:
    /// A random shift of up to half of `part` of the width each way; draws x, then y.
    QPointF jitter(double part)
    {
        const double x = width * (random.next() - 0.5) * part;
        const double y = width * (random.next() - 0.5) * part;
        return {x, y};
    }

    std::span<const QPointF> points;
    double length;
    double width;
    SeededRandom& random;
};

} // namespace

QPainterPath smoothPath(std::span<const QPointF> points)
{
    QPainterPath path;
    if (points.empty())
        return path;
    path.moveTo(points.front());
    if (std::ranges::all_of(points, [&](QPointF point) { return point == points.front(); })) {
        path.lineTo(points.front() + QPointF(0.01, 0)); // a line of no length would not be stroked
        return path;
    }
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        path.quadTo(points[i], midpoint(points[i], points[i + 1]));
    path.lineTo(points.back());
    return path;
}

std::optional<QPainterPath> arrowPath(std::span<const QPointF> points, double width)
{
    if (points.size() < 2)
        return std::nullopt;
    const auto lengths = cumulativeLengths(points);
    const double total = lengths.back();
    if (total <= 2)
        return std::nullopt;

    const auto tip = points.back();
    const double head = std::min(std::max(4.2 * width, 10.0), 0.55 * total);
    const double baseDistance = std::clamp(total - head, 0.0, total);
    qsizetype j = 1;
    while (j < lengths.size() - 1 && lengths[j] < baseDistance)
        ++j;
    const auto before = points[std::size_t(j - 1)];
    const double fraction = (baseDistance - lengths[j - 1]) / std::max(lengths[j] - lengths[j - 1], 0.0001);
    const auto base = before + (points[std::size_t(j)] - before) * fraction;

    const auto axis = unit(tip - base);
    const auto across = leftNormal(axis);
    const auto neck = tip - 0.78 * head * axis;
    const auto ribs = shaftRibs(points, lengths, total - 0.78 * head, width);
    if (ribs.isEmpty())
        return std::nullopt;

    QPainterPath path(ribs.front().left);
    path.setFillRule(Qt::WindingFill);
    for (qsizetype i = 1; i < ribs.size(); ++i)
        path.lineTo(ribs[i].left);
    path.lineTo(neck + 0.55 * width * across);
    path.lineTo(tip - head * axis + 0.58 * head * across);
    path.lineTo(tip);
    path.lineTo(tip - head * axis - 0.58 * head * across);
    path.lineTo(neck - 0.55 * width * across);
    for (qsizetype i = ribs.size(); i-- > 0;)
        path.lineTo(ribs[i].right);
    path.closeSubpath();
    return path;
}

std::optional<QPainterPath> lineArrowPath(std::span<const QPointF> points, double width, bool doubleHead)
{
    if (points.size() < 2 || cumulativeLengths(points).back() <= 2)
        return std::nullopt;
    // A shaft ends a little behind its tip, where the head hides its round cap: two caps on the same place
    // would cover the pixels of their common edge twice, which then looks cut out with scissors.
    const double hidden = width / 2;
    const QList<QPointF> reversed(points.rbegin(), points.rend());
    auto shaft = withoutEnd(points, hidden);
    if (doubleHead) {
        std::ranges::reverse(shaft);
        shaft = withoutEnd(shaft, hidden);
    }
    QPainterPath path(shaft.front());
    for (qsizetype i = 1; i < shaft.size(); ++i)
        path.lineTo(shaft[i]);

    const double head = std::max(3.6 * width, 9.0);
    addOpenHead(path, points.back(), pointBehindTip(points, head), head);
    if (doubleHead)
        addOpenHead(path, points.front(), pointBehindTip(reversed, head), head);
    return path;
}

QList<QPainterPath> sketchArrowPaths(
    std::span<const QPointF> points, double width, double scale, const QUuid& seed)
{
    if (points.size() < 2)
        return {};
    const double total = cumulativeLengths(points).back();
    if (total <= 2)
        return {};

    auto random = SeededRandom::fromUuid(seed);
    const double head = std::min(std::max(14 * scale, 5.6 * width), 0.45 * total);
    const double backAngle = direction(points.back() - pointBehindTip(points, 0.8 * head)) + pi;
    const double baseAmplitude = 0.22 * width + 0.6 * scale;
    QList<QPainterPath> paths;
    for (const bool second : {false, true}) {
        SketchPass pass(points, total, width, random);
        auto path = pass.shaft(baseAmplitude * (second ? 0.8 : 1.0), second);
        pass.addBarb(path, backAngle, +1, head);
        pass.addBarb(path, backAngle, -1, head);
        paths << path;
    }
    return paths;
}

void drawArrow(const Annotation& mark, const MarkContext& context)
{
    const auto points = mark.curveSamples();
    const double width = mark.lineWidth;
    const double scale = context.scale();
    auto& graphics = context.graphics;

    if (mark.arrowStyle != ArrowStyle::sketch)
        graphics.setShadow(context.standardShadow());
    switch (mark.arrowStyle) {
    case ArrowStyle::sketch:
        for (const auto& path : sketchArrowPaths(points, width, scale, mark.id))
            graphics.stroke(path, {mark.color, std::max(0.72 * width, 1.2 * scale)});
        return;
    case ArrowStyle::outline:
        if (const auto path = arrowPath(points, 1.5 * width))
            graphics.fillAndStroke(
                *path, QColor(Qt::white), {mark.color, std::max(0.32 * width, 1.5 * scale)});
        return;
    case ArrowStyle::filled:
        if (const auto path = arrowPath(points, width))
            graphics.fillAndStroke(*path, mark.color, {mark.color, 0.35 * width});
        return;
    case ArrowStyle::line:
    case ArrowStyle::double_:
        if (const auto path = lineArrowPath(points, width, mark.arrowStyle == ArrowStyle::double_))
            graphics.stroke(*path, {mark.color, width});
        return;
    }
}

} // namespace pintalux::Renderer
