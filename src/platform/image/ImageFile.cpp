// SPDX-License-Identifier: MIT
#include "platform/image/ImageFile.h"

#include "platform/base/Error.h"
#include "platform/base/Files.h"
#include "platform/image/CutOff.h"
#include "platform/image/HeifImage.h"
#include "platform/image/Orientation.h"
#include "platform/image/PngFilter.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr qint64 memoryLimit = qint64(1) << 30;
constexpr double metresPerInch = 0.0254;

[[noreturn]] void fail(int code, const QString& sentence) { throw Error(Error::fileDomain, code, sentence); }

/// Told without reading all of it: among files that somebody dropped there may be a film.
bool beginsLikeAnImage(QFile& file)
{
    constexpr qint64 headLength = 4096;
    if (looksLikeHeif(file.peek(headLength)))
        return true;
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    const bool isKnown = reader.canRead();
    file.seek(0);
    return isKnown;
}

QByteArray readBytes(const QString& path)
{
    const QFileInfo info(path);
    const QString name = info.fileName();
    if (!info.exists())
        fail(QFileDevice::OpenError, u"No existe el archivo «%1»."_s.arg(name));
    // Nothing that could make the program wait, or never ends.
    if (!info.isFile())
        fail(QFileDevice::OpenError, u"«%1» no es un archivo."_s.arg(name));
    QFile file;
    if (openFile(path, file) != 0)
        fail(QFileDevice::OpenError, u"No se pudo leer el archivo «%1»."_s.arg(name));
    if (!beginsLikeAnImage(file) && file.error() == QFileDevice::NoError)
        fail(QFileDevice::ReadError, u"«%1» no es una imagen que se pueda abrir."_s.arg(name));
    if (file.size() > memoryLimit)
        fail(QFileDevice::ResourceError, u"La imagen «%1» es demasiado grande."_s.arg(name));
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        fail(file.error(), u"No se pudo leer el archivo «%1»."_s.arg(name));
    return bytes;
}

/// A picture as its decoder gives it.
struct Decoded {
    QImage image;
    std::optional<double> dotsPerInch;
    bool tooLarge = false;
};

Decoded decodeWithToolkit(QByteArray bytes)
{
    if (isCutOff(bytes))
        return {};
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader::setAllocationLimit(static_cast<int>(memoryLimit >> 20));
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > memoryLimit / 4)
        return {{}, {}, true};
    QImage image = reader.read();
    if (image.isNull())
        return {};
    // Whole dots per metre blur what was a whole number of dots per inch.
    const double exact = image.dotsPerMeterX() * metresPerInch;
    const double dotsPerInch
        = std::abs(exact - std::round(exact)) < metresPerInch ? std::round(exact) : exact;
    const bool isTurned = reader.supportsOption(QImageIOHandler::ImageTransformation);
    return {isTurned ? std::move(image) : oriented(image, storedOrientation(bytes)), dotsPerInch};
}

Decoded decode(const QByteArray& bytes)
{
    if (!looksLikeHeif(bytes))
        return decodeWithToolkit(bytes);
    HeifImage heif = decodeHeif(bytes, memoryLimit);
    return {std::move(heif.image), std::nullopt, heif.tooLarge};
}

/// True for sRGB by name, and for how PNG files describe it to old readers: by its primaries and a gamma of
/// 1 / 2.2, and no profile. To the letter that is another curve, which would shift the dark colours of a
/// picture whose writer means sRGB.
bool meansStandard(const QColorSpace& space)
{
    if (space == QColorSpace(QColorSpace::SRgb))
        return true;
    if (space.transferFunction() != QColorSpace::TransferFunction::Gamma
        || std::abs(space.gamma() - 2.2F) > 0.005F || !space.description().isEmpty())
        return false;
    const QColorSpace sameCurve(
        QColorSpace::Primaries::SRgb, QColorSpace::TransferFunction::Gamma, space.gamma());
    const auto transform = space.transformationToColorSpace(sameCurve);
    return std::ranges::all_of(
        std::array{qRgb(200, 80, 60), qRgb(60, 200, 80), qRgb(80, 60, 200)}, [&](QRgb color) {
            const auto mapped = transform.map(color);
            return std::abs(qRed(mapped) - qRed(color)) <= 1 && std::abs(qGreen(mapped) - qGreen(color)) <= 1
                && std::abs(qBlue(mapped) - qBlue(color)) <= 1;
        });
}

bool isOpaque(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const std::uint32_t*>(image.constScanLine(y));
        if (!allOpaque({line, std::size_t(image.width())}))
            return false;
    }
    return true;
}

} // namespace

QImage workingImage(QImage image)
{
    if (image.isNull())
        return image;
    const bool transparent = image.hasAlphaChannel();
    if (image.depth() <= 32) // deeper ones keep their depth until their colours are converted
        image.convertTo(transparent ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const QColorSpace standard(QColorSpace::SRgb);
    if (image.colorSpace().isValid() && !meansStandard(image.colorSpace()))
        image.convertToColorSpace(standard);
    image.convertTo(transparent ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (transparent && !image.isNull() && isOpaque(image))
        image.convertTo(QImage::Format_RGB32);
    image.setColorSpace(standard);
    image.setDevicePixelRatio(1);
    return image;
}

double ImageFile::pixelScale() const
{
    // More than anything resolves is a mistake, and would make every mark as wide as a house.
    constexpr double mostDotsPerInch = 100'000;
    if (!dotsPerInch || !(*dotsPerInch > 100 && *dotsPerInch <= mostDotsPerInch))
        return 1;
    return std::max(1., std::round(*dotsPerInch / 72));
}

QImage decodedImage(const QByteArray& bytes) { return workingImage(decode(bytes).image); }

ImageFile readImageFile(const QString& path)
{
    Decoded decoded = decode(readBytes(path));
    const QString name = QFileInfo(path).fileName();
    if (decoded.tooLarge)
        fail(QFileDevice::ResourceError, u"La imagen «%1» es demasiado grande."_s.arg(name));
    ImageFile file{workingImage(std::move(decoded.image)), decoded.dotsPerInch};
    if (file.image.isNull())
        fail(QFileDevice::ReadError, u"«%1» no es una imagen que se pueda abrir."_s.arg(name));
    return file;
}

} // namespace pintalux
