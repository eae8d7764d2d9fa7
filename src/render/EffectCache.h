// SPDX-License-Identifier: MIT
#pragma once

#include "model/Tool.h"

#include <QImage>

#include <array>

namespace pintalux {

/// Filtered copies of one image, one for each redaction style, made when first asked for.
///
/// Dragging a redaction then only moves a clip. Belongs to whoever shows the image; main thread only.
class EffectCache {
public:
    /// `source` as a whole in the given style, same size; null when it could not be made (the next call tries
    /// again). Another source image or pixel scale drops the earlier copies.
    QImage image(BlurStyle style, const QImage& source, double pixelScale);

private:
    qint64 sourceKey = 0; ///< identity of the image that the copies were made from; 0: none yet
    double sourceScale = 0;
    std::array<QImage, blurStyleTable.size()> images;
};

} // namespace pintalux
