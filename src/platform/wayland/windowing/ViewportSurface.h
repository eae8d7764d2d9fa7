// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include <memory>

class QWidget;

namespace pintalux {

class DirectSurface;

namespace wayland {

/// Paints a window that is a `LayerSurface` in pixels of its screen, whatever the screen's scale: the toolkit
/// knows whole scales only, and the compositor would shrink what it paints. `nativeSize` is the screen's in
/// pixels. Null where the compositor cannot scale surfaces.
std::unique_ptr<DirectSurface> makeViewportSurface(QWidget& window, QSize nativeSize);

} // namespace wayland

} // namespace pintalux
