// SPDX-License-Identifier: MIT
#include "editor/state/Style.h"

#include <algorithm>

namespace pintalux {

Style Style::lastChosen(const SettingsValues& settings)
{
    return {.color = settings.lastColor,
        .strokeWidth = settings.strokeWidth,
        .arrowStyle = settings.arrowStyle,
        .handwritten = settings.handwritten,
        .calloutText = settings.calloutText};
}

double Style::fontSize(double pixelScale) const
{
    return (std::min(strokeWidth, 10.0) * 2.6 + 15) * pixelScale;
}

} // namespace pintalux
