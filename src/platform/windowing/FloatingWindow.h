// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QSize>

class QWidget;

namespace pintalux {

/// Makes a window, before it is first shown, one that the window manager keeps above ordinary ones, on every
/// desktop and out of the task list, without a frame. It can have the keyboard.
void makePinWindow(QWidget& window);

/// Asks the window manager to keep the proportions of what is in the window when it resizes it, and tells it
/// that a shadow of `margin` points is painted around that. Anew after each change of the size, for the
/// toolkit forgets it then.
void keepProportions(QWidget& window, QSize proportions, int margin);

/// Makes a window, before it is first shown, one that lies above all others, full-screen ones too, on every
/// desktop, that the window manager leaves alone and that never takes the keyboard.
void makeUnfocusablePanel(QWidget& window);

/// Tells the display that what the window paints around `sheet` (points of the window) is its shadow: clicks
/// there reach what lies below, and a compositor casts none of its own. Anew after each change of the size,
/// and once the window is on the screen, for not every window manager looks at it before.
void declareShadowAround(QWidget& widget, const QRect& sheet);

} // namespace pintalux
