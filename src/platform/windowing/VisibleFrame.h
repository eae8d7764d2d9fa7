// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

class QScreen;

namespace pintalux {

/// The part of a screen, in points of the desktop, that panels and docks leave free.
///
/// The toolkit tells it for a single screen only; where there are several it counts the whole of each. Asks
/// the display server: for when something is put on the screen, not for each repaint.
QRect visibleFrame(const QScreen& screen);

} // namespace pintalux
