// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QString>

namespace pintalux {

/// The fixed colours of the product.
namespace Palette {

/// A colour offered for marks.
struct Swatch {
    QString id;   ///< hexadecimal text of the colour
    QString name; ///< Spanish, shown as a tool tip
    QColor color;
};

/// A background of the decorative frame.
struct Gradient {
    int id;               ///< the index that `BeautifySettings::gradient` stores
    QString name;         ///< Spanish
    QList<QColor> colors; ///< two or three, evenly spaced along the diagonal
};

const QList<Swatch>& annotation();
const QList<Gradient>& gradients();
inline constexpr int gradientCount = 10;

inline constexpr QColor brand{0x6E, 0x56, 0xF8};
inline constexpr QColor brandLight{0xB9, 0xAC, 0xFF};
inline constexpr QColor chalkWhite{0xF4, 0xF1, 0xE8};
inline constexpr QColor chalkYellow{0xF5, 0xD7, 0x6E};
inline constexpr QColor boardWood{0xC9, 0xA2, 0x7A};

} // namespace Palette

} // namespace pintalux
