// SPDX-License-Identifier: MIT
#include "platform/x11/X11HotKeys.h"

#include "platform/session/SessionLock.h"
#include "platform/x11/Toolkit.h"
#include "platform/x11/UnmanagedWindows.h"
#include "platform/x11/XcbConnection.h"

#include <QGuiApplication>

#include <utility>

namespace pintalux {

namespace {

/// Within which a grab tells of a press that the server told already.
constexpr std::chrono::milliseconds grabDelay(25);

// Of the keyboard extension's events, told apart by their second byte.
constexpr uint8_t newKeyboardEvent = 0;
constexpr uint8_t mapChangedEvent = 1;

xcb_window_t rootOf(xcb_connection_t* connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

uint8_t keyboardExtensionEvents(xcb_connection_t* connection)
{
    constexpr std::string_view name = "XKEYBOARD";
    const x11::Reply<xcb_query_extension_reply_t> answer(xcb_query_extension_reply(
        connection, xcb_query_extension(connection, uint16_t(name.size()), name.data()), nullptr));
    return answer && answer->present ? answer->first_event : 0;
}

} // namespace

X11HotKeys::X11HotKeys()
    : raw([this](const x11::RawKeys::Press& press) { pressedRaw(press); })
{
    patience.setSingleShot(true);
    patience.setInterval(grabDelay);
    patience.callOnTimeout([this] { answerUntold(); });
    if (auto* connection = x11::toolkitConnection()) {
        map = x11::KeyboardMap::read(connection);
        keyboardEvents = keyboardExtensionEvents(connection);
    }
    changes.setSingleShot(true);
    changes.setInterval(0);
    changes.callOnTimeout([this] { keyboardChanged(); });
    if (qGuiApp)
        qGuiApp->installNativeEventFilter(this);
}

X11HotKeys::~X11HotKeys() { X11HotKeys::ungrabAll(); }

bool X11HotKeys::grab(const HotKey& key)
{
    auto* connection = x11::toolkitConnection();
    if (!connection || grabbed.contains(key))
        return false;
    if (!grabInAllLockStates(connection, key))
        return false;
    grabbed.append(key);
    listen();
    return true;
}

void X11HotKeys::ungrabAll()
{
    const auto keys = std::exchange(grabbed, {});
    listen();
    auto* connection = x11::toolkitConnection();
    if (!connection)
        return;
    for (const auto& key : keys)
        ungrab(connection, key);
    xcb_flush(connection);
}

// All or none: with one state missing the key would work or not, depending on a lock. Without owner events,
// for presses must come to the root also while a window of this program has the focus.
bool X11HotKeys::grabInAllLockStates(xcb_connection_t* connection, const HotKey& key) const
{
    constexpr uint8_t ownerEvents = 0;
    const auto states = map.lockStates();
    std::array<xcb_void_cookie_t, 4> cookies;
    for (std::size_t index = 0; index < states.size(); ++index)
        cookies[index] = xcb_grab_key_checked(connection, ownerEvents, rootOf(connection),
            uint16_t(map.maskOf(key.modifiers) | states[index]), xcb_keycode_t(key.keyCode),
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    bool all = true;
    for (const auto& cookie : cookies)
        if (const x11::Reply<xcb_generic_error_t> error(xcb_request_check(connection, cookie)); error)
            all = false;
    if (!all) {
        ungrab(connection, key);
        xcb_flush(connection);
    }
    return all;
}

// Letting go of what is somebody else's does nothing.
void X11HotKeys::ungrab(xcb_connection_t* connection, const HotKey& key) const
{
    for (const auto state : map.lockStates())
        xcb_ungrab_key(connection, xcb_keycode_t(key.keyCode), rootOf(connection),
            uint16_t(map.maskOf(key.modifiers) | state));
}

bool X11HotKeys::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    const auto type = event.response_type & 0x7f;
    if (type == XCB_KEY_PRESS)
        pressed(reinterpret_cast<const xcb_key_press_event_t&>(event));
    else if (type == XCB_KEY_RELEASE)
        released(reinterpret_cast<const xcb_key_release_event_t&>(event));
    else if (isMappingChange(event))
        changes.start();
    return false; // the toolkit takes the time of the press from it
}

bool X11HotKeys::isMappingChange(const xcb_generic_event_t& event) const
{
    const auto type = event.response_type & 0x7f;
    if (type == XCB_MAPPING_NOTIFY)
        return true;
    return keyboardEvents != 0 && type == keyboardEvents
        && (event.pad0 == newKeyboardEvent || event.pad0 == mapChangedEvent);
}

// A key that is held sends presses without releases between them, or pairs of both at one moment. Presses far
// apart are real ones: the release may have gone to somebody else.
bool X11HotKeys::isRepetition(const xcb_key_press_event_t& event) const
{
    constexpr xcb_timestamp_t longestPauseMilliseconds = 1500;
    return event.detail == held && event.time - heldSince < longestPauseMilliseconds
        && (releasedAt == 0 || releasedAt == event.time);
}

void X11HotKeys::pressed(const xcb_key_press_event_t& event)
{
    const HotKey key{event.detail, map.modifiersIn(event.state)};
    if (event.event != event.root || !grabbed.contains(key))
        return;
    const bool repeated = isRepetition(event);
    if (untold && untold->key == event.detail && untold->time == event.time)
        untold.reset();
    held = event.detail;
    heldSince = event.time;
    releasedAt = 0;
    if (!repeated && onPress)
        onPress(key);
}

void X11HotKeys::listen()
{
    QList<xcb_keycode_t> keys;
    for (const auto& key : std::as_const(grabbed))
        keys.append(xcb_keycode_t(key.keyCode));
    raw.watch(keys);
}

void X11HotKeys::pressedRaw(const x11::RawKeys::Press& press)
{
    const bool isTold = press.key == held && press.time == heldSince;
    if (isTold || !grabbed.contains(HotKey{press.key, map.modifiersIn(press.state)}))
        return;
    untold = press;
    patience.start();
}

void X11HotKeys::answerUntold()
{
    const auto press = std::exchange(untold, std::nullopt);
    if (!press || x11::UnmanagedWindows::now().cover || isSessionLocked())
        return;
    held = press->key;
    heldSince = press->time; // should the grab tell of it after all
    releasedAt = 0;
    if (onPress)
        onPress({press->key, map.modifiersIn(press->state)});
}

void X11HotKeys::released(const xcb_key_release_event_t& event)
{
    if (event.detail == held)
        releasedAt = event.time;
}

void X11HotKeys::keyboardChanged()
{
    auto* connection = x11::toolkitConnection();
    if (!connection)
        return;
    const auto now = x11::KeyboardMap::read(connection);
    if (now == map)
        return;
    for (const auto& key : grabbed)
        ungrab(connection, key);
    map = now;
    QList<HotKey> lost; // somebody else took it meanwhile
    grabbed.removeIf([&](const HotKey& key) {
        const bool gone = !grabInAllLockStates(connection, key);
        if (gone)
            lost.append(key);
        return gone;
    });
    for (const auto& key : lost)
        if (onLost)
            onLost(key);
}

} // namespace pintalux
