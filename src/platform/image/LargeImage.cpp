// SPDX-License-Identifier: MIT
#include "platform/image/LargeImage.h"

#include <sys/mman.h>

#include <cstdlib>
#include <cstring>

namespace pintalux {

namespace {

constexpr std::size_t largePage = std::size_t(2) << 20;
constexpr std::size_t worthwhile = 2 * largePage;

} // namespace

QImage newImage(const QSize& size, QImage::Format format)
{
    const auto bitsPerPixel = std::size_t(QImage::toPixelFormat(format).bitsPerPixel());
    const auto bytesPerLine = (std::size_t(std::max(0, size.width())) * bitsPerPixel + 31) / 32 * 4;
    const auto bytes = bytesPerLine * std::size_t(std::max(0, size.height()));
    if (bytes < worthwhile)
        return {size, format};
    const auto rounded = (bytes + largePage - 1) / largePage * largePage;
    auto* memory = static_cast<uchar*>(std::aligned_alloc(largePage, rounded));
    if (!memory)
        return {};
    ::madvise(memory, rounded, MADV_HUGEPAGE); // a hint: refused, the memory is as good
    return {memory, size.width(), size.height(), qsizetype(bytesPerLine), format, std::free, memory};
}

QImage clearedImage(const QSize& size, QImage::Format format)
{
    auto image = newImage(size, format);
    if (!image.isNull())
        std::memset(image.bits(), 0, std::size_t(image.sizeInBytes()));
    return image;
}

} // namespace pintalux
