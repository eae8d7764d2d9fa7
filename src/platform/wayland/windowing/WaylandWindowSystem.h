// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/WindowSystem.h"

namespace pintalux {

namespace wayland {
class DataControl;
}

/// Our own windows on a Wayland compositor, over the toolkit's own connection. What lies above all others is
/// a surface of the desktop's layers (wlr-layer-shell).
class WaylandWindowSystem : public WindowSystem {
    Q_OBJECT

public:
    WaylandWindowSystem();
    ~WaylandWindowSystem() override;

    void coverScreen(QWidget& window, QScreen& screen, const QRect& frame) const override;
    std::unique_ptr<DirectSurface> makeDirectSurface(QWidget& window, QSize nativeSize) const override;
    void prepare(QWidget& window, WindowRole role) const override;
    void describe(QWidget& window, WindowRole role, const QRect& sheet) const override;
    void setClipboard(std::unique_ptr<QMimeData> data) const override;
    void giveKeyboard(QWidget& window) const override;

private:
    mutable std::unique_ptr<wayland::DataControl> clipboard; ///< made when something is copied
};

} // namespace pintalux
