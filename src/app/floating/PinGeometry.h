// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace pintalux::PinGeometry {

/// The size of a new pin, in points: its own, never enlarged and never more than 60 % of the visible part of
/// the screen in either direction. A fraction of a point is rounded up, so that no pixel is missing.
QSize sizeOnScreen(QSize pixels, double pixelScale, QSizeF visible);

/// The edges of the pin that a press at `point` takes hold of; none in its inside. Points of the pin.
Qt::Edges edgesAt(QPoint point, QSize size);

/// The pointer that stands for taking hold of these edges.
Qt::CursorShape cursorFor(Qt::Edges edges);

/// `start` after its `edges` were dragged by `delta`, with the proportions of `proportions`. What is opposite
/// of the edges stays where it is; beside them, the top and the left do. It stays large enough to be taken
/// hold of.
QRect resized(const QRect& start, Qt::Edges edges, QPoint delta, QSize proportions);

/// The largest size of these `proportions` that `available` has room for; `available` itself where it is that
/// but for a rounded point.
QSize fitted(QSize available, QSize proportions);

} // namespace pintalux::PinGeometry
