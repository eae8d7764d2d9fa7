// SPDX-License-Identifier: MIT
#include "platform/x11/Toolkit.h"

#include "platform/x11/XcbConnection.h"

#include <QGuiApplication>

namespace pintalux::x11 {

xcb_connection_t* toolkitConnection()
{
    const auto* native = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return native ? native->connection() : nullptr;
}

xcb_atom_t atomNamed(xcb_connection_t* connection, std::string_view name)
{
    const Reply<xcb_intern_atom_reply_t> answer(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, uint16_t(name.size()), name.data()), nullptr));
    return answer ? answer->atom : xcb_atom_t(XCB_ATOM_NONE);
}

void withoutCompositorShadow(xcb_connection_t* connection, xcb_window_t window)
{
    const auto atom = atomNamed(connection, "_COMPTON_SHADOW");
    const uint32_t none = 0;
    if (atom != XCB_ATOM_NONE)
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom, XCB_ATOM_CARDINAL, 32, 1, &none);
}

} // namespace pintalux::x11
