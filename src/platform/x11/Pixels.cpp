// SPDX-License-Identifier: MIT
#include "platform/x11/Pixels.h"

#include <bit>

namespace pintalux::x11 {

namespace {

constexpr bool hostIsBigEndian = std::endian::native == std::endian::big;

const xcb_visualtype_t* findVisual(const xcb_setup_t& setup, xcb_visualid_t id)
{
    for (auto screen = xcb_setup_roots_iterator(&setup); screen.rem > 0; xcb_screen_next(&screen))
        for (auto depth = xcb_screen_allowed_depths_iterator(screen.data); depth.rem > 0;
             xcb_depth_next(&depth))
            for (auto type = xcb_depth_visuals_iterator(depth.data); type.rem > 0; xcb_visualtype_next(&type))
                if (type.data->visual_id == id)
                    return type.data;
    return nullptr;
}

uint32_t readPixel(const uint8_t* row, int x, const PixelLayout& layout)
{
    const int byteCount = layout.bitsPerPixel / 8;
    const auto* bytes = row + qsizetype(x) * byteCount;
    uint32_t value = 0;
    for (int index = 0; index < byteCount; ++index)
        value |= uint32_t(bytes[layout.bigEndian ? byteCount - 1 - index : index]) << (8 * index);
    return value;
}

// A component of any width, stretched to 0...255.
int component(uint32_t pixel, uint32_t mask)
{
    const uint64_t largest = mask >> std::countr_zero(mask);
    const uint64_t value = (pixel & mask) >> std::countr_zero(mask);
    return int((value * 255 + largest / 2) / largest);
}

} // namespace

qsizetype PixelLayout::bytesPerLine(int width) const
{
    const qsizetype bits = qsizetype(width) * bitsPerPixel;
    return (bits + scanlinePad - 1) / scanlinePad * scanlinePad / 8;
}

bool PixelLayout::isNative() const
{
    return bitsPerPixel == 32 && (depth == 24 || depth == 32) && bigEndian == hostIsBigEndian
        && redMask == 0xff0000 && greenMask == 0x00ff00 && blueMask == 0x0000ff;
}

PixelLayout pixelLayout(const xcb_setup_t& setup, int depth, xcb_visualid_t visual)
{
    PixelLayout layout;
    layout.depth = depth;
    layout.bigEndian = setup.image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST;
    for (auto format = xcb_setup_pixmap_formats_iterator(&setup); format.rem > 0; xcb_format_next(&format))
        if (format.data->depth == depth) {
            layout.bitsPerPixel = format.data->bits_per_pixel;
            layout.scanlinePad = format.data->scanline_pad;
        }
    const auto* type = findVisual(setup, visual);
    const bool hasMasks = type
        && (type->_class == XCB_VISUAL_CLASS_TRUE_COLOR || type->_class == XCB_VISUAL_CLASS_DIRECT_COLOR);
    layout.redMask = hasMasks ? type->red_mask : 0;
    layout.greenMask = hasMasks ? type->green_mask : 0;
    layout.blueMask = hasMasks ? type->blue_mask : 0;
    return layout;
}

QImage convertedPixels(const uint8_t* bytes, QSize size, const PixelLayout& layout)
{
    if (!layout.redMask || !layout.greenMask || !layout.blueMask || layout.bitsPerPixel % 8 != 0)
        return {};
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        const auto* row = bytes + y * layout.bytesPerLine(size.width());
        auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const uint32_t pixel = readPixel(row, x, layout);
            pixels[x] = qRgb(component(pixel, layout.redMask), component(pixel, layout.greenMask),
                component(pixel, layout.blueMask));
        }
    }
    return image;
}

} // namespace pintalux::x11
