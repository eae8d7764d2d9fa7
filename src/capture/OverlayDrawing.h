// SPDX-License-Identifier: MIT
#pragma once

#include "capture/OverlayLayout.h"

namespace pintalux::OverlayDrawing {

/// Paints one screen of the overlay: the frozen picture and everything over it. Stateless.
///
/// The context's user space is the view's, in points. `damage` bounds what is painted; the caller clips.
void draw(const OverlayLayout& layout, const QImage& image, const QRectF& damage, GraphicsContext& context);

} // namespace pintalux::OverlayDrawing
