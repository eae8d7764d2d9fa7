// SPDX-License-Identifier: MIT
#include "platform/image/RedactionCells.h"

#include "platform/base/Parallel.h"
#include "platform/image/CellMeans.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

namespace pintalux {

namespace {

constexpr int channels = 4; ///< blue, green, red, alpha
/// Cells of a block, each way.
constexpr int blockSide = 8;
/// How far the grain goes, in contrasts: down to the ground, up to twice as far from the middle.
constexpr double lowestGrain = -1.2;
constexpr double highestGrain = 2;

using Color = std::array<double, channels>;

Color operator+(Color a, const Color& b)
{
    for (std::size_t i = 0; i < channels; ++i)
        a[i] += b[i];
    return a;
}

Color operator*(Color a, double factor)
{
    for (double& value : a)
        value *= factor;
    return a;
}

Color colorOf(std::uint32_t pixel)
{
    return {double(qBlue(pixel)), double(qGreen(pixel)), double(qRed(pixel)), double(qAlpha(pixel))};
}

/// What counts as bright: luminance, and being there at all.
double weight(const Color& color) { return (color[0] + 2 * color[1] + color[2]) / 4 + color[3]; }

/// The coarse figures of a block that its cells are made from.
struct Block {
    Color middle;
    Color contrast;
};

/// The colour that most cells have, when it stands out enough to be the ground of something.
std::optional<std::uint32_t> groundOf(std::vector<std::uint32_t> cells)
{
    std::ranges::sort(cells);
    std::size_t most = 0;
    std::uint32_t ground = 0;
    bool unique = false;
    for (auto run = cells.begin(); run != cells.end();) {
        const auto end = std::upper_bound(run, cells.end(), *run);
        const auto count = std::size_t(end - run);
        unique = count > most || (unique && count < most);
        if (count > most) {
            most = count;
            ground = *run;
        }
        run = end;
    }
    const bool enough = most == cells.size() || (4 * most >= cells.size() && most >= 16);
    return unique && enough ? std::optional(ground) : std::nullopt;
}

/// A colour in few levels: luminance in 16, its distances to red and blue in steps of 12.
Color coarse(const Color& mean)
{
    const double luminance = 17 * std::round((mean[0] + 2 * mean[1] + mean[2]) / 68);
    const double red = 12 * std::round((mean[2] - mean[1]) / 12);
    const double blue = 12 * std::round((mean[0] - mean[1]) / 12);
    const double green = luminance - (red + blue) / 4;
    return {green + blue, green, green + red, 17 * std::round(mean[3] / 17)};
}

double strength(double deviation)
{
    if (deviation < 2.5)
        return 0;
    if (deviation < 9)
        return 5;
    return deviation < 60 ? 30 : 70;
}

/// Which colour goes up with the weight, and how strongly, in four levels and few directions.
Color contrastOf(const std::vector<std::uint32_t>& cells, const Color& mean)
{
    const double middle = weight(mean);
    Color covariance{};
    double variance = 0;
    for (const auto cell : cells) {
        const auto color = colorOf(cell);
        const double distance = weight(color) - middle;
        variance += distance * distance;
        covariance = covariance + (color + mean * -1) * distance;
    }
    const double deviation = std::sqrt(variance / double(cells.size()));
    if (deviation <= 0.5)
        return {};
    const auto slope = covariance * (1 / (deviation * double(cells.size())));
    double largest = 0;
    for (const double value : slope)
        largest = std::max(largest, std::abs(value));
    const double amplitude = strength(largest);
    if (amplitude == 0)
        return {};
    Color contrast{};
    for (std::size_t i = 0; i < channels; ++i)
        contrast[i] = amplitude * std::round(4 * slope[i] / largest) / 4;
    return contrast;
}

/// The same towards grey and at most as strong as that of text; as it is where mostly the transparency
/// differs.
Color calm(const Color& contrast)
{
    constexpr double most = 30;
    const double largest = std::max({std::abs(contrast[0]), std::abs(contrast[1]), std::abs(contrast[2])});
    const double strength = std::min(largest, most);
    return contrast[3] == 0 ? Color{strength, strength, strength, 0} : contrast;
}

Block blockOf(const std::vector<std::uint32_t>& cells)
{
    Color mean{};
    for (const auto cell : cells)
        mean = mean + colorOf(cell);
    mean = mean * (1 / double(cells.size()));
    const auto contrast = contrastOf(cells, mean);
    const auto ground = groundOf(cells);
    if (!ground)
        return {coarse(mean), contrast};
    // The grain's lowest value then is the ground itself, and all else lies to the side of what is on it.
    // The colour of what is on it would tint a redacted line after a button beside it.
    const auto color = colorOf(*ground);
    const auto away = calm(contrast) * (weight(mean) < weight(color) ? -1 : 1);
    return {color + away * -lowestGrain, away};
}

/// Where a cell lies between the centres of two blocks.
struct Between {
    Between(int cell, int blocks)
    {
        const double at = std::clamp((cell + 0.5) / blockSide - 0.5, 0., blocks - 1.);
        first = std::min(int(at), std::max(0, blocks - 2));
        second = std::min(first + 1, blocks - 1);
        part = at - first;
    }

