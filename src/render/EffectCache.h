// SPDX-License-Identifier: MIT
#pragma once

#include "model/Tool.h"
#include "platform/image/RedactionCells.h"

#include <QImage>

#include <algorithm>
#include <span>

namespace pintalux {

/// The redacted copies of one image, one for each style, made when first asked for.
///
/// Only their cells are kept, and pixels are made as they are needed: dragging a redaction then only moves a
/// window over them. Belongs to whoever shows the image; main thread only.
class EffectCache {
public:
    /// Of the squares that a redaction shows, in image pixels.
    static double cellSide(double pixelScale) { return std::max(9 * pixelScale, 6.0); }

    /// `source` as a whole in the given style, same size; null when it could not be made (the next call tries
    /// again). Another source image or pixel scale drops what is kept of the earlier one.
    QImage image(BlurStyle style, const QImage& source, double pixelScale);
    /// The pixels of that copy in which the given columns and rows cross, all of them within it.
    QImage pixels(BlurStyle style, const QImage& source, double pixelScale, std::span<const int> columns,
        std::span<const int> rows);

private:
    bool prepare(BlurStyle style, const QImage& source, double pixelScale);

    qint64 sourceKey = 0; ///< identity of the image that the cells were made from; 0: none yet
    double sourceScale = 0;
    RedactionCells cells;
    RedactionBlur blur;
};

} // namespace pintalux
