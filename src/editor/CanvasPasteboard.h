#pragma once

#include <QClipboard>
#include <QImage>
#include <QString>

class QMimeData;

namespace pintalux::CanvasPasteboard {

/// The first picture that a clipboard or a drag offers: of its files the first that can be decoded, else its
/// image data. Null for none. In the program's working format.
QImage firstImage(const QMimeData* data);

/// Whether `firstImage` is likely to find one, told without decoding: by the contents' first bytes.
bool offersImage(const QMimeData* data);

/// The text on a clipboard, and whether there is one, told without having it sent.
QString text(QClipboard::Mode mode = QClipboard::Clipboard);
bool offersText();

} // namespace pintalux::CanvasPasteboard
