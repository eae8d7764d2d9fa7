// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <span>
#include <vector>

namespace pintalux {

/// What is shown in a redacted picture's place: square cells of one colour each, over the whole picture.
///
/// The mean of a cell would give its pixels away: who guesses a text, redacts the guess in the same way and
/// compares, reads it back letter by letter. So the colours are made anew from a few coarse figures of blocks
/// of 8 × 8 cells (ground, direction and strength of the contrast) and a grain that depends on the place
/// alone: nearly all texts give the same cells. In plain areas the cells have the picture's colour.
///
/// Reckoned on the encoded, premultiplied components. The same picture always gives the same cells.
class RedactionCells {
public:
    RedactionCells() = default;
    /// Cells of `side` pixels from the top-left corner; those at the right and bottom edges are cut off. A
    /// fraction is rounded to the nearest whole number, halves up, at least 1.
    RedactionCells(const QImage& picture, double side);

    bool isNull() const { return colors.isNull(); }
    int side() const { return cellSide; }
    QSize pictureSize() const { return size; }
    /// One pixel a cell, `ARGB32_Premultiplied`, or `RGB32` when the picture cannot have transparency.
    const QImage& cells() const { return colors; }

    /// The pixels in which the given columns and rows of the picture cross, all of them within it.
    QImage pixellated(std::span<const int> columns, std::span<const int> rows) const;

private:
    QImage colors;
    QSize size;
    int cellSide = 0;
};

/// The Gaussian blur over redaction cells, kept on the cells' own grid.
class RedactionBlur {
public:
    RedactionBlur() = default;
    /// A standard deviation of `sigma` pixels, of which the cells' size and the interpolation between them
    /// make a part: with less than about ⅔ of a cell the blur is that part alone. The cells at the edges
    /// repeat outward.
    RedactionBlur(const RedactionCells& cells, double sigma);

    bool isNull() const { return values.empty(); }
    /// The pixels in which the given columns and rows of the picture cross, all of them within it. Differs
    /// from a true Gaussian of the pixellated picture by three levels at most.
    QImage pixels(std::span<const int> columns, std::span<const int> rows) const;

private:
    const float* row(int y) const { return values.data() + std::size_t(y) * std::size_t(gridWidth) * 4; }

    std::vector<float> values; ///< four a cell, with two cells more beyond each edge
    int gridWidth = 0;
    int side = 0;
    QImage::Format format = QImage::Format_Invalid;
};

} // namespace pintalux
