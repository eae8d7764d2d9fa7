// SPDX-License-Identifier: MIT
#include "capture/OverlayWindow.h"

#include "platform/desktop/WindowSystem.h"

#include <QScreen>

namespace pintalux {

OverlayWindow::OverlayWindow(
    const FrozenDisplay& frozen, QScreen& screen, OverlayMode mode, bool listsWindows, Actions asked)
    : OverlayView(frozen, mode, listsWindows, std::move(asked))
{
    const auto& system = WindowSystem::current();
    system.coverScreen(*this, screen, frozen.screen.frame.toAlignedRect());
    paintThrough(system.makeDirectSurface(*this, frozen.image.size()));
}

} // namespace pintalux
