// SPDX-License-Identifier: MIT
#pragma once

namespace pintalux::wayland {

/// What the compositor of the session offers that decides how the program runs.
struct Offered {
    bool isThere = false;       ///< a compositor answers
    bool layerSurfaces = false; ///< windows can be parts of the desktop
    bool screencopy = false;    ///< any program gets pictures of the outputs
};

/// Asks once, on a connection of its own.
const Offered& offeredBySession();

} // namespace pintalux::wayland
