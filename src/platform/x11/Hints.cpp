// SPDX-License-Identifier: MIT
#include "platform/x11/Hints.h"

#include <cstdlib>

namespace pintalux::x11 {

void WipeHints::operator()(xcb_ewmh_connection_t* hints) const
{
    xcb_ewmh_connection_wipe(hints);
    delete hints;
}

Hints makeHints(xcb_connection_t* connection, const std::function<void()>& answered)
{
    Hints hints(new xcb_ewmh_connection_t{});
    std::unique_ptr<xcb_intern_atom_cookie_t, decltype(&std::free)> questions(
        xcb_ewmh_init_atoms(connection, hints.get()), &std::free);
    answered();
    if (xcb_ewmh_init_atoms_replies(hints.get(), questions.release(), nullptr) != 0)
        return hints;
    delete hints.release(); // the library has wiped it
    return nullptr;
}

} // namespace pintalux::x11
