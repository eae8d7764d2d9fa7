// SPDX-License-Identifier: MIT
#include "render/export/Clipboard.h"

#include "platform/base/Worker.h"
#include "render/export/Exporter.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImageWriter>
#include <QMimeData>
#include <QPointer>

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
            return png.result(); // which waits for it
        if (type == tiffType)
            return tiff();
        return {};
    }

private:
    QByteArray tiff() const
    {
        QBuffer buffer;
        QImageWriter writer(&buffer, "tiff");
        writer.setCompression(1); // LZW, which every reader of the format knows
        return writer.write(QImage::fromData(png.result(), "PNG")) ? buffer.data() : QByteArray();
    }

    QFuture<QByteArray> png;
};

/// Of its own, so that nobody who pastes waits for other work. The end of the application waits for it: a
/// program that keeps what is copied may still have asked.
QThreadPool& encodingPool()
{
    static QPointer<QThreadPool> pool;
    if (!pool)
        pool = new QThreadPool(QCoreApplication::instance());
    return *pool;
}

void offer(QFuture<QByteArray> png)
{
    QGuiApplication::clipboard()->setMimeData(new PictureData(std::move(png))); // which owns it
}

} // namespace

void copy(const QImage& image, double pixelScale)
{
    const auto encode
        = [image, pixelScale] { return Exporter::pngData(image, pixelScale).value_or(QByteArray()); };
    if (!image.isNull())
        offer(runOn(encodingPool(), encode));
}

void copy(const QByteArray& png)
{
    if (!png.isEmpty())
        offer(QtFuture::makeReadyFuture(png));
}

void copy(const QString& text) { QGuiApplication::clipboard()->setText(text); }

} // namespace pintalux::Clipboard
