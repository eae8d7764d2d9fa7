// SPDX-License-Identifier: MIT

// From words with boxes to lines of text.

#include "capture/text/OCR.h"

#include <QStringList>

#include <cmath>
#include <vector>

namespace pintalux::OCR {

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

} // namespace

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

} // namespace pintalux::OCR
