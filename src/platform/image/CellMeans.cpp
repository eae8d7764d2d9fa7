// SPDX-License-Identifier: MIT
#include "platform/image/CellMeans.h"

#include "platform/base/Parallel.h"
#include "platform/base/Vectorized.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace pintalux {

namespace {

constexpr int channels = 4;
/// Fewest pixels for which a second thread pays.
constexpr int pixelsPerThread = 250'000;
// A column of up to 128 bytes adds up within 16 bits; taller cells are added up in several goes.
constexpr int rowsPerGo = 128;

PINTALUX_VECTORIZED
void addRow(const std::uint8_t* row, std::uint16_t* __restrict sums, int length)
{
    for (int i = 0; i < length; ++i)
        sums[i] = static_cast<std::uint16_t>(sums[i] + row[i]);
}

PINTALUX_VECTORIZED
void addTwoRows(const std::uint8_t* a, const std::uint8_t* b, std::uint16_t* __restrict sums, int length)
{
    for (int i = 0; i < length; ++i)
        sums[i] = static_cast<std::uint16_t>(sums[i] + a[i] + b[i]);
}

/// Makes rows of means from bands of cells; one per thread.
class BandSums {
public:
    BandSums(const QImage& source, int side)
        : source(source)
        , side(side)
        , columnSums(std::size_t(source.width()) * channels)
        , cellSums(std::size_t((source.width() - 1) / side + 1))
    {
    }

    void means(int band, std::uint8_t* target)
    {
        const int top = band * side;
        const int rows = std::min(side, source.height() - top);
        std::fill(cellSums.begin(), cellSums.end(), Sums{});
        for (int done = 0; done < rows; done += rowsPerGo)
            addRows(top + done, std::min(rowsPerGo, rows - done));
        for (std::size_t k = 0; k < cellSums.size(); ++k) {
            const std::uint64_t count = std::uint64_t(cellWidth(k)) * std::uint64_t(rows);
            for (std::size_t channel = 0; channel < channels; ++channel)
                *target++ = static_cast<std::uint8_t>((cellSums[k][channel] + count / 2) / count);
        }
    }

private:
    using Sums = std::array<std::uint64_t, channels>;

    void addRows(int first, int rows)
    {
        std::fill(columnSums.begin(), columnSums.end(), std::uint16_t(0));
        const int length = static_cast<int>(columnSums.size());
        int y = 0;
        for (; y + 1 < rows; y += 2)
            addTwoRows(source.constScanLine(first + y), source.constScanLine(first + y + 1),
                columnSums.data(), length);
        if (y < rows)
            addRow(source.constScanLine(first + y), columnSums.data(), length);

        const std::uint16_t* sums = columnSums.data();
        for (std::size_t k = 0; k < cellSums.size(); ++k) {
            std::array<std::uint32_t, channels> total{};
            for (int x = cellWidth(k); x > 0; --x, sums += channels)
                for (int channel = 0; channel < channels; ++channel)
                    total[std::size_t(channel)] += sums[channel];
            for (std::size_t channel = 0; channel < channels; ++channel)
                cellSums[k][channel] += total[channel];
        }
    }

    int cellWidth(std::size_t k) const { return std::min(side, source.width() - static_cast<int>(k) * side); }

    const QImage& source;
    int side;
    std::vector<std::uint16_t> columnSums;
    std::vector<Sums> cellSums;
};

} // namespace

QImage cellMeans(const QImage& picture, int side)
{
    QImage result((picture.width() - 1) / side + 1, (picture.height() - 1) / side + 1, picture.format());
    if (result.isNull())
        return result;
    auto* const target = result.bits();
    const auto stride = result.bytesPerLine();
    const int fewest = pixelsPerThread / (picture.width() * std::min(side, picture.height())) + 1;
    parallelRanges(result.height(), fewest, [&](int first, int last) {
        BandSums sums(picture, side);
        for (int band = first; band < last; ++band)
            sums.means(band, target + band * stride);
    });
    return result;
}

} // namespace pintalux
