// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ScreenSource.h"

class QScreen;
class QWidget;

namespace pintalux {

/// Makes a window, before it is first shown, a panel that covers `frame` (points of the desktop) on `screen`:
/// above everything, on all desktops, without frame, shadow or the window manager's say.
void makeScreenPanel(QWidget& window, QScreen& screen, const QRect& frame);

/// Keeps a window, before it is first shown, out of task bars and window switchers.
void keepOutOfTaskBar(QWidget& window);

/// Gives the keyboard to a panel that is shown, or as soon as it is.
void giveKeyboard(QWidget& panel);

/// Takes the keyboard back for a panel that had it and lost it to another window.
void takeKeyboard(QWidget& panel);

/// Remembers which window of the desktop has the keyboard.
///
/// A panel that the window manager does not know takes the keyboard without being asked for it back: not
/// every manager, and none where none runs, gives it to the former window by itself.
class FormerKeyboardOwner {
public:
    FormerKeyboardOwner();
    /// Gives the keyboard back, once; does nothing when that window is gone.
    void restore();

private:
    quint32 window = 0;
};

} // namespace pintalux
