// SPDX-License-Identifier: MIT
#include "platform/image/ImageFilter.h"

#include "platform/base/Parallel.h"
#include "platform/base/Vectorized.h"
#include "platform/image/GaussianBlur.h"
#include "platform/image/LargeImage.h"

#include <QColorSpace>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace pintalux::ImageFilter {

namespace {

constexpr int channels = 4;
/// Fewest pixels for which a second thread pays.
constexpr int pixelsPerThread = 250'000;

QImage workingFormat(const QImage& source)
{
    const auto format = source.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    return source.convertToFormat(format);
}

QImage emptyCopy(const QImage& source)
{
    auto copy = newImage(source.size(), source.format());
    copy.setColorSpace(source.colorSpace());
    copy.setDotsPerMeterX(source.dotsPerMeterX());
    copy.setDotsPerMeterY(source.dotsPerMeterY());
    return copy;
}

SamplePlane<const std::uint8_t> plane(const QImage& image, int samples)
{
    return {image.constBits(), image.bytesPerLine(), image.width(), image.height(), samples};
}

SamplePlane<std::uint8_t> plane(QImage& image, int samples)
{
    return {image.bits(), image.bytesPerLine(), image.width(), image.height(), samples};
}

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

/// Fills bands of cells from top to bottom; one per thread.
class CellFiller {
public:
    CellFiller(const QImage& source, const SamplePlane<std::uint8_t>& target, int cell)
        : source(plane(source, channels))
        , target(target)
        , cell(cell)
        , columnSums(std::size_t(this->source.rowLength()))
        , cellSums(std::size_t((source.width() - 1) / cell + 1))
    {
    }

    void fillBand(int band)
    {
        const int top = band * cell;
        const int rows = std::min(cell, source.height - top);
        std::fill(cellSums.begin(), cellSums.end(), Sums{});
        for (int done = 0; done < rows; done += rowsPerGo)
            addRows(top + done, std::min(rowsPerGo, rows - done));
        paintRow(target.row(top), rows);
        for (int y = top + 1; y < top + rows; ++y)
            std::memcpy(target.row(y), target.row(top), std::size_t(target.rowLength()));
    }

private:
    using Sums = std::array<std::uint64_t, channels>;

    void addRows(int first, int rows)
    {
        std::fill(columnSums.begin(), columnSums.end(), std::uint16_t(0));
        int y = 0;
        for (; y + 1 < rows; y += 2)
            addTwoRows(
                source.row(first + y), source.row(first + y + 1), columnSums.data(), source.rowLength());
        if (y < rows)
            addRow(source.row(first + y), columnSums.data(), source.rowLength());

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

    void paintRow(std::uint8_t* row, int rows) const
    {
        for (std::size_t k = 0; k < cellSums.size(); ++k) {
            const std::uint64_t count = std::uint64_t(cellWidth(k)) * std::uint64_t(rows);
            std::array<std::uint8_t, channels> mean{};
            for (std::size_t channel = 0; channel < channels; ++channel)
                mean[channel] = static_cast<std::uint8_t>((cellSums[k][channel] + count / 2) / count);
            for (int x = cellWidth(k); x > 0; --x, row += channels)
                std::memcpy(row, mean.data(), channels);
        }
    }

    int cellWidth(std::size_t k) const { return std::min(cell, source.width - static_cast<int>(k) * cell); }

    SamplePlane<const std::uint8_t> source;
    SamplePlane<std::uint8_t> target;
    int cell;
    std::vector<std::uint16_t> columnSums;
    std::vector<Sums> cellSums;
};

} // namespace

QImage pixellate(const QImage& source, double cell)
{
    if (source.isNull())
        return {};
    const QImage image = workingFormat(source);
    QImage result = emptyCopy(image);
    if (result.isNull())
        return {};
    const int longest = std::max(image.width(), image.height());
    // Written so that what is not a number counts as 1.
    const int side = cell > 1 ? static_cast<int>(std::min(std::floor(cell + 0.5), double(longest))) : 1;
    const auto target = plane(result, channels);
    const int bands = (image.height() - 1) / side + 1;
    const int fewest = pixelsPerThread / (image.width() * std::min(side, image.height())) + 1;
    parallelRanges(bands, fewest, [&](int first, int last) {
        CellFiller filler(image, target, side);
        for (int band = first; band < last; ++band)
            filler.fillBand(band);
    });
    return result;
}

QImage gaussianBlur(const QImage& source, double sigma)
{
    if (source.isNull())
        return {};
    const QImage image = workingFormat(source);
    QImage result = emptyCopy(image);
    if (!result.isNull())
        pintalux::gaussianBlur(plane(image, channels), plane(result, channels), sigma, BlurEdge::repeat);
    return result;
}

QImage blurMask(const QImage& mask, double sigma)
{
    if (mask.isNull())
        return {};
    QImage coverage = mask;
    if (mask.format() != QImage::Format_Grayscale8)
        coverage.convertTo(QImage::Format_Alpha8);
    auto result = newImage(coverage.size(), QImage::Format_Alpha8);
    if (!result.isNull())
        pintalux::gaussianBlur(plane(std::as_const(coverage), 1), plane(result, 1), sigma, BlurEdge::zero);
    return result;
}

} // namespace pintalux::ImageFilter
