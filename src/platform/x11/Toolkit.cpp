// SPDX-License-Identifier: MIT
#include "platform/x11/Toolkit.h"

#include "platform/x11/XcbConnection.h"

#include <QGuiApplication>
#include <QHash>

#include <algorithm>

namespace pintalux::x11 {

namespace {

/// What is asked for once a connection.
struct Known {
    xcb_connection_t* connection = nullptr;
    Hints hints;
    QHash<QByteArray, xcb_atom_t> atoms;
};

Known& known(xcb_connection_t* connection)
{
    static Known current;
    if (current.connection != connection)
        current = {connection, makeHints(connection), {}};
    return current;
}

} // namespace

xcb_connection_t* toolkitConnection()
{
    const auto* native = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return native ? native->connection() : nullptr;
}

xcb_ewmh_connection_t* toolkitHints()
{
    auto* connection = toolkitConnection();
    return connection ? known(connection).hints.get() : nullptr;
}

xcb_atom_t toolkitAtom(const QByteArray& name)
{
    auto* connection = toolkitConnection();
    if (!connection)
        return XCB_ATOM_NONE;
    auto& atom = known(connection).atoms[name];
    if (atom == XCB_ATOM_NONE) {
        const Reply<xcb_intern_atom_reply_t> answer(xcb_intern_atom_reply(
            connection, xcb_intern_atom(connection, 0, uint16_t(name.size()), name.constData()), nullptr));
        atom = answer ? answer->atom : xcb_atom_t(XCB_ATOM_NONE);
    }
    return atom;
}

int screenNumber()
{
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &host, &display, &screen);
    std::free(host);
    return screen;
}

xcb_window_t toolkitRoot()
{
    auto* hints = toolkitHints();
    return hints ? hints->screens[std::min(screenNumber(), hints->nb_screens - 1)]->root
                 : xcb_window_t(XCB_WINDOW_NONE);
}

bool serverAnswers()
{
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection(
        xcb_connect(nullptr, nullptr), xcb_disconnect);
    return xcb_connection_has_error(connection.get()) == 0;
}

} // namespace pintalux::x11