    int first;
    int second;
    double part;
};

Color mixed(const Color& a, const Color& b, double part) { return a * (1 - part) + b * part; }

Block mixed(const Block& a, const Block& b, double part)
{
    return {mixed(a.middle, b.middle, part), mixed(a.contrast, b.contrast, part)};
}

/// The blocks of a grid of cells. The last ones take the remainder.
class Blocks {
public:
    explicit Blocks(const QImage& means)
        : across(std::max(1, means.width() / blockSide))
        , down(std::max(1, means.height() / blockSide))
        , blocks(std::size_t(across) * std::size_t(down))
    {
        constexpr int blocksPerThread = 200;
        parallelRanges(down, blocksPerThread / across + 1, [&](int first, int last) {
            std::vector<std::uint32_t> cells;
            for (int y = first; y < last; ++y)
                for (int x = 0; x < across; ++x) {
                    collect(means, x, y, cells);
                    blocks[std::size_t(y) * std::size_t(across) + std::size_t(x)] = blockOf(cells);
                }
        });
    }

    /// The figures of each column of blocks at a row of cells.
    std::vector<Block> row(const Between& y) const
    {
        std::vector<Block> mixedBlocks;
        mixedBlocks.reserve(std::size_t(across));
        for (int x = 0; x < across; ++x)
            mixedBlocks.push_back(mixed(block(x, y.first), block(x, y.second), y.part));
        return mixedBlocks;
    }

    const int across;
    const int down;

private:
    void collect(const QImage& means, int x, int y, std::vector<std::uint32_t>& cells) const
    {
        const int right = x + 1 == across ? means.width() : (x + 1) * blockSide;
        const int bottom = y + 1 == down ? means.height() : (y + 1) * blockSide;
        cells.clear();
        for (int j = y * blockSide; j < bottom; ++j) {
            const auto* row = reinterpret_cast<const std::uint32_t*>(means.constScanLine(j));
            cells.insert(cells.end(), row + x * blockSide, row + right);
        }
    }

    const Block& block(int x, int y) const
    {
        return blocks[std::size_t(y) * std::size_t(across) + std::size_t(x)];
    }

