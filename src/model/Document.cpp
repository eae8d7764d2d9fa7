// SPDX-License-Identifier: MIT
#include "model/Document.h"

namespace pintalux {

std::optional<Document> Document::cropped(const QRect& area) const
{
    Document result = *this;
    result.image = image.copy(area);
    if (result.image.isNull())
        return std::nullopt;
    result.uncropped = capture();
    result.cropOrigin += area.topLeft();
    for (auto& mark : result.annotations)
        mark.offset(-QPointF(area.topLeft()));
    return result;
}

} // namespace pintalux
