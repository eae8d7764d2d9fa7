// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/XcbConnection.h"

#include <QList>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace pintalux::x11 {

/// Presses of a few keys, told whoever has the keyboard: an open menu holds it, and passive grabs do nothing
/// then.
///
/// The server tells of every key of the session. All but the wanted ones are dropped where they arrive, by
/// their number on the keyboard: what they type is never asked for, and nothing is kept.
class RawKeys {
public:
    struct Press {
        xcb_keycode_t key;
        uint16_t state;       ///< modifiers and locks, as in events of the core protocol
        xcb_timestamp_t time; ///< the same as that of the press that a grab tells
    };

    /// `pressed` is called from the event loop, once for each press however long the key is held.
    explicit RawKeys(std::function<void(const Press&)> pressed);

    /// The keys to tell of from now on; with none, the server is not listened to at all. Does nothing where
    /// the server has no such events.
    void watch(const QList<xcb_keycode_t>& keys);

private:
    void connect();
    void select(bool listen);
    void readEvents();
    void take(const xcb_generic_event_t& event);

    std::function<void(const Press&)> pressed;
    QList<xcb_keycode_t> wanted;
    std::unique_ptr<XcbConnection> server;
    std::unique_ptr<QSocketNotifier> arrivals;
    uint8_t inputExtension = 0; ///< its number; 0 without it
    uint8_t keyboardEvents = 0; ///< number of the keyboard extension's events
    uint16_t state = 0;
};

} // namespace pintalux::x11
