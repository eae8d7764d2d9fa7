// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Hints.h"

#include <QByteArray>

namespace pintalux::x11 {

/// The toolkit's own connection, so that requests stay in order with its own. Null on other display systems
/// and once the application object is gone.
xcb_connection_t* toolkitConnection();

/// The hints over that connection; null without it.
xcb_ewmh_connection_t* toolkitHints();

/// An atom that is none of the hints', over that connection; asked for once.
xcb_atom_t toolkitAtom(const QByteArray& name);

/// The number of the screen that programs get from their environment.
int screenNumber();
/// That screen's root.
xcb_window_t toolkitRoot();

/// Whether the display server of the environment takes a connection.
bool serverAnswers();

} // namespace pintalux::x11
