// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

namespace pintalux::PngEncoder {

/// The PNG file of a picture, pixel for pixel: 8 bits a component, sRGB, three components when every pixel is
/// opaque and four otherwise, transparency not premultiplied (converted as the toolkit does).
///
/// The file states 72 · `pixelScale` dots per inch, so that a picture of a 2× screen opens at the size it had
/// there. A picture tagged with another colour space is converted to sRGB. None for a null picture and when
/// there is not enough memory.
std::optional<QByteArray> encode(const QImage& image, double pixelScale);

} // namespace pintalux::PngEncoder
