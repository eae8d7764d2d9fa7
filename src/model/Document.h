// SPDX-License-Identifier: MIT
#pragma once

#include "model/Annotation.h"

#include <QImage>
#include <QList>
#include <QPoint>
#include <QRect>

#include <optional>

namespace pintalux {

/// A captured picture together with the marks drawn on it.
///
/// A plain value: copying shares the pixels, so a snapshot for undo costs one list copy.
/// Coordinates are document pixels: origin top-left, y downward, one unit per image pixel.
struct Document {
    QImage image;                  ///< the capture; annotating never changes it
    QList<Annotation> annotations; ///< drawing order, first is bottom-most
    double pixelScale = 1;         ///< image pixels per screen point
    /// What a cropped image was cut from, as it was captured; null while the image is all of it. Redactions
    /// are made from it, so that they look the same in every crop: from several different ones together,
    /// what they hide could be reckoned.
    QImage uncropped{};
    QPoint cropOrigin{}; ///< where the image's top-left corner lies in `uncropped`

    /// The picture as it was captured.
    const QImage& capture() const { return uncropped.isNull() ? image : uncropped; }
    QSizeF imageSize() const { return image.size(); }
    /// The same document cut to `area`, which lies within the image; the marks keep their places on the
    /// picture. None when there is no memory for it.
    std::optional<Document> cropped(const QRect& area) const;
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
