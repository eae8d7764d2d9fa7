// SPDX-License-Identifier: MIT
#include "editor/canvas/DeviceMapping.h"

#include <algorithm>
#include <cmath>

namespace pintalux {

namespace {

/// What arithmetic leaves of nothing: a border that it has moved does not cost a row of pixels.
constexpr double hair = 1e-6;

QRect aligned(const QRectF& rect) { return rect.adjusted(hair, hair, -hair, -hair).toAlignedRect(); }

QPointF rounded(QPointF point) { return {std::round(point.x()), std::round(point.y())}; }

} // namespace

DeviceMapping::DeviceMapping(const CanvasMapping& mapping, double devicePixelRatio)
    : ratio(devicePixelRatio)
    , pixelScale(mapping.scale * devicePixelRatio)
    , origin(rounded(mapping.origin * devicePixelRatio))
    , pictureOrigin(mapping.pictureOrigin)
{
    if (std::abs(pixelScale - 1) < hair)
        pixelScale = 1;
    const auto exact = mapping.composition * pixelScale;
    frameSize = {std::max(1, int(std::lround(exact.width()))), std::max(1, int(std::lround(exact.height())))};
}

QRect DeviceMapping::fromDocument(const QRectF& documentRect) const
{
    return aligned(
        {origin + (documentRect.topLeft() + pictureOrigin) * pixelScale, documentRect.size() * pixelScale});
}

QRect DeviceMapping::fromView(const QRectF& viewRect) const
{
    return aligned({viewRect.topLeft() * ratio, viewRect.size() * ratio});
}

QRect DeviceMapping::toView(const QRect& devicePixels) const
{
    const auto exact
        = aligned({QPointF(devicePixels.topLeft()) / ratio, QSizeF(devicePixels.size()) / ratio});
    // Where view points end between device pixels, the toolkit gives the pixel to either side.
    const int margin = ratio == std::floor(ratio) ? 0 : 1;
    return exact.adjusted(-margin, -margin, margin, margin);
}

} // namespace pintalux
