#include "platform/TextRecognizerContrast.h"

#include "platform/Parallel.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace pintalux {

namespace {

using Gray = std::uint8_t;

/// One grey value for each node of a grid over a picture, `step` pixels apart.
struct Grid {
    static constexpr int step = 4;

    explicit Grid(QSize picture)
        : columns(picture.width() / step + 1)
        , rows(picture.height() / step + 1)
        , values(std::size_t(columns) * std::size_t(rows), 0)
    {
    }
    Gray& at(int column, int row)
    {
        return values[std::size_t(row) * std::size_t(columns) + std::size_t(column)];
    }
    Gray at(int column, int row) const
    {
        return values[std::size_t(row) * std::size_t(columns) + std::size_t(column)];
    }

    int columns;
    int rows;
    std::vector<Gray> values;
};

// Half the sides of the surroundings of a pixel. A button or a badge must cover most of them, a letter's
// stroke must not.
constexpr int halfWidth = 24;
constexpr int halfHeight = 12;

/// How often each of 64 grey values occurs in a window that moves along a row.
class Histogram {
public:
    void addColumn(const QImage& gray, int x, int top, int bottom, int count)
    {
        for (int y = top; y <= bottom; ++y)
            counts[std::size_t(gray.constScanLine(y)[x] / levelsPerBin)] += count;
    }

    /// The commonest value.
    Gray mode() const
    {
        const auto commonest = std::ranges::max_element(counts) - counts.begin();
        // Its neighbours belong to it: noise and gradients do not stop at a bin.
        int weight = 0;
        int sum = 0;
        for (auto bin = std::max<std::ptrdiff_t>(0, commonest - 1);
             bin <= std::min<std::ptrdiff_t>(bins - 1, commonest + 1); ++bin) {
            weight += counts[std::size_t(bin)];
            sum += counts[std::size_t(bin)] * (int(bin) * levelsPerBin + levelsPerBin / 2);
        }
        return Gray(sum / std::max(1, weight));
    }

private:
    static constexpr int levelsPerBin = 4;
    static constexpr int bins = 256 / levelsPerBin;
    std::array<int, bins> counts{};
};

/// The paper that each place of the picture is printed on: the commonest grey of its surroundings.
Grid paperOf(const QImage& gray)
{
    Grid paper(gray.size());
    parallelRanges(paper.rows, 16, [&](int first, int last) {
        for (int row = first; row < last; ++row) {
            const int y = row * Grid::step;
            const int top = std::max(0, y - halfHeight), bottom = std::min(gray.height() - 1, y + halfHeight);
            Histogram histogram;
            int entered = 0, left = 0; // columns of the picture that came in and went out
            for (int column = 0; column < paper.columns; ++column) {
                const int x = column * Grid::step;
                for (; entered <= std::min(gray.width() - 1, x + halfWidth); ++entered)
                    histogram.addColumn(gray, entered, top, bottom, 1);
                for (; left < x - halfWidth; ++left)
                    histogram.addColumn(gray, left, top, bottom, -1);
                paper.at(column, row) = histogram.mode();
            }
        }
    });
    return paper;
}

/// How far each pixel stands out from its paper, whether lighter or darker. Of the nodes around it the
/// nearest in colour counts, so that the edge between two papers is none.
QImage contrastWith(const Grid& paper, const QImage& gray)
{
    QImage contrast(gray.size(), QImage::Format_Grayscale8);
    auto* const bits = contrast.bits();
    const auto stride = contrast.bytesPerLine();
    parallelRanges(gray.height(), 64, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            const auto* from = gray.constScanLine(y);
            auto* to = bits + y * stride;
            const int row = y / Grid::step, nextRow = std::min(row + 1, paper.rows - 1);
            for (int x = 0; x < gray.width(); ++x) {
                const int column = x / Grid::step, nextColumn = std::min(column + 1, paper.columns - 1);
                const int value = from[x];
                to[x] = Gray(std::min({std::abs(value - paper.at(column, row)),
                    std::abs(value - paper.at(nextColumn, row)), std::abs(value - paper.at(column, nextRow)),
                    std::abs(value - paper.at(nextColumn, nextRow))}));
            }
        }
    });
    return contrast;
}

/// The strongest contrast around each node.
Grid strongestOf(const QImage& contrast)
{
    Grid cells(contrast.size());
    for (int y = 0; y < contrast.height(); ++y)
        for (int x = 0; x < contrast.width(); ++x) {
            auto& cell = cells.at(x / Grid::step, y / Grid::step);
            cell = std::max(cell, contrast.constScanLine(y)[x]);
        }
    constexpr int reachX = halfWidth / Grid::step, reachY = halfHeight / Grid::step;
    auto along = cells;
    for (int row = 0; row < cells.rows; ++row)
        for (int column = 0; column < cells.columns; ++column)
            for (int other = std::max(0, column - reachX);
                 other <= std::min(cells.columns - 1, column + reachX); ++other)
                along.at(column, row) = std::max(along.at(column, row), cells.at(other, row));
    auto strongest = along;
    for (int row = 0; row < cells.rows; ++row)
        for (int other = std::max(0, row - reachY); other <= std::min(cells.rows - 1, row + reachY); ++other)
            for (int column = 0; column < cells.columns; ++column)
                strongest.at(column, row) = std::max(strongest.at(column, row), along.at(column, other));
    return strongest;
}

/// Faint text becomes as dark as strong text; what hardly stands out at all stays faint.
void stretch(QImage& contrast, const Grid& strongest)
{
    constexpr int faintest = 40;
    for (int y = 0; y < contrast.height(); ++y) {
        auto* line = contrast.scanLine(y);
        for (int x = 0; x < contrast.width(); ++x) {
            const int most = std::max<int>(faintest, strongest.at(x / Grid::step, y / Grid::step));
            line[x] = Gray(255 - std::min(255, line[x] * 255 / most));
        }
    }
}

/// The height of most strokes that go up: about that of a small letter. Half of the ink belongs to vertical
/// runs that are longer.
int letterHeight(const QImage& page)
{
    constexpr int longest = 100;
    std::array<qint64, longest + 1> ink{};
    std::vector<int> run(std::size_t(page.width()), 0);
    for (int y = 0; y <= page.height(); ++y)
        for (int x = 0; x < page.width(); ++x) {
            auto& length = run[std::size_t(x)];
            if (y < page.height() && page.constScanLine(y)[x] < 128) {
                ++length;
            } else if (length > 0) {
                if (length <= longest) // no rules and frames
                    ink[std::size_t(length)] += length;
                length = 0;
            }
        }
    qint64 total = 0, sum = 0;
    for (const auto amount : ink)
        total += amount;
    for (int length = 1; length <= longest; ++length)
        if ((sum += ink[std::size_t(length)]) * 2 >= total)
            return total > 0 ? length : longest;
    return longest;
}

bool wantsEnlarging(const QImage& page)
{
    constexpr int readable = 6;
    constexpr int longestSide = 16'000; // of what is enlarged; the recogniser ends at 32 767
    return letterHeight(page) < readable && std::max(page.width(), page.height()) < longestSide;
}

} // namespace

QImage preparedForReading(const QImage& image)
{
    const auto gray = image.convertToFormat(QImage::Format_RGB32).convertToFormat(QImage::Format_Grayscale8);
    auto page = contrastWith(paperOf(gray), gray);
    stretch(page, strongestOf(page));
    if (!wantsEnlarging(page))
        return page;
    return page.scaled(page.size() * 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_Grayscale8);
}

} // namespace pintalux
