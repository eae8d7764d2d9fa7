// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

namespace pintalux {

/// A picture as it comes out of a file's bytes.
struct DecodedImage {
    enum class Outcome {
        picture,
        unreadable,    ///< no picture, or a broken one
        tooLarge,      ///< its pixels would take more than `memoryLimit`
        tooSlow,       ///< its decoder was stopped
        noRoomToDecode ///< the system gave no process or no memory for it
    };

    QImage image = {}; ///< as `workingImage` makes it; null unless the outcome is a picture
    std::optional<double> dotsPerInch = {};
    Outcome outcome = Outcome::unreadable;

    static constexpr qint64 memoryLimit = qint64(1) << 30; ///< bytes
};

/// Decodes the first picture of the bytes on this thread, whatever they are, trusting the decoders.
DecodedImage decodeHere(QByteArray bytes);

/// A picture from elsewhere in the form that documents have: `RGB32` when every pixel is opaque, else
/// `ARGB32_Premultiplied`; sRGB, device pixel ratio 1. Null stays null.
QImage workingImage(QImage image);

} // namespace pintalux
