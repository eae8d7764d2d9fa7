// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/GraphicsContext.h"

#include <vector>

namespace pintalux {

/// One line of text in which several looks stand on a common base line.
class TextLine {
public:
    /// Spaces count wherever they are, also at the end.
    void append(const QString& text, const TextAttributes& attributes);
    /// Every digit takes the width of the widest one, so that a changing number does not shake.
    void appendWithEvenDigits(const QString& text, const TextAttributes& attributes);

    QSizeF size() const { return {width, ascent + descent}; }
    void draw(GraphicsContext& context, QPointF topLeft) const;

private:
    struct Run {
        TextBlock block;
        double x;
    };

    void append(const TextBlock& block, double cellWidth);

    std::vector<Run> runs;
    double width = 0;
    double ascent = 0;
    double descent = 0;
};

/// `text` on one line and no wider than `width`: what does not fit is left out of its middle for a "…". At
/// least the "…" stays.
QString shortenedInTheMiddle(const QString& text, const TextAttributes& attributes, double width);

} // namespace pintalux
