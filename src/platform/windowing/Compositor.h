// SPDX-License-Identifier: MIT
#pragma once

class QRectF;
class QWidget;

namespace pintalux {

/// True when translucent windows show what is below them. Without a compositor their clear parts are black,
/// so they need a mask instead, and cannot fade.
bool hasCompositor();

/// Cuts a window without translucency to a rounded sheet in it; points of the window. Anew after each change
/// of the size.
void cutToSheet(QWidget& window, const QRectF& sheet, double radius);

/// Asks the compositor for no shadow around a window that paints its own, or none. Before the window is
/// shown.
void disableCompositorShadow(QWidget& window);

/// True when the desktop asks programs not to animate.
bool prefersReducedMotion();

} // namespace pintalux
