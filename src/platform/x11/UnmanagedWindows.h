// SPDX-License-Identifier: MIT
#pragma once

namespace pintalux::x11 {

/// What other programs keep on the screen without asking the window manager.
struct UnmanagedWindows {
    bool menu = false;  ///< something of a menu's kind: smaller than a screen, no message and no panel
    bool cover = false; ///< something over a whole screen: a locker, a game

    /// As it is now, over the toolkit's connection. The compositor's own window does not count.
    static UnmanagedWindows now();
};

} // namespace pintalux::x11
