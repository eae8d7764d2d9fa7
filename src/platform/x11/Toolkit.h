// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <string_view>

namespace pintalux::x11 {

/// The toolkit's own connection, so that requests stay in order with its own. Null on other display systems
/// and once the application object is gone.
xcb_connection_t* toolkitConnection();

/// The atom of that name; none when the server does not answer.
xcb_atom_t atomNamed(xcb_connection_t* connection, std::string_view name);

/// Asks compositors that draw shadows around every window to leave this one without.
void withoutCompositorShadow(xcb_connection_t* connection, xcb_window_t window);

} // namespace pintalux::x11
