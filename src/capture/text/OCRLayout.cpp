// SPDX-License-Identifier: MIT
#include "capture/text/OCRLayout.h"

#include <QStringList>

#include <cmath>
#include <vector>

namespace pintalux::OCRLayout {

namespace {

double middle(const QRectF& box) { return box.center().y(); }

double halfOfTheLower(const QRectF& one, const QRectF& other)
{
    return std::min(one.height(), other.height()) * 0.5;
}

bool areOnOneLine(const QRectF& one, const QRectF& other)
{
    return std::abs(middle(one) - middle(other)) <= halfOfTheLower(one, other);
}

bool precedes(const QRectF& one, const QRectF& other)
{
    return areOnOneLine(one, other) ? one.left() < other.left() : middle(one) < middle(other);
}

/// What is still to be read, and how many of it precede each.
class Remaining {
public:
    explicit Remaining(const QList<TextObservation>& all)
        : observations(all)
        , preceding(std::size_t(all.size()), 0)
        , taken(std::size_t(all.size()), false)
    {
        for (std::size_t later = 0; later < taken.size(); ++later)
            for (std::size_t earlier = 0; earlier < taken.size(); ++earlier)
                preceding[later] += precedes(box(earlier), box(later));
    }

    std::size_t next() const
    {
        for (std::size_t index = 0; index < taken.size(); ++index)
            if (!taken[index] && preceding[index] == 0)
                return index;
        return beginningOfLine(topmost());
    }

    void take(std::size_t index)
    {
        taken[index] = true;
        for (std::size_t later = 0; later < taken.size(); ++later)
            preceding[later] -= precedes(box(index), box(later));
    }

private:
    const QRectF& box(std::size_t index) const { return observations[qsizetype(index)].box; }

    std::size_t topmost() const
    {
        std::size_t best = taken.size();
        for (std::size_t index = 0; index < taken.size(); ++index)
            if (!taken[index] && (best == taken.size() || middle(box(index)) < middle(box(best))))
                best = index;
        return best;
    }

    // From neighbour to neighbour, along a tilted line.
    std::size_t beginningOfLine(std::size_t from) const
    {
        for (;;) {
            std::size_t neighbor = from;
            for (std::size_t index = 0; index < taken.size(); ++index) {
                const bool isLeft = !taken[index] && box(index).left() < box(from).left()
                    && areOnOneLine(box(index), box(from));
                if (isLeft && (neighbor == from || box(index).left() > box(neighbor).left()))
                    neighbor = index;
            }
            if (neighbor == from)
                return from;
            from = neighbor;
        }
    }

    const QList<TextObservation>& observations;
    std::vector<int> preceding;
    std::vector<bool> taken;
};

/// The observations from the first to the last to be read: along a line from left to right, lines from top to
/// bottom. Two are on one line when their middles are no further apart than half the lower one's height.
///
/// That relation is not transitive, so it can contradict itself (a tilted line's end may lie above its
/// beginning). Observations that nothing precedes come first, in the given order; where the rest precede each
/// other in a circle, reading goes on at the beginning of the topmost one's line.
QList<TextObservation> inReadingOrder(const QList<TextObservation>& observations)
{
    Remaining remaining(observations);
    QList<TextObservation> ordered;
    ordered.reserve(observations.size());
    while (ordered.size() < observations.size()) {
        const auto index = remaining.next();
        remaining.take(index);
        ordered.append(observations[qsizetype(index)]);
    }
    return ordered;
}

/// Cuts ordered observations into lines: each is compared with the one before it, and half the lower one's
/// height apart is another line already.
QList<QList<TextObservation>> groupedIntoLines(const QList<TextObservation>& ordered)
{
    QList<QList<TextObservation>> lines;
    for (const auto& observation : ordered) {
        const auto joins = [&](const QRectF& last) {
            return std::abs(middle(last) - middle(observation.box)) < halfOfTheLower(last, observation.box);
        };
        if (lines.isEmpty() || !joins(lines.last().last().box))
            lines.append(QList<TextObservation>());
        lines.last().append(observation);
    }
    return lines;
}

} // namespace

QString textOf(const QList<TextObservation>& observations)
{
    QStringList lines;
    for (const auto& line : groupedIntoLines(inReadingOrder(observations))) {
        QStringList words;
        for (const auto& observation : line)
            if (!observation.text.isEmpty())
                words.append(observation.text);
        lines.append(words.join(u' '));
    }
    return lines.join(u'\n').trimmed();
}

} // namespace pintalux::OCRLayout
