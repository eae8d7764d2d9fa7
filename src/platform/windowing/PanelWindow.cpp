// SPDX-License-Identifier: MIT
#include "platform/windowing/PanelWindow.h"

#include "platform/x11/Toolkit.h"
#include "platform/x11/XcbConnection.h"

#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <array>

namespace pintalux {

namespace {

void focusNow(xcb_connection_t* connection, xcb_window_t window)
{
    const auto request
        = xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    xcb_discard_reply(connection, request.sequence); // the window may be gone
    xcb_flush(connection);
}

} // namespace

void makeScreenPanel(QWidget& window, QScreen& screen, const QRect& frame)
{
    window.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
        | Qt::BypassWindowManagerHint | Qt::NoDropShadowWindowHint);
    window.setScreen(&screen);
    window.setGeometry(frame);
    window.winId();
    if (auto* connection = x11::toolkitConnection())
        x11::withoutCompositorShadow(connection, xcb_window_t(window.winId()));
}

void keepOutOfTaskBar(QWidget& window)
{
    auto* connection = x11::toolkitConnection();
    if (!connection)
        return;
    // The toolkit keeps what it finds among the states when it shows the window.
    const std::array states{x11::atomNamed(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
        x11::atomNamed(connection, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(connection, XCB_PROP_MODE_APPEND, xcb_window_t(window.winId()),
        x11::atomNamed(connection, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, states.size(), states.data());
}

void giveKeyboard(QWidget& panel)
{
    panel.activateWindow();
    panel.setFocus(Qt::ActiveWindowFocusReason);
}

void takeKeyboard(QWidget& panel)
{
    giveKeyboard(panel);
    // The toolkit asks for it as of the last event that it got, which is older than the loss.
    if (auto* connection = x11::toolkitConnection())
        focusNow(connection, xcb_window_t(panel.winId()));
}

FormerKeyboardOwner::FormerKeyboardOwner()
{
    auto* connection = x11::toolkitConnection();
    if (!connection)
        return;
    const x11::Reply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    if (focus)
        window = focus->focus;
}

void FormerKeyboardOwner::restore()
{
    auto* connection = x11::toolkitConnection();
    const auto former = std::exchange(window, 0);
    constexpr quint32 pointerRoot = XCB_INPUT_FOCUS_POINTER_ROOT;
    if (!connection || former <= pointerRoot)
        return;
    focusNow(connection, former);
}

} // namespace pintalux
