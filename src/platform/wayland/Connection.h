// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/Error.h"
#include "platform/wayland/Registry.h"

#include <poll.h>

#include <functional>
#include <span>

namespace pintalux::wayland {

/// An own connection to the compositor of the session. For one thread at a time.
class Connection {
public:
    /// Throws `Error` when there is no compositor.
    Connection();

    wl_display* get() const { return display.get(); }
    const Registry& offered() const { return registry; }

    /// Takes what the compositor tells until `reached` holds. Throws `Error` when that lasts more than some
    /// seconds or the compositor goes away.
    void waitUntil(const std::function<bool()>& reached) const;
    /// Waits, at most so long (-1: without end), until the compositor tells something or one of `others` is
    /// ready, and takes what it tells. False when the time was over. Throws when the compositor went away.
    bool dispatch(int milliseconds, std::span<pollfd> others = {}) const;
    /// Waits until the compositor has done all that it was asked for and told what there is to tell.
    void settle() const;

private:
    Handle<wl_display, wl_display_disconnect> display;
    Registry registry;
};

/// The error of a compositor that is missing or went away.
Error connectionLost();
/// A failure that may be gone a moment later.
Error temporaryFailure();

} // namespace pintalux::wayland
