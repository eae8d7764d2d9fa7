// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace pintalux::ImageFilter {

/// The filters of whole pictures. What they return covers the source pixel for pixel: same size, same format
/// (`ARGB32_Premultiplied` or `RGB32`; a picture in another one is converted first, to `RGB32` when it can
/// have no transparency), same colour space, device pixel ratio 1. A null picture gives a null picture.
/// They compute on the encoded, premultiplied components.

/// Squares of `cell` pixels, from the top-left corner, each filled with the mean of its pixels. At the right
/// and bottom edges the cells are cut off and hold the mean of what they have.
///
/// A cell of a fraction of a pixel is rounded to the nearest whole number, halves up, at least 1: all cells
/// look alike, and what is to be hidden is hidden rather more than less.
QImage pixellate(const QImage& source, double cell);

/// Gaussian blur with a standard deviation of `sigma` pixels; the edge pixels repeat outward without end, so
/// that the borders neither darken nor fade.
QImage gaussianBlur(const QImage& source, double sigma);

/// Gaussian blur of a coverage mask, outside of which nothing is covered. Gives an `Alpha8` mask of the same
/// size; whoever wants the whole halo leaves room of three `sigma` around what is covered.
///
/// A `Grayscale8` picture is taken as coverage; of any other one the alpha channel counts.
QImage blurMask(const QImage& mask, double sigma);

} // namespace pintalux::ImageFilter
