// SPDX-License-Identifier: MIT
#include "render/export/Clipboard.h"

#include "platform/base/Error.h"
#include "platform/desktop/WindowSystem.h"
#include "render/export/Exporter.h"

#include <QBuffer>
#include <QImageWriter>
#include <QMimeData>

namespace pintalux::Clipboard {

namespace {

const QString pngType = QStringLiteral("image/png");
const QString tiffType = QStringLiteral("image/tiff");

/// A picture on the clipboard. Only the PNG bytes stay in memory: a TIFF has ten times their size and hardly
/// anybody asks for it, so that it is made from them for each request.
class PictureData : public QMimeData {
public:
    explicit PictureData(QFuture<QByteArray> encoded)
        : png(std::move(encoded))
    {
    }

    QStringList formats() const override
    {
        const bool canWriteTiff = QImageWriter::supportedImageFormats().contains("tiff");
        return canWriteTiff ? QStringList{pngType, tiffType} : QStringList{pngType};
    }

protected:
    QVariant retrieveData(const QString& type, QMetaType) const override
    {
        if (type == pngType)
            return encoded();
        if (type == tiffType)
            return tiff();
        return {};
    }

private:
    // Waits for it; empty when there was no memory or no thread for it.
    QByteArray encoded() const
    {
        try {
            return png.result();
        } catch (const Error&) {
            return {};
        }
    }

    QByteArray tiff() const
    {
        QBuffer buffer;
        QImageWriter writer(&buffer, "tiff");
        writer.setCompression(1); // LZW, which every reader of the format knows
        return writer.write(QImage::fromData(encoded(), "PNG")) ? buffer.data() : QByteArray();
    }

    QFuture<QByteArray> png;
};

} // namespace

void copy(const QImage& image, double pixelScale)
{
    if (!image.isNull())
        copy(Exporter::encode(image, pixelScale));
}

void copy(const QFuture<QByteArray>& png)
{
    WindowSystem::current().setClipboard(std::make_unique<PictureData>(png));
}

void copy(const QString& text)
{
    auto data = std::make_unique<QMimeData>();
    data->setText(text);
    WindowSystem::current().setClipboard(std::move(data));
}

} // namespace pintalux::Clipboard
