// SPDX-License-Identifier: MIT
#pragma once

#include "model/Tool.h"

#include <QColor>

namespace pintalux {

class GraphicsContext;

/// The pictures of the drawing instruments.
namespace InstrumentDrawing {

/// The box in which an instrument stands, in points; its lower end goes on under the floor of the tray.
inline constexpr double width = 26;
inline constexpr double height = 60;

/// Draws the pen, the highlighter or the eraser with its shadow; user space is points from the box's top-left
/// corner. Nothing for other tools.
void draw(Tool tool, const QColor& tint, bool dark, GraphicsContext& context);

} // namespace InstrumentDrawing

} // namespace pintalux
