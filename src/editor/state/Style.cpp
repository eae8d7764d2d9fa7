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

Style Style::shownFor(const Annotation& mark, double pixelScale) const
{
    auto shown = *this;
    if (mark.kind == AnnotationKind::image)
        return shown;
    if (mark.kind == AnnotationKind::blur) {
        shown.blurStyle = mark.blurStyle;
        return shown;
    }
    shown.color = mark.color;
    shown.strokeWidth = mark.lineWidth / pixelScale;
    if (mark.kind == AnnotationKind::arrow)
        shown.arrowStyle = mark.arrowStyle;
    if (mark.kind == AnnotationKind::rectangle || mark.kind == AnnotationKind::ellipse)
        shown.filled = mark.filled;
    if (mark.kind == AnnotationKind::text) {
        shown.handwritten = mark.handwritten;
        shown.calloutText = mark.filled && mark.pointer;
    }
    return shown;
}

double Style::fontSize(double pixelScale) const
{
    return (std::min(strokeWidth, 10.0) * 2.6 + 15) * pixelScale;
}

} // namespace pintalux
