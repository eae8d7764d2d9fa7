// SPDX-License-Identifier: MIT
#pragma once

#include "model/BeautifySettings.h"
#include "model/Document.h"

#include <QMargins>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace pintalux {

/// Where the canvas shows the composition.
///
/// View points are the widget's logical pixels; document points are pixels of the document's picture.
struct CanvasMapping {
    double scale = 1;      ///< view points per document pixel
    QPointF origin;        ///< view point of the composition's top-left corner
    QPointF pictureOrigin; ///< the picture's top-left corner in the composition, in document pixels
    QSizeF composition;    ///< in document pixels

    /// Fits the composition into what `insets` leave free of the view, never larger than one screen point per
    /// point of the capture. The origin is a whole number of view points and, where `devicePixelRatio` is
    /// fractional, moved on to the nearest device pixel, so that a picture at 100 % stays sharp.
    static CanvasMapping fitted(QSizeF view, const QMargins& insets, const Document& document,
        const BeautifySettings& beautify, double devicePixelRatio);

    QPointF toDocument(QPointF viewPoint) const { return (viewPoint - origin) / scale - pictureOrigin; }
    QPointF toView(QPointF documentPoint) const { return origin + scale * (documentPoint + pictureOrigin); }
    QRectF toView(const QRectF& documentRect) const
    {
        return {toView(documentRect.topLeft()), documentRect.size() * scale};
    }
    /// The composition in view points.
    QRectF frame() const { return {origin, composition * scale}; }

    bool operator==(const CanvasMapping&) const = default;
};

} // namespace pintalux
