// SPDX-License-Identifier: MIT
#include "editor/canvas/CanvasPasteboard.h"

#include "platform/base/Error.h"
#include "platform/image/ImageFile.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QMimeData>
#include <QMimeDatabase>
#include <QUrl>

namespace pintalux::CanvasPasteboard {

namespace {

// Asked first: each question to an owner that does not answer takes seconds, and a kind of data that is
// looked for costs several.
bool offersAnything(const QMimeData* data) { return data && !data->formats().isEmpty(); }

QStringList localFiles(const QMimeData& data)
{
    QStringList files;
    for (const auto& url : data.urls())
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    return files;
}

/// The formats of encoded image data, best first. What this program itself has copied offers nothing else.
QStringList encodedFormats(const QMimeData& data)
{
    const auto known = QImageReader::supportedMimeTypes();
    QStringList formats;
    for (const auto& format : data.formats())
        if (known.contains(format.toLatin1()))
            formats.insert(format == u"image/png" ? 0 : formats.size(), format);
    return formats;
}

} // namespace

bool offersImage(const QMimeData* data)
{
    if (!offersAnything(data))
        return false;
    const QMimeDatabase types;
    for (const auto& file : localFiles(*data))
        if (types.mimeTypeForFile(file, QMimeDatabase::MatchContent).name().startsWith(u"image/"))
            return true;
    return data->hasImage() || !encodedFormats(*data).isEmpty();
}

Offer offer(const QMimeData& data)
{
    if (!offersAnything(&data))
        return {};
    Offer found{.files = localFiles(data), .encoded = {}, .image = {}};
    for (const auto& format : encodedFormats(data)) {
        found.encoded = data.data(format);
        if (!found.encoded.isEmpty())
            return found;
    }
    if (data.hasImage())
        found.image = qvariant_cast<QImage>(data.imageData());
    return found;
}

QImage firstImage(const Offer& offer)
{
    for (const auto& file : offer.files) {
        try {
            return readImageFile(file).image;
        } catch (const Error&) {
            continue; // no picture: the next one may be
        }
    }
    return offer.encoded.isEmpty() ? workingImage(offer.image) : decodedImage(offer.encoded);
}

QString text(QClipboard::Mode mode)
{
    const auto* data = QGuiApplication::clipboard()->mimeData(mode);
    return offersAnything(data) ? data->text() : QString();
}

bool offersText()
{
    const auto* data = QGuiApplication::clipboard()->mimeData();
    return offersAnything(data) && data->hasText();
}

} // namespace pintalux::CanvasPasteboard
