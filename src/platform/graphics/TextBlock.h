// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Font.h"

#include <QColor>
#include <QPointF>
#include <QSizeF>
#include <QString>

#include <memory>
#include <optional>

class QPainter;
class QTextDocument;

namespace pintalux {

/// How a paragraph looks.
struct TextAttributes {
    Font font;
    QColor color;
    double lineHeightMultiple = 1;
};

/// A laid-out paragraph that can be measured and drawn.
///
/// The toolkit rounds font sizes to whole pixels. So every text is laid out once at a fixed size, unhinted,
/// and painted through a scale: measuring, drawing, typing, zooming and exporting then agree, and twice the
/// size measures exactly twice as much.
class TextBlock {
public:
    /// Lines break at line feeds and, when `wrapWidth` is given (same unit as the font's size), between words
    /// so that no line is wider; a word that is wider by itself is broken between characters.
    TextBlock(const QString& text, const TextAttributes& attributes, std::optional<double> wrapWidth = {});

    /// The width of the longest line and the height of all lines. An empty text has one line's height.
    QSizeF size() const;

    double fontSize() const { return scale * layoutSize; }

    /// From the top of the first line's box down to its base line.
    double ascent() const;

    /// Paints with the top-left corner of the first line's box at `topLeft`, in the painter's user space.
    void draw(QPainter& painter, QPointF topLeft) const;

    /// Gives `document` the layout that a text block of these attributes has; it must then be painted through
    /// `scale(font.size / layoutSize)`. For a field that edits the text in place.
    static void prepare(
        QTextDocument& document, const TextAttributes& attributes, std::optional<double> wrapWidth);

    /// Pixel size of the font in the layout.
    static constexpr double layoutSize = 100;

private:
    std::shared_ptr<const QTextDocument> document;
    QColor color;
    double scale;
};

} // namespace pintalux
