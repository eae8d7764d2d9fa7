// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>

namespace pintalux {

/// True when the bytes are those of a HEIC or AVIF file, or of another file of their family.
bool looksLikeHeif(const QByteArray& bytes);

struct HeifImage {
    QImage image;          ///< upright, tagged with its colour space; null when it could not be decoded
    bool tooLarge = false; ///< it was not decoded because its pixels would take more than the limit
};

/// The primary picture of a HEIC or AVIF file. `limit` is in bytes.
HeifImage decodeHeif(const QByteArray& bytes, qint64 limit);

} // namespace pintalux
