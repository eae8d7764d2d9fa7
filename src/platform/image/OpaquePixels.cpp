// SPDX-License-Identifier: MIT
#include "platform/image/OpaquePixels.h"

#include "platform/base/Vectorized.h"

namespace pintalux {

namespace {

PINTALUX_VECTORIZED
void setFourthByte(uint32_t* pixels, qsizetype count)
{
    for (qsizetype index = 0; index < count; ++index)
        pixels[index] |= 0xff000000u;
}

} // namespace

void makeOpaque(QImage& image)
{
    Q_ASSERT(image.format() == QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        setFourthByte(reinterpret_cast<uint32_t*>(image.scanLine(y)), image.width());
}

} // namespace pintalux
