// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace pintalux {

/// 8-bit samples somewhere in memory, rows from the top.
template <typename Byte> struct SamplePlane {
    Byte* samples;
    std::ptrdiff_t stride; ///< bytes from one row to the next
    int width;
    int height;

    Byte* row(int y) const { return samples + y * stride; }
};

/// Writes to `target` the Gaussian blur of `source`, within about one level of the true one. Beyond the edges
/// there are zeros.
///
/// The planes have the same size and do not overlap. `sigma` is in samples; below 0.2, where a Gaussian
/// changes nothing, the samples are copied.
void gaussianBlur(
    const SamplePlane<const std::uint8_t>& source, const SamplePlane<std::uint8_t>& target, double sigma);

} // namespace pintalux
