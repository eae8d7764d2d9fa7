// SPDX-License-Identifier: MIT
#include "platform/x11/DrawableImage.h"

#include "platform/base/Vectorized.h"
#include "platform/image/LargeImage.h"
#include "platform/x11/Pixels.h"
#include "platform/x11/XcbConnection.h"

#include <QColorSpace>

#include <algorithm>
#include <cstring>
#include <deque>
#include <optional>

using namespace Qt::StringLiterals;

namespace pintalux::x11 {

namespace {

// What is asked for at once. Small, so that what passes between the server and us stays within the
// processor's cache and takes no fresh memory, whose pages would cost more than what is put into them.
constexpr qsizetype bandBytes = qsizetype(1) << 20;
// So many are under way: the server fetches the next while we put the last in its place.
constexpr std::size_t bandsUnderWay = 2;

// The server leaves the fourth byte of opaque pixels as it happens to be; painting such a picture onto
// another would make holes.
PINTALUX_VECTORIZED
void copyOpaque(const uint32_t* from, uint32_t* to, int count)
{
    for (int index = 0; index < count; ++index)
        to[index] = from[index] | 0xff000000u;
}

// As long as this lives nobody else paints, so that what is read in pieces is of one moment.
class ServerGrab {
public:
    explicit ServerGrab(const XcbConnection& owner)
        : connection(owner)
    {
        xcb_grab_server(connection.get());
    }
    ~ServerGrab()
    {
        xcb_ungrab_server(connection.get());
        xcb_flush(connection.get());
    }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

private:
    const XcbConnection& connection;
};

// Reads a part of a drawable from top to bottom, band by band.
class BandReader {
public:
    BandReader(
        const XcbConnection& owner, xcb_drawable_t from, xcb_visualid_t shownWith, const QRect& nativeRect)
        : connection(owner)
        , drawable(from)
        , visual(shownWith)
        , rect(nativeRect)
        , bandHeight(int(std::max<qsizetype>(1, bandBytes / (qsizetype(nativeRect.width()) * 4))))
    {
    }
    ~BandReader()
    {
        for (const auto sequence : underWay)
            xcb_discard_reply(connection.get(), sequence);
    }
    BandReader(const BandReader&) = delete;
    BandReader& operator=(const BandReader&) = delete;

    QImage read()
    {
        std::optional<ServerGrab> grab;
        if (bandHeight < rect.height())
            grab.emplace(connection);
        for (int top = 0; top < rect.height(); top += bandHeight) {
            while (asked < rect.height() && underWay.size() < bandsUnderWay)
                ask();
            const auto sequence = underWay.front();
            underWay.pop_front();
            take(connection.reply<xcb_get_image_reply_t>(sequence), top);
        }
        image.setColorSpace(QColorSpace::SRgb);
        return image;
    }

private:
    int heightAt(int top) const { return std::min(bandHeight, rect.height() - top); }

    void ask()
    {
        const auto cookie
            = xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, int16_t(rect.x()),
                int16_t(rect.y() + asked), uint16_t(rect.width()), uint16_t(heightAt(asked)), ~0u);
        underWay.push_back(cookie.sequence);
        asked += bandHeight;
    }

    void take(const Reply<xcb_get_image_reply_t>& answer, int top)
    {
        if (!answer)
            throw temporaryFailure();
        const auto layout = pixelLayout(connection.setup(), answer->depth, visual);
        const bool hasAlpha = layout.isNative() && layout.depth == 32;
        if (image.isNull())
            image = newImage(
                rect.size(), hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
        const QSize size(rect.width(), heightAt(top));
        if (image.isNull()
            || xcb_get_image_data_length(answer.get()) < layout.bytesPerLine(size.width()) * size.height())
            throw temporaryFailure();
        put(xcb_get_image_data(answer.get()), size, top, layout);
    }

    void put(const uint8_t* bytes, QSize size, int top, const PixelLayout& layout)
    {
        auto* target = image.scanLine(top);
        if (!layout.isNative()) {
            const auto converted = convertedPixels(bytes, size, layout);
            if (converted.isNull())
                throw unreadableFormat();
            std::memcpy(target, converted.constBits(), std::size_t(converted.sizeInBytes()));
        } else if (layout.depth == 32) {
            std::memcpy(target, bytes, std::size_t(layout.bytesPerLine(size.width()) * size.height()));
        } else {
            copyOpaque(reinterpret_cast<const uint32_t*>(bytes), reinterpret_cast<uint32_t*>(target),
                size.width() * size.height());
        }
    }

    static Error unreadableFormat()
    {
        return {ScreenSource::errorDomain, 2, u"La pantalla usa un formato de color que no se puede leer."_s};
    }

    const XcbConnection& connection;
    xcb_drawable_t drawable;
    xcb_visualid_t visual;
    QRect rect;
    int bandHeight;
    int asked = 0; // rows from the top that were asked for
    std::deque<unsigned> underWay;
    QImage image;
};

} // namespace

QImage drawableImage(
    const XcbConnection& connection, xcb_drawable_t drawable, xcb_visualid_t visual, const QRect& nativeRect)
{
    return BandReader(connection, drawable, visual, nativeRect).read();
}

} // namespace pintalux::x11
