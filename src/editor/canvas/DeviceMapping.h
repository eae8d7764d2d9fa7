// SPDX-License-Identifier: MIT
#pragma once

#include "editor/canvas/CanvasMapping.h"

#include <QPoint>
#include <QRect>
#include <QTransform>

namespace pintalux {

/// Which device pixels show the composition: a `CanvasMapping` on a screen of some density.
///
/// Device pixels are those of the view: the origin is its top-left corner. Rectangles of them take in all
/// pixels that are touched.
class DeviceMapping {
public:
    DeviceMapping() = default;
    DeviceMapping(const CanvasMapping& mapping, double devicePixelRatio);

    /// Device pixels per document pixel. Exactly 1 where a document pixel is a device pixel.
    double scale() const { return pixelScale; }
    /// From the user space of the renderer to device pixels. The composition begins at a whole one.
    QTransform composition() const { return {pixelScale, 0, 0, pixelScale, origin.x(), origin.y()}; }
    /// The composition. It ends between two device pixels at most zooms; stretched to the nearest one, by
    /// less than half a pixel, the picture is scaled once instead of twice and stays sharp.
    QRect frame() const { return QRect(origin.toPoint(), frameSize); }
    QRect fromDocument(const QRectF& documentRect) const;
    QRect fromView(const QRectF& viewRect) const;
    /// View points that take in the pixels, however the toolkit rounds what it is asked to paint.
    QRect toView(const QRect& devicePixels) const;

private:
    double ratio = 1;
    double pixelScale = 1;
    QPointF origin; ///< whole
    QPointF pictureOrigin;
    QSize frameSize;
};

} // namespace pintalux
