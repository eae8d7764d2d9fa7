// SPDX-License-Identifier: MIT
#include "platform/x11/windowing/InputGrab.h"

#include "platform/x11/Toolkit.h"
#include "platform/x11/UnmanagedWindows.h"
#include "platform/x11/XcbConnection.h"

#include <xcb/xtest.h>

#include <span>
#include <utility>

namespace pintalux::x11 {

namespace {

using namespace std::chrono_literals;

constexpr auto pause = 10ms;
/// For a hand to let go of the keys and buttons, and for whoever is no menu to let go by themselves.
constexpr auto longestWait = 3s;
/// A menu needs a moment to close.
constexpr auto afterEscape = 60ms;
constexpr int mostEscapes = 6; ///< a submenu takes one for each level

constexpr xcb_keysym_t escapeSymbol = 0xff1b;

/// The key that types Escape; 0 where there is none.
xcb_keycode_t escapeKey(xcb_connection_t* connection)
{
    const auto* setup = xcb_get_setup(connection);
    const auto count = uint8_t(setup->max_keycode - setup->min_keycode + 1);
    const Reply<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        connection, xcb_get_keyboard_mapping(connection, setup->min_keycode, count), nullptr));
    if (!mapping)
        return 0;
    const std::span symbols(xcb_get_keyboard_mapping_keysyms(mapping.get()),
        std::size_t(xcb_get_keyboard_mapping_keysyms_length(mapping.get())));
    const auto found = std::ranges::find(symbols, escapeSymbol);
    return found == symbols.end()
        ? xcb_keycode_t(0)
        : xcb_keycode_t(setup->min_keycode + (found - symbols.begin()) / mapping->keysyms_per_keycode);
}

} // namespace

InputGrab::InputGrab(xcb_window_t covering, std::function<void()> whenRefused)
    : window(covering)
    , refused(std::move(whenRefused))
{
    if (take())
        return;
    map = KeyboardMap::read(toolkitConnection());
    waited.start();
    timer.setInterval(pause);
    timer.callOnTimeout([this] { tryAgain(); });
    timer.start();
}

InputGrab::~InputGrab()
{
    auto* connection = toolkitConnection();
    if (!connection)
        return;
    if (hasPointer)
        xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
    if (hasKeyboard)
        xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_flush(connection);
}

// With owner events, so that each window of ours gets what is meant for it as if nothing were held.
bool InputGrab::take()
{
    auto* connection = toolkitConnection();
    if (!connection)
        return true; // there is nobody to take them from
    constexpr uint8_t ownerEvents = 1;
    constexpr uint16_t pointerEvents = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE
        | XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;
    if (!hasKeyboard) {
        const Reply<xcb_grab_keyboard_reply_t> keyboard(xcb_grab_keyboard_reply(connection,
            xcb_grab_keyboard(
                connection, ownerEvents, window, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr));
        hasKeyboard = keyboard && keyboard->status == XCB_GRAB_STATUS_SUCCESS;
    }
    if (!hasPointer) {
        const Reply<xcb_grab_pointer_reply_t> pointer(xcb_grab_pointer_reply(connection,
            xcb_grab_pointer(connection, ownerEvents, window, pointerEvents, XCB_GRAB_MODE_ASYNC,
                XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME),
            nullptr));
        hasPointer = pointer && pointer->status == XCB_GRAB_STATUS_SUCCESS;
    }
    return hasKeyboard && hasPointer;
}

void InputGrab::tryAgain()
{
    if (take())
        return timer.stop();
    const bool isLate = std::chrono::milliseconds(waited.elapsed()) > longestWait;
    if (escapes == 0 && (isAnythingDown() || !UnmanagedWindows::now().menu))
        return isLate ? giveUp() : void();
    if (escapes > 0 && std::chrono::milliseconds(sinceEscape.elapsed()) < afterEscape)
        return;
    if (escapes == mostEscapes)
        return giveUp();
    sendEscape();
}

bool InputGrab::isAnythingDown() const
{
    auto* connection = toolkitConnection();
    const Reply<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, toolkitRoot()), nullptr));
    constexpr uint16_t buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    return pointer && ((pointer->mask & buttons) != 0 || map.modifiersIn(pointer->mask));
}

void InputGrab::sendEscape()
{
    auto* connection = toolkitConnection();
    const auto key = escapeKey(connection);
    if (key == 0)
        return giveUp();
    for (const uint8_t type : {XCB_KEY_PRESS, XCB_KEY_RELEASE})
        xcb_test_fake_input(connection, type, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    xcb_flush(connection);
    ++escapes;
    sinceEscape.start();
}

void InputGrab::giveUp()
{
    timer.stop();
    // Whoever is told may end this object.
    if (const auto tell = std::exchange(refused, nullptr))
        tell();
}

} // namespace pintalux::x11
