// SPDX-License-Identifier: MIT
#include "capture/text/TextRecognizerContrast.h"

#include "platform/base/Parallel.h"

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

/// A yes or no for each node of a grid.
struct Mask {
    explicit Mask(const Grid& grid)
        : columns(grid.columns)
        , rows(grid.rows)
        , values(grid.values.size(), false)
    {
    }
    bool contains(int column, int row) const
    {
        return column >= 0 && row >= 0 && column < columns && row < rows;
    }
    std::size_t index(int column, int row) const
    {
        return std::size_t(row) * std::size_t(columns) + std::size_t(column);
    }

    int columns;
    int rows;
    std::vector<bool> values;
};

/// What is left of the mask when all is dropped into which no square of `side` nodes fits.
Mask opened(const Mask& mask, int side, const Grid& grid)
{
    Mask result(grid);
    const auto eachOfSquare = [&](int column, int row, const auto& act) {
        for (int y = row; y < row + side; ++y)
            for (int x = column; x < column + side; ++x)
                if (!act(mask.index(x, y)))
                    return false;
        return true;
    };
    for (int row = 0; row + side <= mask.rows; ++row)
        for (int column = 0; column + side <= mask.columns; ++column)
            if (eachOfSquare(column, row, [&](std::size_t at) { return bool(mask.values[at]); }))
                eachOfSquare(column, row, [&](std::size_t at) { return result.values[at] = true; });
    return result;
}

constexpr int sameColor = 12; // levels of grey

/// Nodes of a mask that hang together.
struct Piece {
    std::vector<std::size_t> nodes;
    bool continues = false; ///< its colour goes on beyond the mask
};

/// The piece of `mask` around a node; its nodes are taken out of `left`.
Piece takePiece(const Mask& mask, Mask& left, std::size_t first, const Grid& paper)
{
    Piece piece{{first}};
    left.values[first] = false;
    for (std::size_t next = 0; next < piece.nodes.size(); ++next) {
        const auto node = piece.nodes[next];
        const int column = int(node) % mask.columns, row = int(node) / mask.columns;
        for (const auto& [x, y] : {std::pair(column - 1, row), std::pair(column + 1, row),
                 std::pair(column, row - 1), std::pair(column, row + 1)}) {
            if (!mask.contains(x, y))
                continue;
            const auto neighbor = mask.index(x, y);
            if (!mask.values[neighbor])
                piece.continues
                    = piece.continues || std::abs(paper.values[neighbor] - paper.values[node]) <= sameColor;
            else if (left.values[neighbor]) {
                left.values[neighbor] = false;
                piece.nodes.push_back(neighbor);
            }
        }
    }
    return piece;
}

/// True for the strokes of bold letters: what is between them is open to the paper around them, while text on
/// a badge is enclosed by it. `inside` is the piece's own grey, `outside` that of the paper around it.
bool isOpen(const Piece& piece, const Grid& paper, const QImage& gray, Gray inside, Gray outside)
{
    QRect nodes;
    for (const auto node : piece.nodes)
        nodes |= QRect(int(node) % paper.columns, int(node) / paper.columns, 1, 1);
    constexpr int tallest = 60; // nodes: nobody's letters, and not worth the time
    if (nodes.height() > tallest)
        return false;
    constexpr int margin = 2; // nodes: beyond the edge of a badge
    nodes.adjust(-margin, -margin, margin, margin);
    const auto area = QRect(nodes.topLeft() * Grid::step, nodes.size() * Grid::step) & gray.rect();

    // From the rim of the area over all that looks like the paper outside.
    std::vector<bool> reached(std::size_t(area.width()) * std::size_t(area.height()), false);
    std::vector<QPoint> border;
    const auto reach = [&](int x, int y) {
        if (x < 0 || y < 0 || x >= area.width() || y >= area.height())
            return;
        const int value = gray.constScanLine(area.top() + y)[area.left() + x];
        const auto at = std::size_t(y) * std::size_t(area.width()) + std::size_t(x);
        if (reached[at] || std::abs(value - outside) >= std::abs(value - inside))
            return;
        reached[at] = true;
        border.emplace_back(x, y);
    };
    for (int x = 0; x < area.width(); ++x) {
        reach(x, 0);
        reach(x, area.height() - 1);
    }
    for (int y = 0; y < area.height(); ++y) {
        reach(0, y);
        reach(area.width() - 1, y);
    }
    while (!border.empty()) {
        const auto point = border.back();
        border.pop_back();
        reach(point.x() - 1, point.y());
        reach(point.x() + 1, point.y());
        reach(point.x(), point.y() - 1);
        reach(point.x(), point.y() + 1);
    }

    const auto isReached = [&](std::size_t node) {
        const auto place
            = QPoint(int(node) % paper.columns, int(node) / paper.columns) * Grid::step - area.topLeft();
        return area.translated(-area.topLeft()).contains(place)
            && reached[std::size_t(place.y()) * std::size_t(area.width()) + std::size_t(place.x())];
    };
    constexpr int openShare = 10; // a tenth
    return std::ranges::count_if(piece.nodes, isReached) * openShare > std::ptrdiff_t(piece.nodes.size());
}

