#include "platform/PanelWindow.h"

#include "platform/x11/XcbConnection.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <array>
#include <string_view>

namespace pintalux {

namespace {

/// The toolkit's own connection, so that requests stay in order with its own; null on other display systems.
xcb_connection_t* toolkitConnection()
{
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t atomNamed(xcb_connection_t* connection, std::string_view name)
{
    const x11::Reply<xcb_intern_atom_reply_t> answer(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, uint16_t(name.size()), name.data()), nullptr));
    return answer ? answer->atom : xcb_atom_t(XCB_ATOM_NONE);
}

/// Compositors that draw shadows around everything would darken the neighbouring screen's edge.
void withoutCompositorShadow(xcb_connection_t* connection, xcb_window_t window)
{
    const auto atom = atomNamed(connection, "_COMPTON_SHADOW");
    const quint32 none = 0;
    if (atom != XCB_ATOM_NONE)
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom, XCB_ATOM_CARDINAL, 32, 1, &none);
}

} // namespace

QScreen* screenNamed(const QString& name)
{
    const auto screens = QGuiApplication::screens();
    const auto found = std::ranges::find(screens, name, &QScreen::name);
    return found == screens.end() ? nullptr : *found;
}

void makeScreenPanel(QWidget& window, QScreen& screen)
{
    window.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
        | Qt::BypassWindowManagerHint | Qt::NoDropShadowWindowHint);
    window.setScreen(&screen);
    window.setGeometry(screen.geometry());
    window.winId();
    if (auto* connection = toolkitConnection())
        withoutCompositorShadow(connection, xcb_window_t(window.winId()));
}

void keepOutOfTaskBar(QWidget& window)
{
    auto* connection = toolkitConnection();
    if (!connection)
        return;
    // The toolkit keeps what it finds among the states when it shows the window.
    const std::array states{atomNamed(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
        atomNamed(connection, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(connection, XCB_PROP_MODE_APPEND, xcb_window_t(window.winId()),
        atomNamed(connection, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, states.size(), states.data());
}

void giveKeyboard(QWidget& panel)
{
    panel.activateWindow();
    panel.setFocus(Qt::ActiveWindowFocusReason);
}

FormerKeyboardOwner::FormerKeyboardOwner()
{
    auto* connection = toolkitConnection();
    if (!connection)
        return;
    const x11::Reply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    if (focus)
        window = focus->focus;
}

void FormerKeyboardOwner::restore()
{
    auto* connection = toolkitConnection();
    const auto former = std::exchange(window, 0);
    constexpr quint32 pointerRoot = XCB_INPUT_FOCUS_POINTER_ROOT;
    if (!connection || former <= pointerRoot)
        return;
    const auto request
        = xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_POINTER_ROOT, former, XCB_CURRENT_TIME);
    xcb_discard_reply(connection, request.sequence); // the window may be gone
    xcb_flush(connection);
}

} // namespace pintalux
