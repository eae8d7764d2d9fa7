// SPDX-License-Identifier: MIT
#include "editor/state/HoverInfo.h"

#include "platform/graphics/Color.h"

namespace pintalux {

void HoverInfo::setColor(const std::optional<QColor>& color)
{
    const auto hex = color ? hexString(*color) : QString();
    if (hex == hexText)
        return;
    hexText = hex;
    hovered = color;
    Q_EMIT changed();
}

void HoverInfo::setZoom(int value)
{
    if (value == percent)
        return;
    percent = value;
    Q_EMIT changed();
}

void HoverInfo::setDrawn(const std::optional<Drawn>& value)
{
    if (value == underWay)
        return;
    underWay = value;
    Q_EMIT changed();
}

} // namespace pintalux
