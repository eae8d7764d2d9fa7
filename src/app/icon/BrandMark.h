// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QRectF>

class QPainter;

namespace pintalux {

/// The mark of the product for the interface: a small board with brackets around a chalk curve.
namespace BrandMark {

/// Paints the mark into the largest square in the middle of `rect`.
void draw(const QRectF& rect, QPainter& painter);

/// The mark as an icon, drawn anew for each size.
QIcon icon();

} // namespace BrandMark

} // namespace pintalux
