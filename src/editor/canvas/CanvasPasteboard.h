// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QClipboard>
#include <QImage>
#include <QStringList>

class QMimeData;

namespace pintalux::CanvasPasteboard {

/// What a clipboard or a drag offers of pictures, taken out of it undecoded.
struct Offer {
    QStringList files;  ///< local ones
    QByteArray encoded; ///< image data as its owner sends it
    QImage image;       ///< image data that its owner has in memory
};

/// Whether there is a picture to expect, told by the first bytes of files.
bool offersImage(const QMimeData* data);

/// Main thread, while the clipboard or the drag lasts.
Offer offer(const QMimeData& data);

/// The first picture of an offer: of its files the first that can be decoded, else its image data. Null for
/// none. In the program's working format. Any thread.
QImage firstImage(const Offer& offer);

/// The text on a clipboard, and whether there is one, told without having it sent.
QString text(QClipboard::Mode mode = QClipboard::Clipboard);
bool offersText();

} // namespace pintalux::CanvasPasteboard
