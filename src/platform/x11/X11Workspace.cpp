// SPDX-License-Identifier: MIT
#include "platform/x11/X11Workspace.h"

#include "platform/x11/Windows.h"
#include "platform/x11/XcbConnection.h"

#include <QCoreApplication>

namespace pintalux {

namespace {

using x11::XcbConnection;

// The window with the input focus; none when it is nowhere or wherever the pointer is.
xcb_window_t focusedWindow(const XcbConnection& connection)
{
    const auto answer
        = connection.reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection.get()).sequence);
    const bool isWindow = answer && answer->focus != XCB_INPUT_FOCUS_POINTER_ROOT;
    return isWindow && answer->focus != connection.root() ? answer->focus : xcb_window_t(XCB_WINDOW_NONE);
}

// The process named by the window or by the nearest window around it that names one.
qint64 processOf(const XcbConnection& connection, xcb_window_t window)
{
    while (window != XCB_WINDOW_NONE && window != connection.root()) {
        const auto process = connection.property(window, connection.hints()._NET_WM_PID).cards();
        if (!process.isEmpty())
            return process.first();
        const auto tree
            = connection.reply<xcb_query_tree_reply_t>(xcb_query_tree(connection.get(), window).sequence);
        window = tree ? tree->parent : xcb_window_t(XCB_WINDOW_NONE);
    }
    return 0;
}

// The server's clock now. A request to move the focus that bears an older time than the last such move is
// ignored. The server stamps the change of a property; that of an unshown window bothers nobody.
xcb_timestamp_t serverTime(const XcbConnection& connection)
{
    auto* xcb = connection.get();
    const auto window = xcb_generate_id(xcb);
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(xcb, 0, window, connection.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_destroy_window(xcb, window);
    // What the server tells comes before its answer to a later question.
    connection.reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(xcb).sequence);
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    while (const auto event = x11::Reply<xcb_generic_event_t>(xcb_poll_for_event(xcb)))
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
            time = reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
    return time;
}

// As a pager does for the person.
void askWindowManager(const XcbConnection& connection, xcb_window_t window)
{
    xcb_ewmh_request_change_active_window(&connection.hints(), connection.screenNumber(), window,
        XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER, serverTime(connection), XCB_WINDOW_NONE);
}

void focusDirectly(const XcbConnection& connection, xcb_window_t window)
{
    const uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(
        connection.get(), x11::frameWindow(connection, window), XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_set_input_focus(connection.get(), XCB_INPUT_FOCUS_PARENT, window, serverTime(connection));
}

} // namespace

X11Workspace::X11Workspace(QByteArray displayName)
    : displayName(std::move(displayName))
{
}

X11Workspace::~X11Workspace() = default;

const XcbConnection& X11Workspace::connect()
{
    if (connection)
        connection->drainEvents();
    if (!connection || connection->isBroken())
        connection = std::make_unique<XcbConnection>(displayName);
    return *connection;
}

std::optional<WindowHandle> X11Workspace::frontmostWindow()
try {
    const auto& server = connect();
    const auto window = x11::hasWindowManager(server)
        ? server.property(server.root(), server.hints()._NET_ACTIVE_WINDOW).cards().value(0, XCB_WINDOW_NONE)
        : focusedWindow(server);
    if (window == XCB_WINDOW_NONE)
        return std::nullopt;
    const auto process = processOf(server, window);
    if (process == QCoreApplication::applicationPid())
        return std::nullopt;
    return WindowHandle{.id = window, .processId = process};
} catch (const Error&) {
    return std::nullopt; // the display server went away
}

void X11Workspace::activate(const WindowHandle& handle)
try {
    const auto& server = connect();
    const auto window = xcb_window_t(handle.id);
    const auto attributes = server.reply<xcb_get_window_attributes_reply_t>(
        xcb_get_window_attributes(server.get(), window).sequence);
    if (!attributes)
        return;
    if (x11::hasWindowManager(server))
        askWindowManager(server, window);
    else if (attributes->map_state == XCB_MAP_STATE_VIEWABLE)
        focusDirectly(server, window);
    xcb_flush(server.get());
} catch (const Error&) {
    // The display server went away: there is no focus to give.
}

} // namespace pintalux
