// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>

#include <optional>

namespace pintalux::PixelSampler {

/// The colour of one pixel in sRGB, opaque; none outside the image.
std::optional<QColor> color(const QImage& image, int x, int y);

} // namespace pintalux::PixelSampler
