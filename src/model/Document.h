// SPDX-License-Identifier: MIT
#pragma once

#include "model/Annotation.h"

#include <QImage>
#include <QList>

namespace pintalux {

/// A captured picture together with the marks drawn on it.
///
/// A plain value: copying shares the pixels, so a snapshot for undo costs one list copy.
/// Coordinates are document pixels: origin top-left, y downward, one unit per image pixel.
struct Document {
    QImage image;                  ///< the capture; annotating never changes it
    QList<Annotation> annotations; ///< drawing order, first is bottom-most
    double pixelScale = 1;         ///< image pixels per screen point

    QSizeF imageSize() const { return image.size(); }
    /// The first mark with this identity; null when there is none.
    const Annotation* annotation(const QUuid& id) const
    {
        for (const auto& candidate : annotations)
            if (candidate.id == id)
                return &candidate;
        return nullptr;
    }

    bool operator==(const Document&) const = default;
};

} // namespace pintalux
