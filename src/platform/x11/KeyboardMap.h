// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/KeyModifiers.h"

#include <xcb/xcb.h>

#include <array>

namespace pintalux::x11 {

/// Which bits of a key event's state stand for which key, as the keyboard is set up now.
struct KeyboardMap {
    uint16_t option = XCB_MOD_MASK_1;
    uint16_t command = XCB_MOD_MASK_4;
    uint16_t numLock = 0; ///< 0 where there is no such key

    bool operator==(const KeyboardMap&) const = default;

    /// Asks the server.
    static KeyboardMap read(xcb_connection_t* connection);

    uint16_t maskOf(KeyModifiers modifiers) const;
    /// The modifiers held in a state; locks, mouse buttons and layouts are left out.
    KeyModifiers modifiersIn(uint16_t state) const;
    /// The states in which the locks that change nothing can be: none, caps lock, number lock, both.
    std::array<uint16_t, 4> lockStates() const;
};

} // namespace pintalux::x11
