// SPDX-License-Identifier: MIT
#include "platform/base/Parallel.h"
#include "platform/base/Vectorized.h"
#include "platform/image/RedactionCells.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

// A Gaussian over cells is made of three smooth steps whose variances add up to σ²: the cells are boxes
// already, their grid is convolved, and it is enlarged with cubic B-splines.

namespace pintalux {

namespace {

constexpr int channels = 4;
/// Cells kept beyond each edge: what a spline reaches.
constexpr int margin = 2;
/// Where a kernel is cut off, in σ: what is left out weighs 0.05 %.
constexpr double kernelReach = 3.5;
/// Fewest pixels for which a second thread pays.
constexpr int pixelsPerThread = 100'000;

/// From the middle outward. Sigma in cells.
std::vector<float> gaussianHalf(double sigma)
{
    std::vector<double> weights{1};
    const int reach = sigma > 0 ? int(std::ceil(kernelReach * sigma)) : 0;
    double total = 1;
    for (int offset = 1; offset <= reach; ++offset) {
        weights.push_back(std::exp(-0.5 * offset * offset / (sigma * sigma)));
        total += 2 * weights.back();
    }
    std::vector<float> half;
    for (const double weight : weights)
        half.push_back(float(weight / total));
    return half;
}

/// Weights of the four cells around a point `t` (0 … 1) beyond the second of them.
std::array<float, 4> splineWeights(double t)
{
    const double u = 1 - t;
    return {float(u * u * u / 6), float((4 - 6 * t * t + 3 * t * t * t) / 6),
        float((4 - 6 * u * u + 3 * u * u * u) / 6), float(t * t * t / 6)};
}

/// Which four cells make a pixel, and with which weights, by the pixel's place within its cell.
class Spline {
public:
    explicit Spline(int side)
        : side(side)
    {
        for (int phase = 0; phase < side; ++phase) {
            const double position = (phase - (side - 1) / 2.0) / side; // in cells, from this one's centre
            const double whole = std::floor(position);
            before.push_back(int(whole) - 1 + margin);
            weights.push_back(splineWeights(position - whole));
        }
    }

    /// As an index into a grid with margins.
    int firstCell(int pixel) const { return pixel / side + before[std::size_t(pixel % side)]; }
    const std::array<float, 4>& weightsOf(int pixel) const { return weights[std::size_t(pixel % side)]; }

private:
    int side;
    std::vector<int> before;
    std::vector<std::array<float, 4>> weights;
};

struct Reading {
    int firstSample; ///< of the first cell
    std::array<float, 4> weights;
};

PINTALUX_VECTORIZED
void enlargeRow(const float* cells, const Reading* readings, float* __restrict pixels, int count)
{
    for (int x = 0; x < count; ++x) {
        const float* from = cells + readings[x].firstSample;
        const float* weights = readings[x].weights.data();
        for (int i = 0; i < channels; ++i)
            pixels[channels * x + i] = (weights[0] * from[i] + weights[1] * from[channels + i])
                + (weights[2] * from[2 * channels + i] + weights[3] * from[3 * channels + i]);
    }
}

PINTALUX_VECTORIZED
void mixRows(const float* a, const float* b, const float* c, const float* d, const float* weights,
    std::uint8_t* __restrict bytes, int length)
{
    const float wa = weights[0], wb = weights[1], wc = weights[2], wd = weights[3];
    for (int i = 0; i < length; ++i)
        // NOLINTNEXTLINE(bugprone-incorrect-roundings): no value is negative, and rounding so is quick
        bytes[i] = static_cast<std::uint8_t>(
            static_cast<int>((wa * a[i] + wb * b[i]) + (wc * c[i] + wd * d[i]) + 0.5F));
}

} // namespace

RedactionBlur::RedactionBlur(const RedactionCells& redaction, double sigma)
    : side(redaction.side())
    , format(redaction.cells().format())
{
    if (redaction.isNull())
        return;
    const auto& cells = redaction.cells();
    const double square = double(side) * side;
    const double rest = sigma * sigma - (square - 1) / 12 - square / 3;
    const auto half = gaussianHalf(rest > 0 ? std::sqrt(rest) / side : 0);
    const int reach = int(half.size()) - 1;
    gridWidth = cells.width() + 2 * margin;
    const int gridHeight = cells.height() + 2 * margin;
    values.resize(std::size_t(gridWidth) * std::size_t(gridHeight) * channels);

    // Columns, then rows, into a grid with margins.
    const int padding = margin + reach;
    std::vector<float> line(std::size_t(cells.width() + 2 * padding) * channels);
    for (int y = 0; y < gridHeight; ++y) {
        std::fill(line.begin(), line.end(), 0.F);
        for (int offset = -reach; offset <= reach; ++offset) {
            const float weight = half[std::size_t(std::abs(offset))];
            const auto* row = cells.constScanLine(std::clamp(y - margin + offset, 0, cells.height() - 1));
            float* const to = line.data() + std::ptrdiff_t(padding) * channels;
            for (int i = 0; i < cells.width() * channels; ++i)
                to[i] += weight * row[i];
        }
        for (int x = 0; x < padding; ++x)
            for (int i = 0; i < channels; ++i) {
                line[std::size_t(x * channels + i)] = line[std::size_t(padding * channels + i)];
                line[std::size_t((padding + cells.width() + x) * channels + i)]
                    = line[std::size_t((padding + cells.width() - 1) * channels + i)];
            }
        float* const to = values.data() + std::size_t(y) * std::size_t(gridWidth) * channels;
        for (int offset = -reach; offset <= reach; ++offset) {
            const float weight = half[std::size_t(std::abs(offset))];
            const float* const from = line.data() + std::ptrdiff_t(reach + offset) * channels;
            for (int i = 0; i < gridWidth * channels; ++i)
                to[i] += weight * from[i];
        }
    }
}

QImage RedactionBlur::pixels(std::span<const int> columns, std::span<const int> rows) const
{
    QImage result(int(columns.size()), int(rows.size()), format);
    if (result.isNull())
        return result;
    const Spline spline(side);
    std::vector<Reading> readings;
    readings.reserve(columns.size());
    for (const int column : columns)
        readings.push_back({spline.firstCell(column) * channels, spline.weightsOf(column)});

    auto* const bits = result.bits();
    const auto stride = result.bytesPerLine();
    const int length = result.width() * channels;
    parallelRanges(result.height(), pixelsPerThread / result.width() + 1, [&](int first, int last) {
        // Enlarged rows of the grid; row k at k % 4, for no pixel needs more than four.
        std::array<std::vector<float>, 4> wide;
        wide.fill(std::vector<float>(std::size_t(length)));
        std::array<int, 4> held{-1, -1, -1, -1};
        for (int y = first; y < last; ++y) {
            const int cell = spline.firstCell(rows[std::size_t(y)]);
            std::array<const float*, 4> from{};
            for (int k = 0; k < 4; ++k) {
                const auto slot = std::size_t((cell + k) % 4);
                if (std::exchange(held[slot], cell + k) != cell + k)
                    enlargeRow(row(cell + k), readings.data(), wide[slot].data(), result.width());
                from[std::size_t(k)] = wide[slot].data();
            }
            mixRows(from[0], from[1], from[2], from[3], spline.weightsOf(rows[std::size_t(y)]).data(),
                bits + y * stride, length);
        }
    });
    return result;
}

} // namespace pintalux
