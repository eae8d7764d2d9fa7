// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace pintalux {

/// Interleaved 8-bit samples somewhere in memory, rows from the top.
template <typename Byte> struct SamplePlane {
    Byte* samples;
    std::ptrdiff_t stride; ///< bytes from one row to the next
    int width;             ///< pixels
    int height;            ///< pixels
    int channels;          ///< samples of a pixel, 1 or 4

    Byte* row(int y) const { return samples + y * stride; }
    int rowLength() const { return width * channels; }
};

/// What lies beyond the plane's edges.
enum class BlurEdge {
    repeat, ///< the edge pixels, without end
    zero,
};

/// Writes to `target` the Gaussian blur of `source`, within about one level of the true one.
///
/// The planes have the same size and do not overlap. `sigma` is in pixels; below 0.2, where a Gaussian
/// changes nothing, the samples are copied.
void gaussianBlur(const SamplePlane<const std::uint8_t>& source, const SamplePlane<std::uint8_t>& target,
    double sigma, BlurEdge edge);

} // namespace pintalux