/// What covers most of a small neighbourhood but is narrow is no paper: it is a stroke of a large letter.
/// There the paper is what is commonest further around.
Grid withoutLargeStrokes(const Grid& paper, const QImage& gray)
{
    constexpr int reduction = 8;
    constexpr int narrowest = 5; // nodes: the height of a badge with text in it
    const auto around = paperOf(gray.scaled((gray.size() / reduction).expandedTo({1, 1})));
    Grid further(gray.size());
    Mask differs(paper);
    for (int row = 0; row < paper.rows; ++row)
        for (int column = 0; column < paper.columns; ++column) {
            further.at(column, row) = around.at(
                std::min(column / reduction, around.columns - 1), std::min(row / reduction, around.rows - 1));
            differs.values[differs.index(column, row)]
                = std::abs(paper.at(column, row) - further.at(column, row)) > sameColor;
        }

    const auto wide = opened(differs, narrowest, paper);
    auto left = differs;
    auto settled = paper;
    for (std::size_t node = 0; node < paper.values.size(); ++node) {
        if (!left.values[node])
            continue;
        const auto piece = takePiece(differs, left, node, paper);
        const auto wideNodes
            = std::ranges::count_if(piece.nodes, [&](std::size_t at) { return bool(wide.values[at]); });
        const bool isNarrow = wideNodes * 2 < std::ptrdiff_t(piece.nodes.size());
        if (!piece.continues
            && (isNarrow || isOpen(piece, paper, gray, paper.values[node], further.values[node])))
            for (const auto at : piece.nodes)
                settled.values[at] = further.values[at];
    }
    return settled;
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
    constexpr int noise = 3; // the paper is known no better
    for (int y = 0; y < contrast.height(); ++y) {
        auto* line = contrast.scanLine(y);
        for (int x = 0; x < contrast.width(); ++x) {
            const int most = std::max<int>(faintest, strongest.at(x / Grid::step, y / Grid::step));
            line[x] = Gray(255 - std::clamp((line[x] - noise) * 255 / most, 0, 255));
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

// Twice the size never harms, but it takes time: a large picture is enlarged only where it needs it.
bool wantsEnlarging(const QImage& page)
{
    constexpr int readable = 6; // pixels
    constexpr qint64 large = 4'000'000;
    constexpr int longestSide = 16'000; // the recogniser ends at 32 767
    if (std::max(page.width(), page.height()) > longestSide)
        return false;
    return qint64(page.width()) * page.height() <= large || letterHeight(page) < readable;
}

} // namespace

QImage preparedForReading(const QImage& image)
{
    const auto gray = image.convertToFormat(QImage::Format_RGB32).convertToFormat(QImage::Format_Grayscale8);
    auto page = contrastWith(withoutLargeStrokes(paperOf(gray), gray), gray);
    stretch(page, strongestOf(page));
    if (!wantsEnlarging(page))
        return page;
    return page.scaled(page.size() * 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_Grayscale8);
}

} // namespace pintalux
