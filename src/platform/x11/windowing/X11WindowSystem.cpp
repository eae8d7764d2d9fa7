// SPDX-License-Identifier: MIT
#include "platform/x11/windowing/X11WindowSystem.h"

#include "platform/desktop/DirectSurface.h"
#include "platform/x11/Toolkit.h"
#include "platform/x11/XcbConnection.h"
#include "platform/x11/windowing/BandSurface.h"
#include "platform/x11/windowing/InputGrab.h"
#include "platform/x11/windowing/Struts.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include <cmath>

namespace pintalux {

namespace {

constexpr quint32 allDesktops = 0xFFFFFFFF;

xcb_window_t idOf(const QWidget& window) { return xcb_window_t(window.winId()); }

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

bool isOwned(xcb_connection_t* connection, xcb_atom_t selection)
{
    const x11::Reply<xcb_get_selection_owner_reply_t> answer(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr));
    return answer && answer->owner != XCB_WINDOW_NONE;
}

void setCards(
    xcb_connection_t* connection, xcb_window_t window, const char* name, std::initializer_list<quint32> cards)
{
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, x11::toolkitAtom(name), XCB_ATOM_CARDINAL,
        32, quint32(cards.size()), cards.begin());
}

/// Asks compositors that draw shadows around every window to leave this one without.
void withoutCompositorShadow(xcb_connection_t* connection, xcb_window_t window)
{
    setCards(connection, window, "_COMPTON_SHADOW", {0});
}

void focusNow(xcb_connection_t* connection, xcb_window_t window)
{
    const auto request
        = xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    xcb_discard_reply(connection, request.sequence); // the window may be gone
    xcb_flush(connection);
}

} // namespace

X11WindowSystem::X11WindowSystem()
    : theme([this] { Q_EMIT themeNameChanged(); })
{
    auto* connection = x11::toolkitConnection();
    if (!connection)
        return;
    compositorSelection = x11::toolkitAtom("_NET_WM_CM_S" + QByteArray::number(x11::screenNumber()));
    // The toolkit has made the extension known to the server.
    if (const auto* fixes = xcb_get_extension_data(connection, &xcb_xfixes_id); fixes && fixes->present) {
        selectionEvents = fixes->first_event;
        xcb_xfixes_select_selection_input(connection, x11::toolkitRoot(), compositorSelection,
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
                | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
                | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    compositor = isOwned(connection, compositorSelection);
    qGuiApp->installNativeEventFilter(this);
}

X11WindowSystem::~X11WindowSystem() = default;

bool X11WindowSystem::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto type = static_cast<const xcb_generic_event_t*>(message)->response_type & 0x7f;
    if (selectionEvents != 0 && type == selectionEvents + XCB_XFIXES_SELECTION_NOTIFY) {
        const auto& change = *static_cast<const xcb_xfixes_selection_notify_event_t*>(message);
        const bool owned = change.owner != XCB_WINDOW_NONE;
        if (change.selection == compositorSelection && owned != compositor) {
            compositor = owned;
            Q_EMIT compositorChanged();
        }
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& change = *static_cast<const xcb_property_notify_event_t*>(message);
        // The toolkit tells it of a single screen only.
        if (const auto* hints = x11::toolkitHints(); hints && change.atom == hints->_NET_WORKAREA)
            Q_EMIT panelsChanged();
    }
    return false;
}

QRect X11WindowSystem::visibleFrame(const QScreen& screen) const
{
    const auto whole = screen.geometry();
    // The toolkit tells it for a single screen only; where there are several it counts the whole of each.
    if (!x11::toolkitConnection() || QGuiApplication::screens().size() < 2)
        return screen.availableGeometry();
    // The toolkit keeps a screen's corner where the server has it and scales what lies within.
    const double scale = screen.devicePixelRatio();
    const QRect native(whole.topLeft(), (QSizeF(whole.size()) * scale).toSize());
    const auto free = x11::freeOfStruts(native).translated(-native.topLeft());
    const QPoint topLeft(int(std::ceil(free.x() / scale)), int(std::ceil(free.y() / scale)));
    const QPoint end(int((free.x() + free.width()) / scale), int((free.y() + free.height()) / scale));
    const QRect visible(topLeft, QSize(end.x() - topLeft.x(), end.y() - topLeft.y()));
    return free.size() == native.size() || visible.isEmpty() ? whole : visible.translated(whole.topLeft());
}

bool X11WindowSystem::hasTrayPanel() const
{
    auto* connection = x11::toolkitConnection();
    return connection
        && isOwned(
            connection, x11::toolkitAtom("_NET_SYSTEM_TRAY_S" + QByteArray::number(x11::screenNumber())));
}

void X11WindowSystem::coverScreen(QWidget& window, QScreen& screen, const QRect& frame) const
{
    WindowSystem::coverScreen(window, screen, frame);
    if (auto* connection = x11::toolkitConnection())
        withoutCompositorShadow(connection, idOf(window));
}

void X11WindowSystem::describe(QWidget& window, WindowRole role, const QRect& sheet) const
{
    auto* connection = x11::toolkitConnection();
    if (!connection)
        return;
    const auto id = idOf(window);
    const double ratio = window.devicePixelRatioF();
    if (role == WindowRole::pin) {
        const auto around = quint32(std::lround(sheet.left() * ratio));
        setCards(connection, id, "_GTK_FRAME_EXTENTS", {around, around, around, around});
    }
    if (role != WindowRole::panel && role != WindowRole::pin)
        return withoutCompositorShadow(connection, id);
    const QRect pixels
        = QRectF(QPointF(sheet.topLeft()) * ratio, QSizeF(sheet.size()) * ratio).toAlignedRect();
    const xcb_rectangle_t rectangle{
        int16_t(pixels.x()), int16_t(pixels.y()), uint16_t(pixels.width()), uint16_t(pixels.height())};
    for (const auto each : {id, frameOf(connection, id)}) {
        xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
            each, 0, 0, 1, &rectangle);
        withoutCompositorShadow(connection, each);
    }
}

