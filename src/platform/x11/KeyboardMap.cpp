// SPDX-License-Identifier: MIT
#include "platform/x11/KeyboardMap.h"

#include "platform/x11/XcbConnection.h"

#include <span>

namespace pintalux::x11 {

namespace {

// What the keys type, as the protocol numbers it.
constexpr xcb_keysym_t numLockSymbol = 0xff7f;
constexpr std::array<xcb_keysym_t, 2> optionSymbols{0xffe9, 0xffea};  // Alt, left and right
constexpr std::array<xcb_keysym_t, 2> commandSymbols{0xffeb, 0xffec}; // Super, left and right

constexpr int modifierCount = 8;
constexpr int firstFreeModifier = 3; // after shift, caps lock and control, whose bits are fixed

// The two tables of the server: what each key types, and which keys each modifier is made of.
struct Tables {
    Reply<xcb_get_keyboard_mapping_reply_t> symbols;
    Reply<xcb_get_modifier_mapping_reply_t> modifiers;
    xcb_keycode_t firstKey = 0;

    bool types(xcb_keycode_t key, std::span<const xcb_keysym_t> wanted) const
    {
        const auto width = std::size_t(symbols->keysyms_per_keycode);
        const std::span all(xcb_get_keyboard_mapping_keysyms(symbols.get()),
            std::size_t(xcb_get_keyboard_mapping_keysyms_length(symbols.get())));
        const auto start = (std::size_t(key) - firstKey) * width;
        if (key < firstKey || start + width > all.size())
            return false;
        return std::ranges::any_of(all.subspan(start, width),
            [&](auto symbol) { return std::ranges::find(wanted, symbol) != wanted.end(); });
    }

    // The bit of the modifier that one of the symbols' keys is part of; 0 for none.
    uint16_t bitOf(std::span<const xcb_keysym_t> wanted) const
    {
        const auto width = std::size_t(modifiers->keycodes_per_modifier);
        const std::span keys(xcb_get_modifier_mapping_keycodes(modifiers.get()), modifierCount * width);
        for (std::size_t modifier = firstFreeModifier; modifier < modifierCount; ++modifier)
            for (const auto key : keys.subspan(modifier * width, width))
                if (key != 0 && types(key, wanted))
                    return uint16_t(1u << modifier);
        return 0;
    }
};

} // namespace

KeyboardMap KeyboardMap::read(xcb_connection_t* connection)
{
    const auto* setup = xcb_get_setup(connection);
    const auto modifiers = xcb_get_modifier_mapping(connection);
    const auto symbols = xcb_get_keyboard_mapping(
        connection, setup->min_keycode, uint8_t(setup->max_keycode - setup->min_keycode + 1));
    Tables tables;
    tables.firstKey = setup->min_keycode;
    tables.modifiers.reset(xcb_get_modifier_mapping_reply(connection, modifiers, nullptr));
    tables.symbols.reset(xcb_get_keyboard_mapping_reply(connection, symbols, nullptr));

    KeyboardMap map;
    if (!tables.modifiers || !tables.symbols)
        return map;
    map.numLock = tables.bitOf({&numLockSymbol, 1});
    if (const auto bit = tables.bitOf(optionSymbols))
        map.option = bit;
    if (const auto bit = tables.bitOf(commandSymbols))
        map.command = bit;
    return map;
}

uint16_t KeyboardMap::maskOf(KeyModifiers modifiers) const
{
    uint16_t mask = 0;
    for (const auto& [modifier, bit] : {std::pair(KeyModifier::control, uint16_t(XCB_MOD_MASK_CONTROL)),
             std::pair(KeyModifier::shift, uint16_t(XCB_MOD_MASK_SHIFT)),
             std::pair(KeyModifier::option, option), std::pair(KeyModifier::command, command)})
        if (modifiers.testFlag(modifier))
            mask |= bit;
    return mask;
}

KeyModifiers KeyboardMap::modifiersIn(uint16_t state) const
{
    KeyModifiers held;
    for (const auto modifier :
        {KeyModifier::control, KeyModifier::shift, KeyModifier::option, KeyModifier::command})
        if ((state & maskOf(modifier)) != 0)
            held |= modifier;
    return held;
}

std::array<uint16_t, 4> KeyboardMap::lockStates() const
{
    constexpr uint16_t caps = XCB_MOD_MASK_LOCK;
    return {0, caps, numLock, uint16_t(caps | numLock)};
}

} // namespace pintalux::x11
