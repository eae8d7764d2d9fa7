// SPDX-License-Identifier: MIT
#include "editor/canvas/CanvasMapping.h"

#include "render/Renderer.h"

#include <algorithm>
#include <cmath>

namespace pintalux {

CanvasMapping CanvasMapping::fitted(QSizeF view, const QMargins& insets, const Document& document,
    const BeautifySettings& beautify, double devicePixelRatio)
{
    constexpr double leastRoom = 10;
    CanvasMapping mapping;
    mapping.composition = Renderer::compositionSize(document.image, beautify, document.pixelScale);
    mapping.pictureOrigin = Renderer::imageRect(document.image, beautify, document.pixelScale).topLeft();

    const auto room = QRectF(QPointF(), view).marginsRemoved(insets);
    mapping.scale = std::min({std::max(room.width(), leastRoom) / mapping.composition.width(),
        std::max(room.height(), leastRoom) / mapping.composition.height(), 1 / document.pixelScale});

    const auto snapped = [devicePixelRatio](double value) {
        return std::round(std::round(value) * devicePixelRatio) / devicePixelRatio;
    };
    mapping.origin = {snapped(room.x() + (room.width() - mapping.composition.width() * mapping.scale) / 2),
        snapped(room.y() + (room.height() - mapping.composition.height() * mapping.scale) / 2)};
    return mapping;
}

} // namespace pintalux
