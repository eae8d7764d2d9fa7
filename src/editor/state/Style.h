// SPDX-License-Identifier: MIT
#pragma once

#include "model/Annotation.h"
#include "settings/Settings.h"

namespace pintalux {

/// Stroke widths from the least to the greatest; points.
struct StrokeRange {
    double lower;
    double upper;
};

/// How the next mark is drawn.
struct Style {
    /// As the person has left it: in colour, width, arrow, handwriting and callout. The rest starts anew with
    /// each editor.
    static Style lastChosen(const SettingsValues& settings);

    QColor color;
    double strokeWidth = 0; ///< points
    ArrowStyle arrowStyle = ArrowStyle::sketch;
    bool handwritten = false;
    bool filled = false;
    bool calloutText = false; ///< texts in a bubble
    BlurStyle blurStyle = BlurStyle::pixelate;

    bool operator==(const Style&) const = default;

    /// This style with the values that a mark has in place of its own.
    Style shownFor(const Annotation& mark, double pixelScale) const;

    /// Stroke width in document pixels.
    double lineWidth(double pixelScale) const { return strokeWidth * pixelScale; }
    /// Font size of texts and step markers in document pixels. It grows with the stroke up to 10 points.
    double fontSize(double pixelScale) const;
};

} // namespace pintalux
