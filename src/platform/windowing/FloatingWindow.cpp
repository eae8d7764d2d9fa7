// SPDX-License-Identifier: MIT
#include "platform/windowing/FloatingWindow.h"

#include "platform/x11/Toolkit.h"
#include "platform/x11/XcbConnection.h"

#include <QWidget>
#include <QWindow>

#include <xcb/shape.h>

#include <array>
#include <cmath>
#include <cstring>

namespace pintalux {

namespace {

/// The window manager's window around this one, which some of them give even to windows without a frame; the
/// window itself where there is none.
xcb_window_t frameOf(xcb_connection_t* connection, xcb_window_t window)
{
    for (;;) {
        const x11::Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
        if (!tree || tree->parent == tree->root || tree->parent == XCB_WINDOW_NONE)
            return window;
        window = tree->parent;
    }
}

} // namespace

void makePinWindow(QWidget& window)
{
    window.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    auto* connection = x11::toolkitConnection();
    if (!connection)
        return;
    const quint32 allDesktops = 0xFFFFFFFF;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, xcb_window_t(window.winId()),
        x11::atomNamed(connection, "_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 32, 1, &allDesktops);
}

void keepProportions(QWidget& window, QSize proportions, int margin)
{
    auto* connection = x11::toolkitConnection();
    if (!connection || proportions.isEmpty())
        return;
    // The property as its convention lays it out: flags, then 17 numbers.
    constexpr std::size_t count = 18;
    constexpr quint32 hasAspect = 1 << 7, hasBaseSize = 1 << 8;
    constexpr std::size_t leastAspect = 11, mostAspect = 13, baseSize = 15;
    std::array<quint32, count> hints{};
    const auto id = xcb_window_t(window.winId());
    const x11::Reply<xcb_get_property_reply_t> former(xcb_get_property_reply(connection,
        xcb_get_property(connection, 0, id, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 0, count),
        nullptr));
    if (former && std::size_t(xcb_get_property_value_length(former.get())) == sizeof(hints))
        std::memcpy(hints.data(), xcb_get_property_value(former.get()), sizeof(hints));
    hints[0] |= hasAspect | hasBaseSize; // the proportions are of what goes beyond the base size
    const auto around = quint32(std::lround(margin * window.devicePixelRatioF()));
    hints[baseSize] = hints[baseSize + 1] = 2 * around;
    hints[leastAspect] = hints[mostAspect] = quint32(proportions.width());
    hints[leastAspect + 1] = hints[mostAspect + 1] = quint32(proportions.height());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_NORMAL_HINTS,
        XCB_ATOM_WM_SIZE_HINTS, 32, count, hints.data());
    const std::array<quint32, 4> extents{around, around, around, around};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id,
        x11::atomNamed(connection, "_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, quint32(extents.size()),
        extents.data());
}

void makeUnfocusablePanel(QWidget& window)
{
    window.setWindowFlags(Qt::ToolTip | Qt::BypassWindowManagerHint | Qt::FramelessWindowHint
        | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint);
    window.setAttribute(Qt::WA_ShowWithoutActivating);
}

void declareShadowAround(QWidget& widget, const QRect& sheet)
{
    const auto id = widget.winId();
    auto* connection = x11::toolkitConnection();
    if (!connection)
        return widget.windowHandle()->setMask(sheet);
    const double ratio = widget.devicePixelRatioF();
    const QRect pixels
        = QRectF(QPointF(sheet.topLeft()) * ratio, QSizeF(sheet.size()) * ratio).toAlignedRect();
    const xcb_rectangle_t rectangle{
        int16_t(pixels.x()), int16_t(pixels.y()), uint16_t(pixels.width()), uint16_t(pixels.height())};
    const auto window = xcb_window_t(id);
    for (const auto each : {window, frameOf(connection, window)}) {
        xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
            each, 0, 0, 1, &rectangle);
        x11::withoutCompositorShadow(connection, each);
    }
}

} // namespace pintalux
