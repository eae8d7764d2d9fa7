// SPDX-License-Identifier: MIT

// A person's pointer and keyboard for a compositor without devices. Reads commands, one a line, and answers
// each with "done" once the compositor has it. Places are points of the whole desktop.
//   pintalux_hands WIDTH HEIGHT
//   move X Y | press left|right | release left|right | key NAME

#include <QHash>
#include <QSize>
#include <QStringList>
#include <QTextStream>

#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-unstable-v1-client-protocol.h>
#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1-client-protocol.h>

#include <chrono>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

constexpr char keymap[] = "xkb_keymap { xkb_keycodes { include \"evdev+aliases(qwerty)\" };"
                          "xkb_types { include \"complete\" }; xkb_compat { include \"complete\" };"
                          "xkb_symbols { include \"pc+us+inet(evdev)\" }; };";

const QHash<QString, uint32_t> keys{{u"Escape"_s, KEY_ESC}, {u"Return"_s, KEY_ENTER}, {u"Space"_s, KEY_SPACE},
    {u"c"_s, KEY_C}, {u"w"_s, KEY_W}};

struct Hands {
    wl_display* display = wl_display_connect(nullptr);
    wl_seat* seat = nullptr;
    zwlr_virtual_pointer_manager_v1* pointers = nullptr;
    zwp_virtual_keyboard_manager_v1* keyboards = nullptr;
    zwlr_virtual_pointer_v1* pointer = nullptr;
    zwp_virtual_keyboard_v1* keyboard = nullptr;

    bool grow()
    {
        if (!display)
            return false;
        static constexpr wl_registry_listener listener{
            .global =
                [](void* self, wl_registry* registry, uint32_t number, const char* name, uint32_t) {
                    auto& hands = *static_cast<Hands*>(self);
                    const auto bind = [&](auto*& object, const wl_interface& interface) {
                        if (std::strcmp(name, interface.name) == 0)
                            object = static_cast<std::remove_reference_t<decltype(object)>>(
                                wl_registry_bind(registry, number, &interface, 1));
                    };
                    bind(hands.seat, wl_seat_interface);
                    bind(hands.pointers, zwlr_virtual_pointer_manager_v1_interface);
                    bind(hands.keyboards, zwp_virtual_keyboard_manager_v1_interface);
                },
            .global_remove = [](void*, wl_registry*, uint32_t) {},
        };
        wl_registry_add_listener(wl_display_get_registry(display), &listener, this);
        wl_display_roundtrip(display);
        if (!seat || !pointers || !keyboards)
            return false;
        pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(pointers, seat);
        keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(keyboards, seat);
        const int file = memfd_create("keymap", MFD_CLOEXEC);
        if (file < 0 || write(file, keymap, sizeof keymap) != sizeof keymap)
            return false;
        zwp_virtual_keyboard_v1_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file, sizeof keymap);
        return wl_display_roundtrip(display) >= 0;
    }

    static uint32_t now()
    {
        using namespace std::chrono;
        return uint32_t(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
    }

    bool obey(const QStringList& words, QSize desktop) const
    {
        const auto word = [&](int index) { return words.value(index); };
        if (word(0) == u"move") {
            zwlr_virtual_pointer_v1_motion_absolute(pointer, now(), word(1).toUInt(), word(2).toUInt(),
                uint32_t(desktop.width()), uint32_t(desktop.height()));
            zwlr_virtual_pointer_v1_frame(pointer);
        } else if (word(0) == u"press" || word(0) == u"release") {
            zwlr_virtual_pointer_v1_button(pointer, now(), word(1) == u"right" ? BTN_RIGHT : BTN_LEFT,
                word(0) == u"press" ? WL_POINTER_BUTTON_STATE_PRESSED : WL_POINTER_BUTTON_STATE_RELEASED);
            zwlr_virtual_pointer_v1_frame(pointer);
        } else if (word(0) == u"key" && keys.contains(word(1))) {
            for (const auto state : {WL_KEYBOARD_KEY_STATE_PRESSED, WL_KEYBOARD_KEY_STATE_RELEASED})
                zwp_virtual_keyboard_v1_key(keyboard, now(), keys[word(1)], state);
        } else {
            return false;
        }
        return wl_display_roundtrip(display) >= 0;
    }
};

} // namespace

int main(int argc, char** argv)
{
    Hands hands;
    if (argc != 3 || !hands.grow())
        return 1;
    const QSize desktop(std::atoi(argv[1]), std::atoi(argv[2]));
    QTextStream in(stdin);
    QTextStream out(stdout);
    out << "done" << Qt::endl;
    for (QString line; in.readLineInto(&line);)
        out << (hands.obey(line.split(u' '), desktop) ? "done" : "failed") << Qt::endl;
    return 0;
}
