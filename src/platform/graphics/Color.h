// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>

#include <optional>

namespace pintalux {

/// A colour from six hexadecimal digits in either case, with or without a leading "#"; white space around is
/// ignored. None for anything else.
std::optional<QColor> colorFromHex(QStringView text);

/// "#" and six upper-case digits of the sRGB components; alpha is left out.
QString hexString(const QColor& color);

/// Weighted sum 0.2126 r + 0.7152 g + 0.0722 b of the encoded sRGB components, 0 to 1 (not linearised).
double luminance(const QColor& color);

/// The colour for text on a background of `color`: white up to a luminance of 0.74, graphite above.
QColor contrasting(const QColor& color);

/// `color` with another opacity.
QColor withAlpha(QColor color, double alpha);
/// `color` with its opacity multiplied.
QColor faded(QColor color, double amount);
/// Between two colours, in premultiplied components; 0 gives the first.
QColor mixed(const QColor& from, const QColor& to, double amount);

} // namespace pintalux
