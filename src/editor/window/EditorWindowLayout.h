// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Settings.h"

#include <QList>
#include <QMargins>
#include <QPoint>
#include <QRect>
#include <QSize>

namespace pintalux {

/// Where things lie in an editor's window. Lengths are points.
namespace EditorWindowLayout {

inline constexpr QSize minimumSize{900, 560};

/// The size of a window's content (everything below the menu bar) for a capture of this size on a screen that
/// leaves `visible` to windows.
QSize contentSize(QSizeF capture, QSize visible);

/// With the title bar that a window manager will put above; its true height is known only once it did.
QSize framed(QSize window);

/// Where a window of this size, with its frame, opens: in the middle, or further down and to the right where
/// windows stand already. `taken` are the corners of those windows.
QPoint windowPosition(QSize window, const QRect& visible, const QList<QPoint>& taken);

struct Panels {
    QRect palette;
    QRect arrowOptions;
};

/// The floating panels over the canvas, in the coordinates of `canvas`'s parent. The arrow options stand
/// beside a palette that lies across, and at the top where the palette stands upright. A hidden palette takes
/// no room.
Panels panels(PaletteEdge edge, const QRect& canvas, QSize palette, QSize arrowOptions);

/// What stays free around the picture: some air, and the palette on its edge.
QMargins canvasInsets(PaletteEdge edge, bool hidden, QSize palette);

/// The edge of a content of this size that is nearest to `position`, by the part of the width or height that
/// lies between them. Ties go to left, right, bottom, top.
PaletteEdge nearestEdge(QPointF position, QSizeF content);

} // namespace EditorWindowLayout

} // namespace pintalux
