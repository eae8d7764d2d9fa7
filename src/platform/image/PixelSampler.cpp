// SPDX-License-Identifier: MIT
#include "platform/image/PixelSampler.h"

#include <QColorSpace>

namespace pintalux::PixelSampler {

std::optional<QColor> color(const QImage& image, int x, int y)
{
    if (!image.valid(x, y))
        return std::nullopt;
    auto pixel = image.copy(x, y, 1, 1);
    if (pixel.colorSpace().isValid() && pixel.colorSpace() != QColorSpace(QColorSpace::SRgb))
        pixel.convertToColorSpace(QColorSpace::SRgb);
    pixel.convertTo(QImage::Format_RGBA8888_Premultiplied);
    if (pixel.isNull())
        return std::nullopt;
    const auto* bytes = pixel.constScanLine(0);
    return QColor(bytes[0], bytes[1], bytes[2]);
}

} // namespace pintalux::PixelSampler
