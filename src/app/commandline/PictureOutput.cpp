// SPDX-License-Identifier: MIT
#include "app/commandline/PictureOutput.h"

#include "platform/base/Error.h"
#include "platform/base/Files.h"
#include "render/export/Exporter.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>
#include <QStringList>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace pintalux::PictureOutput {

namespace {

const QString standardOutput = u"-"_s;

QString endingOf(const QString& path) { return QFileInfo(path).suffix().toLower(); }

bool isJpeg(const QString& path) { return endingOf(path) == u"jpg" || endingOf(path) == u"jpeg"; }

/// JPEG knows no transparency: paper shows through instead. Empty when it cannot be encoded.
QByteArray jpegOf(const QImage& image)
{
    QImage opaque(image.size(), QImage::Format_RGB32);
    if (opaque.isNull())
        return {};
    opaque.fill(Qt::white);
    opaque.setColorSpace(image.colorSpace());
    opaque.setDotsPerMeterX(image.dotsPerMeterX());
    opaque.setDotsPerMeterY(image.dotsPerMeterY());
    QPainter(&opaque).drawImage(0, 0, image);
    constexpr int quality = 92;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(quality);
    writer.setOptimizedWrite(true);
    return writer.write(opaque) ? bytes : QByteArray();
}

void put(const QByteArray& bytes, const QString& path)
{
    if (path != standardOutput)
        return Exporter::write(bytes, path);
    if (bytes.isEmpty())
        throw Error(Error::ownDomain, 1, u"No se pudo crear la imagen."_s);
    const auto written = std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stdout);
    if (qsizetype(written) != bytes.size() || std::fflush(stdout) != 0)
        throw fileError(errno, u"salida estándar"_s);
}

} // namespace

void requireName(const QString& path)
{
    static const QStringList others{u"gif"_s, u"webp"_s, u"bmp"_s, u"tif"_s, u"tiff"_s, u"svg"_s, u"pdf"_s,
        u"heic"_s, u"avif"_s, u"jxl"_s, u"ico"_s, u"ppm"_s};
    if (path != standardOutput && others.contains(endingOf(path)))
        throw Error(Error::ownDomain, 7, u"«%1»: --output escribe PNG o JPEG."_s.arg(path));
}

void write(const QImage& image, double pixelScale, const QString& path)
{
    requireName(path);
    if (!isJpeg(path))
        return put(Exporter::pngData(image, pixelScale).value_or(QByteArray()), path);
    auto sized = image;
    const int dotsPerMeter = qRound(pixelScale * 72 / 0.0254); // as many pixels a point of 1/72 inch
    sized.setDotsPerMeterX(dotsPerMeter);
    sized.setDotsPerMeterY(dotsPerMeter);
    put(jpegOf(sized), path);
}

void write(const QByteArray& png, const QString& path)
{
    put(isJpeg(path) ? jpegOf(QImage::fromData(png, "png")) : png, path);
}

void writeText(QByteArray text, const QString& path)
{
    if (!text.endsWith('\n'))
        text += '\n';
    put(text, path);
}

} // namespace pintalux::PictureOutput
