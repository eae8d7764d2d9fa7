// SPDX-License-Identifier: MIT
#include "capture/OverlayWindow.h"

#include "platform/windowing/PanelWindow.h"

#include <QScreen>

namespace pintalux {

OverlayWindow::OverlayWindow(const FrozenDisplay& frozen, QScreen& screen, OverlayMode mode, Actions asked)
    : OverlayView(frozen, mode, std::move(asked))
{
    makeScreenPanel(*this, screen, frozen.screen.frame.toAlignedRect());
    paintThrough(makeDirectSurface(*this));
}

} // namespace pintalux
