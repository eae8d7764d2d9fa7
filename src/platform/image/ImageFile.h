// SPDX-License-Identifier: MIT
#pragma once

#include "platform/image/ImageDecoder.h"

#include <QString>

#include <optional>

namespace pintalux {

/// A picture read from a file.
struct ImageFile {
    /// `RGB32` when every pixel is opaque, else `ARGB32_Premultiplied`; sRGB, device pixel ratio 1.
    QImage image;
    /// Horizontally, as far as the file says; the toolkit counts a file that says nothing as 96.
    std::optional<double> dotsPerInch;

    /// Pixels per point at which the picture opens: dots per inch above 100 count as 72 a point, rounded to
    /// the nearest whole number, halves up; everything else is 1.
    double pixelScale() const;
};

/// Reads the first picture of a file, whatever its name says that it is: PNG, JPEG, TIFF, GIF, WebP and what
/// else the toolkit knows, HEIC and AVIF. It is turned the way in which it was taken, and its colours are
/// converted to sRGB.
///
/// Throws `Error` with a Spanish sentence for a file that cannot be read, is no picture, is broken or cut
/// off, or would take more than 1 GiB of memory; that is found out before the memory is taken.
ImageFile readImageFile(const QString& path);

/// The same from bytes that were sent instead of written to a file. Null when they are no picture.
QImage decodedImage(const QByteArray& bytes);

} // namespace pintalux
