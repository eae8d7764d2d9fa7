// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>

namespace pintalux {

/// How a PNG or WebP file asks to be turned to be seen as it was taken: from 1 (as it is) to 8, the numbers
/// of the Exif format's orientation. 1 for every other file and for what is not in order.
///
/// The toolkit heeds the orientation of JPEG and TIFF files only.
int storedOrientation(const QByteArray& file);

/// `image` turned and mirrored as an orientation asks.
QImage oriented(const QImage& image, int orientation);

} // namespace pintalux
