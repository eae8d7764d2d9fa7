// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace pintalux {

/// The means of square cells of `side` pixels from the top-left corner, one pixel a cell; at the right and
/// bottom edges the cells are cut off and have the mean of what is there. `picture` is
/// `ARGB32_Premultiplied` or `RGB32`, so is the result. Null when there is no memory for it.
QImage cellMeans(const QImage& picture, int side);

} // namespace pintalux
