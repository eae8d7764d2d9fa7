// SPDX-License-Identifier: MIT
#pragma once

#include "model/BeautifySettings.h"
#include "model/Document.h"
#include "render/EffectCache.h"

#include <QByteArray>
#include <QDateTime>
#include <QFuture>
#include <QImage>
#include <QString>

#include <functional>
#include <optional>

namespace pintalux {

class Worker;

/// Turns finished pictures into PNG files.
///
/// A picture comes with its pixel scale (pixels per screen point), which becomes the file's physical size: 72
/// dots per inch at scale 1. What takes `png` takes bytes that `pngData` has made, so that one encoding
/// serves the file, the clipboard and a drag; no bytes stand for a picture that could not be encoded.
///
/// Failures throw `Error`: a picture that cannot be encoded is the program's own error 1, the rest are file
/// errors. A failed save leaves neither a partial nor a temporary file.
namespace Exporter {

/// Tells the time that names a file.
using Clock = std::function<QDateTime()>;
inline QDateTime wallClock() { return QDateTime::currentDateTime(); }

/// The composition as one picture, sRGB with premultiplied alpha. Null when a side is shorter than a pixel,
/// when it would take more than 1 GiB, and when there is no memory for it.
QImage render(const Document& document, const BeautifySettings& beautify, EffectCache& cache);
/// The image with its redactions and no other mark: what may be read of it. Null as above.
QImage redacted(const Document& document, EffectCache& cache);

/// None when the picture is empty or cannot be encoded.
std::optional<QByteArray> pngData(const QImage& image, double pixelScale);

/// The same on a thread, at once; no bytes where there are none. The end of the application waits for it: a
/// program that keeps what is copied may still have asked.
QFuture<QByteArray> encode(const QImage& image, double pixelScale);

/// "Pintalux <title> <date> a las <time>.png".
///
/// What cannot stand in a file name becomes "-", the product's own name in front of the title is dropped, and
/// the title is cut to 60 characters as a person counts them, fewer where the name would pass 255 bytes of
/// UTF-8, number included.
QString defaultFileName(const std::optional<QString>& name, const QDateTime& now = wallClock());

/// Writes the file, replacing one that is there.
void write(const QImage& image, double pixelScale, const QString& path);
void write(const QByteArray& png, const QString& path);

/// Saves into the folder, made where it is missing, without asking and without ever replacing a file, also
/// when another process saves at the same moment: a name that is taken gets " (2)", " (3)", … The path that
/// was written.
QString quickSave(const QImage& image, double pixelScale, const QString& folder,
    const std::optional<QString>& name = std::nullopt, const Clock& clock = wallClock);
QString quickSave(const QByteArray& png, const QString& folder,
    const std::optional<QString>& name = std::nullopt, const Clock& clock = wallClock);

/// A file on its way into the captures folder.
struct Saving {
    QDateTime stamp;       ///< the time in its name
    QFuture<QString> path; ///< the path that was written, or the `Error`
};
/// `quickSave` on the saving thread, under the name of this moment.
Saving startQuickSave(const QFuture<QByteArray>& png, const QString& folder,
    const std::optional<QString>& name = std::nullopt, const Clock& clock = wallClock);

/// Where windows save, so that they go on answering: one file after another, named in their order. The end of
/// the application waits for what is still to be saved.
Worker& savingThread();

/// Writes the file into the person's private temporary folder, to be dragged into other programs; none on any
/// failure. Those of earlier days are removed.
///
/// The folder is called "Pintalux", has mode 0700 and stands in `$XDG_RUNTIME_DIR`, which is the person's
/// own. Where the session has none, it stands in `pintalux-<user number>` in the temporary directory, so that
/// persons who share that directory do not meet. A folder on the way that is somebody else's or a symbolic
/// link is refused.
std::optional<QString> temporaryFile(const QImage& image, double pixelScale,
    const std::optional<QString>& name = std::nullopt, const QDateTime& now = wallClock());
std::optional<QString> temporaryFile(const QByteArray& png, const std::optional<QString>& name = std::nullopt,
    const QDateTime& now = wallClock());

} // namespace Exporter

} // namespace pintalux
