// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/HotKeyBackend.h"
#include "platform/x11/KeyboardMap.h"
#include "platform/x11/RawKeys.h"

#include <QAbstractNativeEventFilter>
#include <QList>
#include <QTimer>

#include <optional>

namespace pintalux {

/// Hot keys as passive grabs on the root window, over the toolkit's own connection: so the toolkit knows the
/// time of the press, without which a window shown in answer to it might not get the focus.
///
/// A grab holds for one exact state of all modifiers, so each key is grabbed once for every state of the
/// locks. Grabs are by key, not by what it types: they outlive a change of layout, but not one of the bit
/// that number lock has, after which everything is grabbed anew.
///
/// While a menu is open, another program's or our own, it holds the keyboard and no passive grab works. The
/// server tells of the presses all the same (`RawKeys`), and one that no grab has told a moment later counts.
/// Only keys that are ours by their grab count, and none while the session is locked or something covers a
/// whole screen and holds the keyboard.
class X11HotKeys : public HotKeyBackend, private QAbstractNativeEventFilter {
public:
    X11HotKeys();
    ~X11HotKeys() override;

    bool isSupported() const override { return true; }
    bool grab(const HotKey& key) override;
    void ungrabAll() override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    bool grabInAllLockStates(xcb_connection_t* connection, const HotKey& key) const;
    void ungrab(xcb_connection_t* connection, const HotKey& key) const;
    bool isMappingChange(const xcb_generic_event_t& event) const;
    void keyboardChanged();
    bool isRepetition(const xcb_key_press_event_t& event) const;
    void pressed(const xcb_key_press_event_t& event);
    void released(const xcb_key_release_event_t& event);
    void listen();
    void pressedRaw(const x11::RawKeys::Press& press);
    void answerUntold();

    x11::KeyboardMap map;
    QList<HotKey> grabbed;
    xcb_keycode_t held = 0;         ///< the hot key that went down last
    xcb_timestamp_t heldSince = 0;  ///< its latest press, repetitions included
    xcb_timestamp_t releasedAt = 0; ///< 0 while it is down
    uint8_t keyboardEvents = 0;     ///< number of the keyboard extension's events; 0 without it
    QTimer changes;                 ///< mapping changes come in bunches
    x11::RawKeys raw;
    std::optional<x11::RawKeys::Press> untold; ///< a press that no grab has told yet
    QTimer patience;
};

} // namespace pintalux