// Before it is shown that would be a property of the window's. Some managers put a new window on the desktop
// that is seen all the same, and some put one that belongs to another window on the last one.
void X11WindowSystem::settle(QWidget& window, WindowRole role) const
{
    auto* hints = x11::toolkitHints();
    if (!hints || role != WindowRole::pin)
        return;
    xcb_ewmh_request_change_wm_desktop(
        hints, x11::screenNumber(), idOf(window), allDesktops, XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL);
    xcb_flush(hints->connection);
}

void X11WindowSystem::setInTaskBar(QWidget& window, bool listed) const
{
    auto* hints = x11::toolkitHints();
    if (!hints)
        return;
    const auto id = idOf(window);
    const QList states{hints->_NET_WM_STATE_SKIP_TASKBAR, hints->_NET_WM_STATE_SKIP_PAGER};
    if (window.isVisible()) {
        xcb_ewmh_request_change_wm_state(hints, x11::screenNumber(), id,
            listed ? XCB_EWMH_WM_STATE_REMOVE : XCB_EWMH_WM_STATE_ADD, states[0], states[1],
            XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL);
        xcb_flush(hints->connection);
        return;
    }
    // The toolkit keeps what it finds among the states when it shows the window.
    QList<xcb_atom_t> kept;
    xcb_ewmh_get_atoms_reply_t found;
    if (xcb_ewmh_get_wm_state_reply(hints, xcb_ewmh_get_wm_state(hints, id), &found, nullptr)) {
        kept = QList<xcb_atom_t>(found.atoms, found.atoms + found.atoms_len);
        xcb_ewmh_get_atoms_reply_wipe(&found);
    }
    kept.removeIf([&](xcb_atom_t state) { return states.contains(state); });
    if (!listed)
        kept += states;
    xcb_ewmh_set_wm_state(hints, id, uint32_t(kept.size()), kept.data());
}

std::unique_ptr<DirectSurface> X11WindowSystem::makeDirectSurface(QWidget& window, QSize) const
{
    return x11::makeBandSurface(window);
}

void X11WindowSystem::takeKeyboard(QWidget& window) const
{
    giveKeyboard(window);
    // The toolkit asks for it as of the last event that it got, which is older than the loss.
    if (auto* connection = x11::toolkitConnection())
        focusNow(connection, idOf(window));
}

std::unique_ptr<InputHold> X11WindowSystem::holdInput(QWidget& window, std::function<void()> refused) const
{
    return std::make_unique<x11::InputGrab>(idOf(window), std::move(refused));
}

quint64 X11WindowSystem::keyboardOwner() const
{
    auto* connection = x11::toolkitConnection();
    if (!connection)
        return 0;
    const x11::Reply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return focus ? focus->focus : 0;
}

void X11WindowSystem::returnKeyboard(quint64 owner) const
{
    auto* connection = x11::toolkitConnection();
    constexpr quint64 pointerRoot = XCB_INPUT_FOCUS_POINTER_ROOT;
    if (connection && owner > pointerRoot)
        focusNow(connection, xcb_window_t(owner));
}

} // namespace pintalux
