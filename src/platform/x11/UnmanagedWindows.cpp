// SPDX-License-Identifier: MIT
#include "platform/x11/UnmanagedWindows.h"

#include "platform/x11/Toolkit.h"
#include "platform/x11/XcbConnection.h"

#include <QGuiApplication>
#include <QScreen>

#include <span>

namespace pintalux::x11 {

namespace {

/// Nobody reads a menu smaller than this, in device pixels.
constexpr int leastMenu = 8;

struct Child {
    xcb_window_t id;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_get_property_cookie_t types;
};

/// Whether the window is of the program itself, or of the server, as the one that compositors paint on.
bool isForeign(xcb_connection_t* connection, xcb_window_t window)
{
    const auto* setup = xcb_get_setup(connection);
    const auto client = window & ~setup->resource_id_mask;
    return client != setup->resource_id_base && client != 0;
}

bool covers(const xcb_get_geometry_reply_t& geometry)
{
    return std::ranges::any_of(QGuiApplication::screens(), [&](const QScreen* screen) {
        const auto pixels = QSizeF(screen->size()) * screen->devicePixelRatio();
        return geometry.width >= int(pixels.width()) && geometry.height >= int(pixels.height());
    });
}

/// What says of itself that it is a message, a panel or something being dragged is no menu.
bool canBeMenu(const xcb_get_property_reply_t& types)
{
    const auto* hints = toolkitHints();
    const std::array others{hints->_NET_WM_WINDOW_TYPE_NOTIFICATION, hints->_NET_WM_WINDOW_TYPE_TOOLTIP,
        hints->_NET_WM_WINDOW_TYPE_DOCK, hints->_NET_WM_WINDOW_TYPE_DND, hints->_NET_WM_WINDOW_TYPE_SPLASH};
    const std::span said(static_cast<const xcb_atom_t*>(xcb_get_property_value(&types)),
        std::size_t(xcb_get_property_value_length(&types)) / sizeof(xcb_atom_t));
    return std::ranges::none_of(
        said, [&](xcb_atom_t type) { return std::ranges::find(others, type) != others.end(); });
}

} // namespace

UnmanagedWindows UnmanagedWindows::now()
{
    UnmanagedWindows found;
    auto* connection = toolkitConnection();
    if (!connection)
        return found;
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, toolkitRoot()), nullptr));
    if (!tree)
        return found;
    QList<Child> children;
    for (const auto id : std::span(xcb_query_tree_children(tree.get()), tree->children_len))
        if (isForeign(connection, id))
            children.append({id, xcb_get_window_attributes(connection, id), xcb_get_geometry(connection, id),
                xcb_get_property(
                    connection, 0, id, toolkitHints()->_NET_WM_WINDOW_TYPE, XCB_ATOM_ATOM, 0, 16)});
    for (const auto& child : std::as_const(children)) {
        const Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection, child.attributes, nullptr));
        const Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection, child.geometry, nullptr));
        const Reply<xcb_get_property_reply_t> types(xcb_get_property_reply(connection, child.types, nullptr));
        const bool isShown = attributes && geometry && types && attributes->override_redirect
            && attributes->map_state == XCB_MAP_STATE_VIEWABLE
            && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT && geometry->width >= leastMenu
            && geometry->height >= leastMenu;
        if (!isShown)
            continue;
        if (covers(*geometry))
            found.cover = true;
        else if (canBeMenu(*types))
            found.menu = true;
    }
    return found;
}

} // namespace pintalux::x11
