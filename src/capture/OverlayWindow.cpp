// SPDX-License-Identifier: MIT
#include "capture/OverlayWindow.h"

#include "platform/windowing/PanelWindow.h"

#include <QScreen>

namespace pintalux {

OverlayWindow::OverlayWindow(
    const FrozenDisplay& display, QScreen& screen, CaptureOverlayController& controller)
    : OverlayView(display, controller)
{
    makeScreenPanel(*this, screen, display.screen.frame.toAlignedRect());
    paintThrough(makeDirectSurface(*this));
}

} // namespace pintalux
