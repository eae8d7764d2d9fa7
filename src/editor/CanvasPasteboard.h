#pragma once

#include <QImage>

class QMimeData;

namespace pintalux::CanvasPasteboard {

/// The first picture that a clipboard or a drag offers: of its files the first that can be decoded, else its
/// image data. Null for none. In the program's working format.
QImage firstImage(const QMimeData* data);

/// Whether `firstImage` is likely to find one, told without decoding: by the contents' first bytes.
bool offersImage(const QMimeData* data);

} // namespace pintalux::CanvasPasteboard
