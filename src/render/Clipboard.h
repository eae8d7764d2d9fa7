#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

namespace pintalux {

/// Puts pictures and text on the clipboard.
namespace Clipboard {

/// Offers the picture as PNG, made now, and as TIFF, made when somebody asks for it; both tell its physical
/// size. A picture that cannot be encoded leaves the clipboard as it is.
void copy(const QImage& image, double pixelScale);

/// The same from bytes that `Exporter::pngData` has made.
void copy(const QByteArray& png);

void copy(const QString& text);

} // namespace Clipboard

} // namespace pintalux
