// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb_ewmh.h>

#include <functional>
#include <memory>

namespace pintalux::x11 {

struct WipeHints {
    void operator()(xcb_ewmh_connection_t* hints) const;
};
/// The hints that programs and window managers give each other, with the atoms of one connection.
using Hints = std::unique_ptr<xcb_ewmh_connection_t, WipeHints>;

/// Asks for all atoms at once; `answered` may wait, with a limit, until the server has answered. Null when it
/// does not.
Hints makeHints(
    xcb_connection_t* connection, const std::function<void()>& answered = [] {});

} // namespace pintalux::x11
