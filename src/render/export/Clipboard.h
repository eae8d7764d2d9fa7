// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFuture>
#include <QImage>
#include <QString>

namespace pintalux {

/// Puts pictures and text on the clipboard.
namespace Clipboard {

/// Offers the picture as PNG and as TIFF; both tell its physical size. It returns at once: the PNG is made on
/// a thread, and who asks for it earlier waits; the TIFF is made when somebody asks. A null picture leaves
/// the clipboard as it is.
void copy(const QImage& image, double pixelScale);

/// The same from bytes that `Exporter::encode` makes.
void copy(const QFuture<QByteArray>& png);

void copy(const QString& text);

} // namespace Clipboard

} // namespace pintalux
