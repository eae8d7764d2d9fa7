// SPDX-License-Identifier: MIT
#pragma once

#include "capture/OverlayView.h"

namespace pintalux {

/// The view of a screen as the panel that covers it.
class OverlayWindow : public OverlayView {
public:
    OverlayWindow(
        const FrozenDisplay& display, QScreen& screen, OverlayMode mode, bool listsWindows, Actions actions);
};

} // namespace pintalux
