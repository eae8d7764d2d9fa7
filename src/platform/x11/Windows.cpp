// SPDX-License-Identifier: MIT
#include "platform/x11/Windows.h"

#include "platform/x11/Screens.h"
#include "platform/x11/XcbConnection.h"

#include <vector>

namespace pintalux::x11 {

namespace {

constexpr quint32 allDesktops = 0xffffffff;

// What is asked about one window. All questions about all windows go out before the first answer is read,
// so that the whole list costs a few round trips.
struct Questions {
    xcb_window_t window;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_translate_coordinates_cookie_t position;
    xcb_get_property_cookie_t frameExtents;
    xcb_get_property_cookie_t shadowExtents;
    xcb_get_property_cookie_t name;
    xcb_get_property_cookie_t oldName;
    xcb_get_property_cookie_t windowClass;
    xcb_get_property_cookie_t processId;
    xcb_get_property_cookie_t type;
    xcb_get_property_cookie_t state;
    xcb_get_property_cookie_t desktop;
};

Questions ask(const XcbConnection& connection, xcb_window_t window)
{
    auto* xcb = connection.get();
    const auto property = [&](xcb_atom_t name) { return connection.askProperty(window, name); };
    return {
        .window = window,
        .attributes = xcb_get_window_attributes(xcb, window),
        .geometry = xcb_get_geometry(xcb, window),
        .position = xcb_translate_coordinates(xcb, window, connection.root(), 0, 0),
        .frameExtents = property(connection.hints()._NET_FRAME_EXTENTS),
        .shadowExtents = property(connection.atom(Atom::gtkFrameExtents)),
        .name = property(connection.hints()._NET_WM_NAME),
        .oldName = property(XCB_ATOM_WM_NAME),
        .windowClass = property(XCB_ATOM_WM_CLASS),
        .processId = property(connection.hints()._NET_WM_PID),
        .type = property(connection.hints()._NET_WM_WINDOW_TYPE),
        .state = property(connection.hints()._NET_WM_STATE),
        .desktop = property(connection.hints()._NET_WM_DESKTOP),
    };
}

// Extents are left, right, top, bottom. No window is larger than the protocol's 16 bits allow; who says so
// is wrong.
QMargins margins(const QList<quint32>& extents)
{
    constexpr quint32 largest = 0x7fff;
    if (extents.size() != 4 || std::ranges::any_of(extents, [](quint32 each) { return each > largest; }))
        return {};
    return {int(extents[0]), int(extents[2]), int(extents[1]), int(extents[3])};
}

/// Where a window lies, with and without its decoration; both without a shadow of its own.
struct Places {
    QRect whole;
    QRect client;
};

Places readPlaces(const XcbConnection& connection, const Questions& questions)
{
    const auto geometry = connection.reply<xcb_get_geometry_reply_t>(questions.geometry.sequence);
    const auto position = connection.reply<xcb_translate_coordinates_reply_t>(questions.position.sequence);
    const auto frame = margins(connection.property(questions.frameExtents).cards());
    const auto shadow = margins(connection.property(questions.shadowExtents).cards());
    if (!geometry || !position)
        return {};
    const QRect client(position->dst_x, position->dst_y, geometry->width, geometry->height);
    return {client.marginsAdded(frame).marginsRemoved(shadow), client.marginsRemoved(shadow)};
}

QString readText(const XcbConnection& connection, const Property& property)
{
    return property.type == connection.hints().UTF8_STRING ? QString::fromUtf8(property.bytes)
                                                           : QString::fromLatin1(property.bytes);
}

// The property holds the instance's name and the class, each ended by a zero byte.
QString readApplicationName(const QByteArray& windowClass)
{
    const auto names = windowClass.split('\0');
    return QString::fromUtf8(names.size() > 1 && !names[1].isEmpty() ? names[1] : names.first());
}

// Types are listed by preference; the first one that we know decides, and a window without one is normal.
// One that somebody keeps above is normal all the same.
int readLayer(const XcbConnection& connection, const QList<quint32>& types)
{
    constexpr int raised = 1;
    constexpr int desktop = -1;
    for (const auto type : types) {
        if (type == connection.hints()._NET_WM_WINDOW_TYPE_NORMAL
            || type == connection.hints()._NET_WM_WINDOW_TYPE_DIALOG)
            return 0;
        if (type == connection.hints()._NET_WM_WINDOW_TYPE_DESKTOP)
            return desktop;
    }
    return types.isEmpty() ? 0 : raised;
}

// Reads every answer, whether needed or not: one left unread would stay in memory for good.
WindowInfo readWindow(const XcbConnection& connection, const Questions& questions, quint32 currentDesktop,
    bool isDecorationElsewhere, const QList<ScreenInfo>& screens)
{
    const auto attributes
        = connection.reply<xcb_get_window_attributes_reply_t>(questions.attributes.sequence);
    auto places = readPlaces(connection, questions);
    const auto name = connection.property(questions.name);
    const auto oldName = connection.property(questions.oldName);
    const auto windowClass = connection.property(questions.windowClass);
    const auto processId = connection.property(questions.processId).cards();
    const auto types = connection.property(questions.type).cards();
    const auto states = connection.property(questions.state).cards();
    const auto desktop = connection.property(questions.desktop).cards().value(0, allDesktops);

    bool isShown = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE
        && !states.contains(connection.hints()._NET_WM_STATE_HIDDEN);
    if (states.contains(connection.hints()._NET_WM_STATE_SHADED)) {
        // Only the title bar is left of it, in the manager's frame.
        places = {.whole = frameRect(connection, questions.window), .client = {}};
        isShown = !places.whole.isEmpty();
    }
    const QRect rect = places.whole;

    WindowInfo window;
    window.id = questions.window;
    window.layer = readLayer(connection, types);
    window.processId = processId.value(0);
    window.applicationName = readApplicationName(windowClass.bytes);
    window.title = name.bytes.isEmpty() ? readText(connection, oldName) : QString::fromUtf8(name.bytes);
    window.onScreen = isShown && (desktop == allDesktops || desktop == currentDesktop) && !rect.isEmpty();
    if (const auto* screen = screenOf(rect, screens)) {
        window.nativeRect = rect;
        if (isDecorationElsewhere && places.client != rect)
            window.readableRect = places.client;
        window.frame = toPoints(rect, *screen);
        window.pixelScale = screen->pixelScale;
        window.onScreen = window.onScreen && screen->nativeRect.intersects(rect);
    }
    return window;
}

// Front to back. Some managers tell the place of a window among the others only once one of them moves: till
// then the newest ones, which are in front, have none.
QList<xcb_window_t> managedWindows(const XcbConnection& connection)
{
    const auto listed = [&](xcb_atom_t list) { return connection.property(connection.root(), list).cards(); };
    auto all = listed(connection.hints()._NET_CLIENT_LIST_STACKING);
    for (const auto window : listed(connection.hints()._NET_CLIENT_LIST))
        if (!all.contains(window))
            all.append(window);
    std::ranges::reverse(all);
    return all;
}

// A manager that ended leaves its hints behind; they count only while the window that it named lives.
// Without hints: what is shown and either was taken up by some manager or bears a name. Menus and tool tips
// override the manager and have neither.
QList<xcb_window_t> windowsWithoutHints(const XcbConnection& connection)
{
    auto all = topLevelWindows(connection);
    std::ranges::reverse(all);
    QList<xcb_window_t> result;
    for (const auto window : all) {
        const auto attributes = connection.reply<xcb_get_window_attributes_reply_t>(
            xcb_get_window_attributes(connection.get(), window).sequence);
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE
            || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        const bool named = !connection.property(window, connection.hints()._NET_WM_NAME).bytes.isEmpty()
            || !connection.property(window, XCB_ATOM_WM_NAME).bytes.isEmpty();
        const bool managed = !connection.property(window, connection.atom(Atom::wmState)).bytes.isEmpty();
        if (managed || (named && !attributes->override_redirect))
            result.append(window);
    }
    return result;
}

} // namespace

bool hasWindowManager(const XcbConnection& connection)
{
    const auto named
        = connection.property(connection.root(), connection.hints()._NET_SUPPORTING_WM_CHECK).cards();
    if (named.isEmpty())
        return false;
    return connection.property(named.first(), connection.hints()._NET_SUPPORTING_WM_CHECK).cards() == named;
}

QList<xcb_window_t> topLevelWindows(const XcbConnection& connection)
{
    const auto tree = connection.reply<xcb_query_tree_reply_t>(
        xcb_query_tree(connection.get(), connection.root()).sequence);
    if (!tree)
        return {};
    const auto* first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

QList<WindowInfo> windows(const XcbConnection& connection, const QList<ScreenInfo>& screens)
{
    const auto ids
        = hasWindowManager(connection) ? managedWindows(connection) : windowsWithoutHints(connection);
    const auto currentDesktop
        = connection.property(connection.root(), connection.hints()._NET_CURRENT_DESKTOP)
              .cards()
              .value(0, allDesktops);

    const bool isDecorationElsewhere = paintsDecorationsElsewhere(connection);
    std::vector<Questions> questions;
    for (const auto id : ids)
        questions.push_back(ask(connection, id));
    QList<WindowInfo> result;
    for (const auto& each : questions)
        result.append(readWindow(connection, each, currentDesktop, isDecorationElsewhere, screens));
    return result;
}

QRect frameRect(const XcbConnection& connection, xcb_window_t window)
{
    const auto frame = frameWindow(connection, window);
    if (frame == XCB_WINDOW_NONE)
        return {};
    const auto attributes = connection.reply<xcb_get_window_attributes_reply_t>(
        xcb_get_window_attributes(connection.get(), frame).sequence);
    const auto geometry
        = connection.reply<xcb_get_geometry_reply_t>(xcb_get_geometry(connection.get(), frame).sequence);
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE || !geometry)
        return {};
    const int border = 2 * geometry->border_width;
    return {geometry->x, geometry->y, geometry->width + border, geometry->height + border};
}

bool paintsDecorationsElsewhere(const XcbConnection& connection)
{
    if (!connection.hasCompositor())
        return false;
    const auto named
        = connection.property(connection.root(), connection.hints()._NET_SUPPORTING_WM_CHECK).cards();
    return !named.isEmpty()
        && connection.property(named.first(), connection.hints()._NET_WM_NAME).bytes == "KWin";
}

QRect visibleRect(const XcbConnection& connection, xcb_window_t window)
{
    auto* xcb = connection.get();
    Questions questions{};
    questions.geometry = xcb_get_geometry(xcb, window);
    questions.position = xcb_translate_coordinates(xcb, window, connection.root(), 0, 0);
    questions.frameExtents = connection.askProperty(window, connection.hints()._NET_FRAME_EXTENTS);
    questions.shadowExtents = connection.askProperty(window, connection.atom(Atom::gtkFrameExtents));
    const auto places = readPlaces(connection, questions);
    return paintsDecorationsElsewhere(connection) ? places.client : places.whole;
}

xcb_window_t frameWindow(const XcbConnection& connection, xcb_window_t window)
{
    for (;;) {
        const auto tree
            = connection.reply<xcb_query_tree_reply_t>(xcb_query_tree(connection.get(), window).sequence);
        if (!tree || tree->parent == XCB_WINDOW_NONE)
            return XCB_WINDOW_NONE;
        if (tree->parent == tree->root)
            return window;
        window = tree->parent;
    }
}

} // namespace pintalux::x11
