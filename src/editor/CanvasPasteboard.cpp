#include "editor/CanvasPasteboard.h"

#include "platform/Error.h"
#include "platform/ImageFile.h"

#include <QGuiApplication>
#include <QMimeData>
#include <QMimeDatabase>
#include <QUrl>

namespace pintalux::CanvasPasteboard {

namespace {

// Asked first: each question to an owner that does not answer takes seconds, and a kind of data that is
// looked for costs several.
bool offersAnything(const QMimeData* data) { return data && !data->formats().isEmpty(); }

} // namespace

QImage firstImage(const QMimeData* data)
{
    if (!offersAnything(data))
        return {};
    for (const auto& url : data->urls()) {
        if (!url.isLocalFile())
            continue;
        try {
            return readImageFile(url.toLocalFile()).image;
        } catch (const Error&) {
            continue; // no picture: the next one may be
        }
    }
    return data->hasImage() ? workingImage(qvariant_cast<QImage>(data->imageData())) : QImage();
}

bool offersImage(const QMimeData* data)
{
    if (!offersAnything(data))
        return false;
    const QMimeDatabase types;
    for (const auto& url : data->urls())
        if (url.isLocalFile()
            && types.mimeTypeForFile(url.toLocalFile(), QMimeDatabase::MatchContent)
                   .name()
                   .startsWith(u"image/"))
            return true;
    return data->hasImage();
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
