// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/WindowSystem.h"
#include "platform/x11/KeyboardMap.h"

#include <QElapsedTimer>
#include <QTimer>

#include <functional>

namespace pintalux::x11 {

/// Pointer and keyboard held for windows of ours over the toolkit's connection.
///
/// Another program's menu holds both as long as it is open. It is closed as a person would, with Escape, once
/// no key and no button is down any more: for with Ctrl it would mean something else, and a menu that is held
/// open by the mouse is left to the hand. Who holds them without a menu, a game or a remote desktop, gets no
/// key from us.
class InputGrab : public InputHold {
public:
    /// `window` is on the screen. `refused` is called once, from the event loop, when they cannot be had in
    /// time.
    InputGrab(xcb_window_t window, std::function<void()> refused);
    ~InputGrab() override;

private:
    bool take();
    void tryAgain();
    bool isAnythingDown() const;
    void sendEscape();
    void giveUp();

    xcb_window_t window;
    std::function<void()> refused;
    KeyboardMap map;
    QTimer timer;
    QElapsedTimer waited;
    QElapsedTimer sinceEscape;
    int escapes = 0;
    bool hasKeyboard = false;
    bool hasPointer = false;
};

} // namespace pintalux::x11
