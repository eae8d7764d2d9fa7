// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace pintalux {

/// The five ways in which a PNG row can be stored, with their numbers in the file.
enum class PngFilter : std::uint8_t { none, sub, up, average, paeth };

/// Writes `row` filtered to `target`, without the number of the filter.
///
/// `above` is the row above it, zeros for the topmost one. Both have `bytesPerPixel` readable zero bytes
/// before their first byte.
void filterRow(PngFilter filter, std::span<const std::uint8_t> row, const std::uint8_t* above,
    std::size_t bytesPerPixel, std::uint8_t* target);

/// The sum of the distances from zero of bytes taken as signed: small when they will compress well.
std::uint64_t distanceFromZero(std::span<const std::uint8_t> bytes);

/// Writes the RGB bytes of 0xXXRRGGBB pixels.
void packRgb(std::span<const std::uint32_t> pixels, std::uint8_t* target);

/// How many pixels equal the one to their left or the one above them. `above` may be null.
std::size_t repeatedPixels(std::span<const std::uint32_t> pixels, const std::uint32_t* above);

/// True when all 0xAARRGGBB pixels are opaque.
bool allOpaque(std::span<const std::uint32_t> pixels);

} // namespace pintalux