    std::vector<Block> blocks;
};

/// Evenly distributed with a mean of 0 and a deviation of 1, from a cell's place alone: a seed from the
/// picture would let guesses of the picture be tested against it.
double noise(std::uint32_t row, std::uint32_t column, std::uint32_t seed)
{
    std::uint32_t v = row * 0x9E3779B1U + column * 0x85EBCA77U + seed * 0xC2B2AE3DU;
    v ^= v >> 16;
    v *= 0x7FEB352DU;
    v ^= v >> 15;
    v *= 0x846CA68BU;
    v ^= v >> 16;
    return (v / 4294967296. - 0.5) * std::sqrt(12.);
}

/// The grain of a cell: as fine as the cells, on clumps of three.
double grain(int row, int column)
{
    constexpr int clump = 3;
    const auto y = std::uint32_t(row / clump);
    const auto x = std::uint32_t(column / clump);
    const double right = (column % clump) / double(clump);
    const double below = (row % clump) / double(clump);
    const double upper = noise(y, x, 2) * (1 - right) + noise(y, x + 1, 2) * right;
    const double lower = noise(y + 1, x, 2) * (1 - right) + noise(y + 1, x + 1, 2) * right;
    const double value = 0.8 * noise(std::uint32_t(row), std::uint32_t(column), 1)
        + 0.8 * (upper * (1 - below) + lower * below);
    return std::clamp(value, lowestGrain, highestGrain);
}

std::uint32_t pixelOf(const Color& color)
{
    const auto within = [](double value, int most) { return int(std::clamp(value, 0., double(most)) + 0.5); };
    const int alpha = within(color[3], 255);
    return qRgba(within(color[2], alpha), within(color[1], alpha), within(color[0], alpha), alpha);
}

/// The cells' new colours in the place of their means.
void remake(QImage& means)
{
    constexpr int cellsPerThread = 5000;
    const Blocks blocks(means);
    std::vector<Between> columns;
    for (int i = 0; i < means.width(); ++i)
        columns.emplace_back(i, blocks.across);
    auto* const pixels = means.bits();
    const auto stride = means.bytesPerLine();
    parallelRanges(means.height(), cellsPerThread / means.width() + 1, [&](int first, int last) {
        for (int j = first; j < last; ++j) {
            auto* row = reinterpret_cast<std::uint32_t*>(pixels + j * stride);
            const auto figures = blocks.row(Between(j, blocks.down));
            for (int i = 0; i < int(columns.size()); ++i) {
                const auto& x = columns[std::size_t(i)];
                const auto [middle, contrast]
                    = mixed(figures[std::size_t(x.first)], figures[std::size_t(x.second)], x.part);
                const bool plain = contrast == Color{};
                row[i] = pixelOf(plain ? middle : middle + contrast * grain(j, i));
            }
        }
    });
}

QImage workingFormat(const QImage& picture)
{
    const auto format
        = picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    return picture.convertToFormat(format);
}

/// The fourth byte of a picture without transparency may hold anything.
void makeOpaque(QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(image.scanLine(y));
        std::for_each(row, row + image.width(), [](std::uint32_t& pixel) { pixel |= 0xFF000000U; });
    }
}

} // namespace

RedactionCells::RedactionCells(const QImage& picture, double side)
    : size(picture.size())
{
    if (picture.isNull())
        return;
    const int longest = std::max(picture.width(), picture.height());
    // Written so that what is not a number counts as 1.
    cellSide = side > 1 ? static_cast<int>(std::min(std::floor(side + 0.5), double(longest))) : 1;
    const auto working = workingFormat(picture);
    colors = working.isNull() ? working : cellMeans(working, cellSide);
    if (colors.isNull())
        return;
    if (colors.format() == QImage::Format_RGB32)
        makeOpaque(colors);
    remake(colors);
}

QImage RedactionCells::pixellated(std::span<const int> columns, std::span<const int> rows) const
{
    QImage result(int(columns.size()), int(rows.size()), colors.format());
    if (result.isNull())
        return result;
    std::vector<int> cells;
    cells.reserve(columns.size());
    for (const int column : columns)
        cells.push_back(column / cellSide);
    const std::uint8_t* former = nullptr;
    int formerRow = -1;
    for (int y = 0; y < result.height(); ++y) {
        auto* const line = result.scanLine(y);
        const int cellRow = rows[std::size_t(y)] / cellSide;
        if (cellRow == formerRow) {
            std::memcpy(line, former, columns.size() * channels);
            continue;
        }
        const auto* colorRow = reinterpret_cast<const std::uint32_t*>(colors.constScanLine(cellRow));
        auto* const pixels = reinterpret_cast<std::uint32_t*>(line);
        for (std::size_t x = 0; x < cells.size(); ++x)
            pixels[x] = colorRow[cells[x]];
        former = line;
        formerRow = cellRow;
    }
    return result;
}

} // namespace pintalux
