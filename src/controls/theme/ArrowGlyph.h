// SPDX-License-Identifier: MIT
#pragma once

#include "model/Tool.h"

#include <QColor>
#include <QRectF>

class QPainter;

namespace pintalux {

/// The small picture of an arrow style, by the paths of the arrows themselves. Drawn on a field of 44 × 36,
/// scaled to fit into `rect` and centred there.
void drawArrowGlyph(ArrowStyle style, const QRectF& rect, const QColor& color, QPainter& painter);

} // namespace pintalux
