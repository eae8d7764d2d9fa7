// SPDX-License-Identifier: MIT
#include "platform/x11/capture/WindowImage.h"

#include "platform/x11/DrawableImage.h"
#include "platform/x11/Windows.h"
#include "platform/x11/XcbConnection.h"

#include <QRegion>
#include <QThread>

#include <xcb/composite.h>
#include <xcb/shape.h>

#include <algorithm>
#include <span>

using namespace Qt::StringLiterals;

namespace pintalux::x11 {

namespace {

// How long an application gets to paint what nobody could see before.
constexpr unsigned long repaintMilliseconds = 80;

Error windowGone() { return {ScreenSource::errorDomain, 3, u"La ventana ya no está en la pantalla."_s}; }

Error compositeMissing()
{
    return {ScreenSource::errorDomain, 4, u"El servidor gráfico no permite capturar ventanas sueltas."_s};
}

// The memory that a window paints into while it is redirected, as long as this lives.
class WindowPixmap {
public:
    WindowPixmap(const XcbConnection& owner, xcb_window_t frame)
        : connection(owner)
        , pixmap(xcb_generate_id(owner.get()))
    {
        isNamed
            = connection.isServed(xcb_composite_name_window_pixmap_checked(connection.get(), frame, pixmap));
    }
    ~WindowPixmap()
    {
        if (isNamed)
            xcb_free_pixmap(connection.get(), pixmap);
        xcb_flush(connection.get());
    }
    WindowPixmap(const WindowPixmap&) = delete;
    WindowPixmap& operator=(const WindowPixmap&) = delete;

    explicit operator bool() const { return isNamed; }
    xcb_drawable_t drawable() const { return pixmap; }

private:
    const XcbConnection& connection;
    xcb_pixmap_t pixmap;
    bool isNamed = false;
};

// Lets a window paint into memory of its own, where no compositor does so already.
class Redirection {
public:
    Redirection(const XcbConnection& owner, xcb_window_t frame)
        : connection(owner)
        , redirected(frame)
    {
        xcb_composite_redirect_window(connection.get(), redirected, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        xcb_flush(connection.get());
        QThread::msleep(repaintMilliseconds);
    }
    ~Redirection()
    {
        xcb_composite_unredirect_window(connection.get(), redirected, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        xcb_flush(connection.get());
    }
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;

private:
    const XcbConnection& connection;
    xcb_window_t redirected;
};

bool canNamePixmaps(const XcbConnection& connection)
{
    if (!connection.hasExtension(xcb_composite_id))
        return false;
    const auto version = connection.reply<xcb_composite_query_version_reply_t>(
        xcb_composite_query_version(connection.get(), 0, 4).sequence);
    return version && std::pair(version->major_version, version->minor_version) >= std::pair(0u, 2u);
}

QRegion shapeOf(const XcbConnection& connection, xcb_window_t frame)
{
    const auto rectangles = connection.reply<xcb_shape_get_rectangles_reply_t>(
        xcb_shape_get_rectangles(connection.get(), frame, XCB_SHAPE_SK_BOUNDING).sequence);
    QRegion shape;
    if (rectangles) {
        const auto* first = xcb_shape_get_rectangles_rectangles(rectangles.get());
        for (const auto& each : std::span(first, std::size_t(rectangles->rectangles_len)))
            shape += QRect(each.x, each.y, each.width, each.height);
    }
    return shape;
}

/// Makes transparent what lies outside a frame's shape, as its rounded corners do: nothing that belongs to
/// the window is there. `corner` is the picture's within the frame.
QImage cutToShape(const XcbConnection& connection, xcb_window_t frame, QPoint corner, QImage image)
{
    if (!connection.hasExtension(xcb_shape_id))
        return image;
    const auto extents = connection.reply<xcb_shape_query_extents_reply_t>(
        xcb_shape_query_extents(connection.get(), frame).sequence);
    if (!extents || !extents->bounding_shaped)
        return image;
    const auto outside = QRegion(image.rect()) - shapeOf(connection, frame).translated(-corner);
    if (outside.isEmpty())
        return image;
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    for (const auto& rect : outside)
        for (int y = rect.top(); y <= rect.bottom(); ++y)
            std::fill_n(reinterpret_cast<QRgb*>(image.scanLine(y)) + rect.left(), rect.width(), 0);
    return image;
}

QImage croppedImage(const XcbConnection& connection, const WindowPixmap& pixmap, xcb_window_t window,
    xcb_window_t frame, bool isRolledUp)
{
    const auto geometry
        = connection.reply<xcb_get_geometry_reply_t>(xcb_get_geometry(connection.get(), frame).sequence);
    const auto attributes = connection.reply<xcb_get_window_attributes_reply_t>(
        xcb_get_window_attributes(connection.get(), frame).sequence);
    const QRect visible = isRolledUp ? frameRect(connection, frame) : visibleRect(connection, window);
    if (!geometry || !attributes || visible.isEmpty())
        throw windowGone();
    const int border = geometry->border_width;
    const QRect whole(0, 0, geometry->width + 2 * border, geometry->height + 2 * border);
    // A frame's position is that of its outer corner, where its pixmap begins, too.
    const QRect part = visible.translated(-geometry->x, -geometry->y) & whole;
    if (part.isEmpty())
        throw windowGone();
    const QPoint insideBorder = part.topLeft() - QPoint(border, border);
    return cutToShape(connection, frame, insideBorder,
        drawableImage(connection, pixmap.drawable(), attributes->visual, part));
}

} // namespace

QImage windowImage(const XcbConnection& connection, xcb_window_t window)
{
    if (!canNamePixmaps(connection))
        throw compositeMissing();
    const auto frame = frameWindow(connection, window);
    const auto attributes = connection.reply<xcb_get_window_attributes_reply_t>(
        xcb_get_window_attributes(connection.get(), window).sequence);
    const bool isRolledUp = connection.property(window, connection.hints()._NET_WM_STATE)
                                .cards()
                                .contains(connection.hints()._NET_WM_STATE_SHADED);
    const bool isShown = attributes && (attributes->map_state == XCB_MAP_STATE_VIEWABLE || isRolledUp);
    if (frame == XCB_WINDOW_NONE || !isShown)
        throw windowGone();

    // Under a compositor the window has its own memory already, except for one that is shown full screen.
    if (const WindowPixmap pixmap(connection, frame); pixmap)
        return croppedImage(connection, pixmap, window, frame, isRolledUp);
    const Redirection redirection(connection, frame);
    const WindowPixmap pixmap(connection, frame);
    if (!pixmap)
        throw windowGone();
    return croppedImage(connection, pixmap, window, frame, isRolledUp);
}

} // namespace pintalux::x11
