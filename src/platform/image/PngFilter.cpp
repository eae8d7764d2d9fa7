// SPDX-License-Identifier: MIT
#include "platform/image/PngFilter.h"

#include "platform/base/Vectorized.h"

#include <algorithm>

namespace pintalux {

namespace {

using Bytes = const std::uint8_t*;

PINTALUX_VECTORIZED
void subtract(Bytes row, Bytes predicted, std::uint8_t* __restrict target, int length)
{
    for (int i = 0; i < length; ++i)
        target[i] = static_cast<std::uint8_t>(row[i] - predicted[i]);
}

PINTALUX_VECTORIZED
void subtractAverage(Bytes row, Bytes left, Bytes above, std::uint8_t* __restrict target, int length)
{
    for (int i = 0; i < length; ++i) {
        const auto sum = static_cast<std::uint16_t>(left[i] + above[i]);
        target[i] = static_cast<std::uint8_t>(row[i] - (sum >> 1));
    }
}

/// The format's predictor: of left, above and above left whichever is nearest to left + above − above left.
PINTALUX_VECTORIZED
void subtractPaeth(
    Bytes row, Bytes left, Bytes above, Bytes corner, std::uint8_t* __restrict target, int length)
{
    for (int i = 0; i < length; ++i) {
        const std::int16_t a = left[i], b = above[i], c = corner[i];
        const auto da = static_cast<std::int16_t>(b > c ? b - c : c - b);
        const auto db = static_cast<std::int16_t>(a > c ? a - c : c - a);
        const auto both = static_cast<std::int16_t>(a + b - 2 * c);
        const auto dc = static_cast<std::int16_t>(both < 0 ? -both : both);
        const std::int16_t aboveOrCorner = db <= dc ? b : c;
        const std::int16_t nearest = da <= std::min(db, dc) ? a : aboveOrCorner;
        target[i] = static_cast<std::uint8_t>(row[i] - nearest);
    }
}

PINTALUX_VECTORIZED
std::uint32_t sumOfDistances(Bytes bytes, int length)
{
    std::uint32_t sum = 0;
    for (int i = 0; i < length; ++i) {
        const std::uint8_t value = bytes[i];
        const auto negated = static_cast<std::uint8_t>(-value);
        sum += value < negated ? value : negated;
    }
    return sum;
}

PINTALUX_VECTORIZED
std::uint32_t countRepeated(
    const std::uint32_t* pixels, const std::uint32_t* left, const std::uint32_t* above, int length)
{
    std::uint32_t count = 0;
    for (int i = 0; i < length; ++i)
        count += static_cast<std::uint32_t>((pixels[i] == left[i]) | (pixels[i] == above[i]));
    return count;
}

PINTALUX_VECTORIZED
std::uint32_t bitsInCommon(const std::uint32_t* pixels, int length)
{
    std::uint32_t common = 0xffffffff;
    for (int i = 0; i < length; ++i)
        common &= pixels[i];
    return common;
}

PINTALUX_VECTORIZED
void packRgbPixels(const std::uint32_t* pixels, std::uint8_t* __restrict target, int length)
{
    for (std::ptrdiff_t i = 0; i < length; ++i) {
        target[3 * i] = static_cast<std::uint8_t>(pixels[i] >> 16);
        target[3 * i + 1] = static_cast<std::uint8_t>(pixels[i] >> 8);
        target[3 * i + 2] = static_cast<std::uint8_t>(pixels[i]);
    }
}

} // namespace

void filterRow(PngFilter filter, std::span<const std::uint8_t> row, const std::uint8_t* above,
    std::size_t bytesPerPixel, std::uint8_t* target)
{
    const std::uint8_t* left = row.data() - bytesPerPixel;
    const auto length = static_cast<int>(row.size());
    switch (filter) {
    case PngFilter::none:
        std::copy(row.begin(), row.end(), target);
        return;
    case PngFilter::sub:
        return subtract(row.data(), left, target, length);
    case PngFilter::up:
        return subtract(row.data(), above, target, length);
    case PngFilter::average:
        return subtractAverage(row.data(), left, above, target, length);
    case PngFilter::paeth:
        return subtractPaeth(row.data(), left, above, above - bytesPerPixel, target, length);
    }
}

std::uint64_t distanceFromZero(std::span<const std::uint8_t> bytes)
{
    return sumOfDistances(bytes.data(), static_cast<int>(bytes.size()));
}

void packRgb(std::span<const std::uint32_t> pixels, std::uint8_t* target)
{
    packRgbPixels(pixels.data(), target, static_cast<int>(pixels.size()));
}

std::size_t repeatedPixels(std::span<const std::uint32_t> pixels, const std::uint32_t* above)
{
    if (pixels.size() < 2)
        return pixels.size();
    const std::uint32_t* inner = pixels.data() + 1;
    return countRepeated(
        inner, pixels.data(), above ? above + 1 : pixels.data(), static_cast<int>(pixels.size()) - 1);
}

bool allOpaque(std::span<const std::uint32_t> pixels)
{
    return bitsInCommon(pixels.data(), static_cast<int>(pixels.size())) >> 24 == 0xff;
}

} // namespace pintalux
