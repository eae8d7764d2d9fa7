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

/// From now on clicks outside of `area` (points of the window) reach what lies below: what a window paints
/// beside its contents is no obstacle. Once it is on the screen, for not every window manager looks at it.
void takeMouseOnlyWithin(QWidget& widget, const QRect& area);

} // namespace pintalux
