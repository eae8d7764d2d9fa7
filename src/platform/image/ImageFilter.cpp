// SPDX-License-Identifier: MIT
#include "platform/image/ImageFilter.h"

#include "platform/image/GaussianBlur.h"
#include "platform/image/LargeImage.h"

namespace pintalux::ImageFilter {

QImage blurMask(const QImage& mask, double sigma)
{
    if (mask.isNull())
        return {};
    QImage coverage = mask;
    if (mask.format() != QImage::Format_Grayscale8)
        coverage.convertTo(QImage::Format_Alpha8);
    auto result = newImage(coverage.size(), QImage::Format_Alpha8);
    if (result.isNull())
        return result;
    const SamplePlane<const std::uint8_t> source{
        coverage.constBits(), coverage.bytesPerLine(), coverage.width(), coverage.height()};
    gaussianBlur(source, {result.bits(), result.bytesPerLine(), result.width(), result.height()}, sigma);
    return result;
}

} // namespace pintalux::ImageFilter
