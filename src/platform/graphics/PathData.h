// SPDX-License-Identifier: MIT
#pragma once

#include <QPainterPath>
#include <QStringView>

namespace pintalux {

/// A path from the short notation of vector drawings, such as "M5.5 18.5 18.5 5.5Z": a letter and its
/// numbers, absolute in upper case and relative in lower case; numbers alone repeat the last letter.
///
/// Knows M, L, H, V, C, S, Q and Z. A mistake in the text ends the path there and is logged.
QPainterPath pathFromData(QStringView data);

} // namespace pintalux
