#pragma once

#include <QRect>
#include <QSize>

class QWidget;

namespace pintalux {

/// Makes a window, before it is first shown, one that the window manager keeps above ordinary ones, on every
/// desktop and out of the task list, without a frame. It can have the keyboard.
void makePinWindow(QWidget& window);

/// Asks the window manager to keep the window's proportions when it resizes it. Anew after each change of the
/// size, for the toolkit forgets it then.
void keepProportions(QWidget& window, QSize proportions);

/// Makes a window, before it is first shown, one that lies above all others, full-screen ones too, on every
/// desktop, that the window manager leaves alone and that never takes the keyboard.
void makeUnfocusablePanel(QWidget& window);

/// From now on clicks outside of `area` (points of the window, which is shown or has been given a size) reach
/// what lies below: what a window paints beside its contents is no obstacle.
void takeMouseOnlyWithin(QWidget& window, const QRect& area);

} // namespace pintalux
