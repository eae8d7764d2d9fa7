// SPDX-License-Identifier: MIT
#include "editor/window/EditorWindowDrag.h"

#include "controls/theme/Theme.h"
#include "platform/graphics/Draw.h"
#include "render/export/Exporter.h"

#include <QPainter>

namespace pintalux {

namespace {

const QString pngType = QStringLiteral("image/png");
const QString addressesType = QStringLiteral("text/uri-list");

constexpr QSizeF largestThumbnail{200, 150}; ///< points

} // namespace

DraggedPicture::DraggedPicture(const QImage& picture, double scale, const std::optional<QString>& title)
    : image(picture)
    , pixelScale(scale)
    , name(title)
{
}

QStringList DraggedPicture::formats() const { return {addressesType, pngType}; }

QVariant DraggedPicture::retrieveData(const QString& type, QMetaType preferred) const
{
    if (type == pngType)
        return png();
    if (type != addressesType)
        return {};
    // Who asks for addresses gets addresses: not every toolkit makes them of bytes.
    const auto address = fileAddress();
    if (preferred.id() == QMetaType::QVariantList)
        return address.isEmpty() ? QVariantList() : QVariantList{address};
    return address.isEmpty() ? QByteArray() : address.toEncoded() + "\r\n";
}

const QByteArray& DraggedPicture::png() const
{
    if (encoded.isEmpty())
        encoded = Exporter::pngData(image, pixelScale).value_or(QByteArray());
    return encoded;
}

QUrl DraggedPicture::fileAddress() const
{
    if (!path)
        path = Exporter::temporaryFile(png(), name);
    return path ? QUrl::fromLocalFile(*path) : QUrl();
}

QPixmap DraggedPicture::thumbnail(double devicePixelRatio) const
{
    const auto points = QSizeF(image.size()) / pixelScale;
    const auto shown = points.scaled(points.boundedTo(largestThumbnail), Qt::KeepAspectRatio);
    const auto pixels = (shown * devicePixelRatio).toSize().expandedTo({1, 1});
    QPixmap pixmap(pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(Theme::dragOpacity);
    QPainterPath shape = Draw::roundedRect(QRectF({}, pixels), Theme::dragRadius * devicePixelRatio);
    painter.setClipPath(shape);
    painter.drawImage(0, 0, image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    painter.end();
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

} // namespace pintalux
