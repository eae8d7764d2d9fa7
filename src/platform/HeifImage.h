#pragma once

#include <QByteArray>
#include <QImage>

namespace pintalux {

/// True when the bytes are those of a HEIC or AVIF file, or of another file of their family.
bool looksLikeHeif(const QByteArray& bytes);

/// The primary picture of a HEIC or AVIF file, upright, tagged with its colour space when the file has one.
/// Null when it cannot be decoded or when its pixels would take more than `limit` bytes.
QImage decodeHeif(const QByteArray& bytes, qint64 limit, bool& tooLarge);

} // namespace pintalux
