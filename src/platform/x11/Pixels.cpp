#include "platform/x11/Pixels.h"

#include "platform/Parallel.h"
#include "platform/Vectorized.h"
#include "platform/x11/XcbConnection.h"

#include <QColorSpace>

#include <bit>

namespace pintalux::x11 {

namespace {

constexpr bool hostIsBigEndian = std::endian::native == std::endian::big;

const xcb_visualtype_t* findVisual(const xcb_screen_t& screen, xcb_visualid_t id)
{
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth))
        for (auto type = xcb_depth_visuals_iterator(depth.data); type.rem > 0; xcb_visualtype_next(&type))
            if (type.data->visual_id == id)
                return type.data;
    return nullptr;
}

// Pixels below which a second thread does not pay.
constexpr int fewestPerThread = 1'000'000;

// The server leaves the fourth byte of opaque pixels as it happens to be. In place and over a fresh answer
// this costs about half of a memory copy; without it, painting the picture onto another makes holes.
PINTALUX_VECTORIZED
void makeOpaque(uint32_t* pixels, int first, int last)
{
    for (int index = first; index < last; ++index)
        pixels[index] |= 0xff000000u;
}

// The picture keeps the server's answer as its memory.
QImage adopted(Reply<xcb_get_image_reply_t> answer, QSize size, const PixelLayout& layout)
{
    auto* bytes = xcb_get_image_data(answer.get());
    const bool hasAlpha = layout.depth == 32;
    if (!hasAlpha)
        parallelRanges(size.width() * size.height(), fewestPerThread,
            [bytes](int first, int last) { makeOpaque(reinterpret_cast<uint32_t*>(bytes), first, last); });
    return QImage(
        bytes, size.width(), size.height(), layout.bytesPerLine(size.width()),
        hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32,
        [](void* memory) { std::free(memory); }, answer.release());
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

PixelLayout pixelLayout(const XcbConnection& connection, int depth, xcb_visualid_t visual)
{
    PixelLayout layout;
    layout.depth = depth;
    layout.bigEndian = connection.setup().image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST;
    for (auto format = xcb_setup_pixmap_formats_iterator(&connection.setup()); format.rem > 0;
         xcb_format_next(&format))
        if (format.data->depth == depth) {
            layout.bitsPerPixel = format.data->bits_per_pixel;
            layout.scanlinePad = format.data->scanline_pad;
        }
    const auto* type = findVisual(connection.screen(), visual);
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

QImage drawableImage(
    const XcbConnection& connection, xcb_drawable_t drawable, xcb_visualid_t visual, const QRect& nativeRect)
{
    // One plain request: sharing memory with the server would be slower, since a fresh segment's pages are
    // made one by one on both sides.
    const auto cookie
        = xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, int16_t(nativeRect.x()),
            int16_t(nativeRect.y()), uint16_t(nativeRect.width()), uint16_t(nativeRect.height()), ~0u);
    auto answer = connection.reply<xcb_get_image_reply_t>(cookie.sequence);
    if (!answer)
        throw temporaryFailure();

    const auto layout = pixelLayout(connection, answer->depth, visual);
    const QSize size = nativeRect.size();
    if (xcb_get_image_data_length(answer.get()) < layout.bytesPerLine(size.width()) * size.height())
        throw temporaryFailure();
    auto image = layout.isNative() ? adopted(std::move(answer), size, layout)
                                   : convertedPixels(xcb_get_image_data(answer.get()), size, layout);
    if (image.isNull())
        throw Error(
            ScreenSource::errorDomain, 2, u"La pantalla usa un formato de color que no se puede leer."_qs);
    image.setColorSpace(QColorSpace::SRgb);
    return image;
}

} // namespace pintalux::x11
