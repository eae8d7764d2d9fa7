// SPDX-License-Identifier: MIT
#include "platform/image/ImageDecoder.h"

#include "platform/image/CutOff.h"
#include "platform/image/HeifImage.h"
#include "platform/image/Orientation.h"
#include "platform/image/PngFilter.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <cmath>

namespace pintalux {

namespace {

using Outcome = DecodedImage::Outcome;

constexpr double metresPerInch = 0.0254;

DecodedImage decodeWithToolkit(QByteArray bytes)
{
    if (isCutOff(bytes))
        return {};
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader::setAllocationLimit(static_cast<int>(DecodedImage::memoryLimit >> 20));
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > DecodedImage::memoryLimit / 4)
        return {.outcome = Outcome::tooLarge};
    QImage image = reader.read();
    if (image.isNull())
        return {};
    // Whole dots per metre blur what was a whole number of dots per inch.
    const double exact = image.dotsPerMeterX() * metresPerInch;
    const double dotsPerInch
        = std::abs(exact - std::round(exact)) < metresPerInch ? std::round(exact) : exact;
    const bool isTurned = reader.supportsOption(QImageIOHandler::ImageTransformation);
    return {isTurned ? std::move(image) : oriented(image, storedOrientation(bytes)), dotsPerInch,
        Outcome::picture};
}

DecodedImage decodeWithHeifLibrary(const QByteArray& bytes)
{
    HeifImage heif = decodeHeif(bytes, DecodedImage::memoryLimit);
    if (heif.tooLarge)
        return {.outcome = Outcome::tooLarge};
    const auto outcome = heif.image.isNull() ? Outcome::unreadable : Outcome::picture;
    return {std::move(heif.image), std::nullopt, outcome};
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

DecodedImage decodeHere(QByteArray bytes)
{
    auto decoded = looksLikeHeif(bytes) ? decodeWithHeifLibrary(bytes) : decodeWithToolkit(std::move(bytes));
    decoded.image = workingImage(std::move(decoded.image));
    if (decoded.outcome == Outcome::picture && decoded.image.isNull())
        decoded.outcome = Outcome::noRoomToDecode; // for another form of its pixels
    return decoded;
}

} // namespace pintalux
