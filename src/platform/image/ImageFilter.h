// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace pintalux::ImageFilter {

/// Gaussian blur of a coverage mask, outside of which nothing is covered. Gives an `Alpha8` mask of the same
/// size; whoever wants the whole halo leaves room of three `sigma` around what is covered.
///
/// A `Grayscale8` picture is taken as coverage; of any other one the alpha channel counts.
QImage blurMask(const QImage& mask, double sigma);

} // namespace pintalux::ImageFilter
