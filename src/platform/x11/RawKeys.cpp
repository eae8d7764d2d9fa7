// SPDX-License-Identifier: MIT
#include "platform/x11/RawKeys.h"

#include <xcb/xinput.h>

// A field there is named as a word of this language.
#define explicit explicitly
#include <xcb/xkb.h>
#undef explicit

namespace pintalux::x11 {

namespace {

// Raw events arrive during the grabs of others from this version on.
constexpr uint16_t inputMajor = 2;
constexpr uint16_t inputMinor = 2;

bool isRecentEnough(const xcb_input_xi_query_version_reply_t& version)
{
    return std::pair(version.major_version, version.minor_version) >= std::pair(inputMajor, inputMinor);
}

} // namespace

RawKeys::RawKeys(std::function<void(const Press&)> whenPressed)
    : pressed(std::move(whenPressed))
{
}

void RawKeys::watch(const QList<xcb_keycode_t>& keys)
{
    if (!keys.isEmpty() && !server)
        connect();
    if (inputExtension != 0 && keys.isEmpty() != wanted.isEmpty())
        select(!keys.isEmpty());
    wanted = keys;
}

void RawKeys::connect()
try {
    server = std::make_unique<XcbConnection>();
    auto* connection = server->get();
    if (!server->hasExtension(xcb_input_id) || !server->hasExtension(xcb_xkb_id))
        return;
    const auto version = server->reply<xcb_input_xi_query_version_reply_t>(
        xcb_input_xi_query_version(connection, inputMajor, inputMinor).sequence);
    const auto keyboard = server->reply<xcb_xkb_use_extension_reply_t>(
        xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION).sequence);
    if (!version || !isRecentEnough(*version) || !keyboard || !keyboard->supported)
        return;
    inputExtension = xcb_get_extension_data(connection, &xcb_input_id)->major_opcode;
    keyboardEvents = xcb_get_extension_data(connection, &xcb_xkb_id)->first_event;
    arrivals = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection), QSocketNotifier::Read);
    QObject::connect(arrivals.get(), &QSocketNotifier::activated, arrivals.get(), [this] { readEvents(); });
} catch (const Error&) {
    server.reset(); // without a server there are no keys
}

void RawKeys::select(bool listen)
{
    auto* connection = server->get();
    struct {
        xcb_input_event_mask_t head;
        uint32_t bits;
    } const mask{
        {XCB_INPUT_DEVICE_ALL_MASTER, 1}, listen ? uint32_t(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS) : 0u};
    xcb_input_xi_select_events(connection, server->root(), 1, &mask.head);
    constexpr uint16_t states = XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr auto keyboard = xcb_xkb_device_spec_t(XCB_XKB_ID_USE_CORE_KBD);
    xcb_xkb_select_events(
        connection, keyboard, states, listen ? 0 : states, listen ? states : 0, 0, 0, nullptr);
    if (listen)
        if (const auto now
            = server->reply<xcb_xkb_get_state_reply_t>(xcb_xkb_get_state(connection, keyboard).sequence))
            state = now->mods;
    xcb_flush(connection);
}

void RawKeys::readEvents()
{
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(server->get())})
        take(*event);
    if (server->isBroken())
        arrivals->setEnabled(false);
}

// The state comes on the same way as the keys, so it is that of the moment of the press, however late it is
// read.
void RawKeys::take(const xcb_generic_event_t& event)
{
    const auto type = event.response_type & 0x7f;
    if (type == keyboardEvents && event.pad0 == XCB_XKB_STATE_NOTIFY) {
        state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event).mods;
        return;
    }
    const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
    if (type != XCB_GE_GENERIC || raw.extension != inputExtension || raw.event_type != XCB_INPUT_RAW_KEY_PRESS
        || (raw.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT) != 0)
        return;
    if (const auto key = xcb_keycode_t(raw.detail); wanted.contains(key))
        pressed({key, state, raw.time});
}

} // namespace pintalux::x11
