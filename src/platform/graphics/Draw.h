// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Font.h"
#include "platform/graphics/GraphicsContext.h"

namespace pintalux::Draw {

/// `rect` with rounded corners; the radius is bounded by half the shorter side.
QPainterPath roundedRect(const QRectF& rect, double radius);
QPainterPath ellipse(const QRectF& rect);
QPainterPath polyline(std::initializer_list<QPointF> points);

/// Fills `rect` as a capsule up to 24 pixels of height, as a rounded box above.
void pill(const QRectF& rect, const QColor& color, GraphicsContext& context);

/// See `GraphicsContext::deviceScale`.
double deviceScale(const GraphicsContext& context);

/// Draws `image` upright into `rect`.
void image(const QImage& image, const QRectF& rect, GraphicsContext& context);

} // namespace pintalux::Draw
