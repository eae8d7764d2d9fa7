#include "editor/CanvasPasteboard.h"

#include "platform/Error.h"
#include "platform/ImageFile.h"

#include <QMimeData>
#include <QMimeDatabase>
#include <QUrl>

namespace pintalux::CanvasPasteboard {

QImage firstImage(const QMimeData* data)
{
    if (!data)
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
    if (!data)
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

} // namespace pintalux::CanvasPasteboard
