// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ScreenSource.h"
#include "platform/x11/Hints.h"

#include <QByteArray>
#include <QList>

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <memory>

namespace pintalux::x11 {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
/// What the server answered; memory of libxcb's.
template <typename T> using Reply = std::unique_ptr<T, Free>;

/// The atoms that are none of the hints', in the order of their names in XcbConnection.cpp.
enum class Atom { wmState, netWmWindowOpacity, gtkFrameExtents, count };

/// A property's bytes and type; empty bytes when the window lacks it.
struct Property {
    QByteArray bytes;
    xcb_atom_t type = XCB_ATOM_NONE;

    /// The items of a property of 32-bit items.
    QList<quint32> cards() const;
};

/// An own connection to an X server: requests go out in bunches, each answer is waited for with a limit.
///
/// For one thread at a time. Throws `Error` when the server is missing, dies or does not answer in time.
class XcbConnection {
public:
    /// An empty name means the one of the environment.
    explicit XcbConnection(const QByteArray& displayName = {});

    xcb_connection_t* get() const { return connection.get(); }
    const xcb_screen_t& screen() const { return *defaultScreen; }
    xcb_window_t root() const { return defaultScreen->root; }
    const xcb_setup_t& setup() const { return *xcb_get_setup(connection.get()); }
    /// True when this connection is of no more use and a new one must be made.
    bool isBroken() const { return xcb_connection_has_error(connection.get()) != 0 || gaveUp; }

    /// The atoms of the hints, and requests to the window manager.
    xcb_ewmh_connection_t& hints() const { return *ewmh; }
    xcb_atom_t atom(Atom name) const { return atoms[static_cast<std::size_t>(name)]; }
    int screenNumber() const { return number; }
    bool hasExtension(xcb_extension_t& extension) const;
    bool hasCompositor() const;

    /// The answer to a request made before; null when the server answered with an error, whose code then
    /// is in `errorCode`.
    template <typename T> Reply<T> reply(unsigned sequence, int* errorCode = nullptr) const
    {
        return Reply<T>(static_cast<T*>(wait(sequence, errorCode)));
    }

    /// Waits until the server has served a checked request that has no answer. False when it refused.
    bool isServed(xcb_void_cookie_t request) const;

    /// Asks for a property; the answer is read with `property`.
    xcb_get_property_cookie_t askProperty(xcb_window_t window, xcb_atom_t name) const;
    Property property(xcb_get_property_cookie_t cookie) const;
    Property property(xcb_window_t window, xcb_atom_t name) const
    {
        return property(askProperty(window, name));
    }

    /// Throws away what the server tells without being asked, which would pile up.
    void drainEvents() const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* pointer) const { xcb_disconnect(pointer); }
    };

    void* wait(unsigned sequence, int* errorCode) const;

    std::unique_ptr<xcb_connection_t, Disconnect> connection;
    const xcb_screen_t* defaultScreen = nullptr;
    int number = 0;
    mutable bool gaveUp
        = false; // an answer was not waited for: those that are still to come belong to nobody
    Hints ewmh;
    std::array<xcb_atom_t, static_cast<std::size_t>(Atom::count)> atoms{};
};

/// The error of a display server that is missing or went away.
Error connectionLost();
/// A failure that may be gone a moment later.
Error temporaryFailure();

/// For the calling thread, turns the signal of writing to a dead server into an ordinary error.
void ignoreBrokenPipe();

} // namespace pintalux::x11
