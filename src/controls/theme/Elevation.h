// SPDX-License-Identifier: MIT
#pragma once

#include "controls/theme/Theme.h"

#include <QRectF>

class QPainter;

namespace pintalux {

/// How far a rounded sheet lifts off what is beneath it: its shadow and its edge.
namespace Elevation {

enum class Level {
    raised,   ///< a segment on its well
    popover,  ///< popovers and menus
    floating, ///< palette, arrow options, thumbnail
};

/// Paints the shadow that `sheet` casts around itself, nothing within it; points. It fades out within
/// `Theme::shadowMargin`.
///
/// The shadow is blurred once for each level, radius, theme and device pixel ratio, and then put together
/// from the parts of that picture, so that it costs next to nothing to repaint or to resize.
void drawShadow(Level level, const QRectF& sheet, double radius, const Theme& theme, QPainter& painter);

/// Paints the hairlines at the edge of a floating surface, which reach one device pixel beyond `sheet`.
void drawEdge(const QRectF& sheet, double radius, const Theme& theme, QPainter& painter);

/// The same for a window that is cut to the sheet's shape because nothing can show through it: within
/// `sheet`.
void drawInnerEdge(const QRectF& sheet, double radius, const Theme& theme, QPainter& painter);

} // namespace Elevation

} // namespace pintalux
