// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QStringList>

namespace pintalux {

enum class FontWeight {
    regular = QFont::Normal,
    medium = QFont::Medium,
    semibold = QFont::DemiBold,
    bold = QFont::Bold
};

/// A font by what it is for. The size may be fractional; its unit is that of the space it is drawn in.
struct Font {
    QStringList families; ///< the first that is installed is used; the rest lend the characters it lacks
    double size;
    FontWeight weight;

    bool operator==(const Font&) const = default;
};

/// The same for the toolkit, which knows whole pixels only.
QFont toolkitFont(const Font& font);

namespace Draw {

/// The interface's font.
Font systemFont(double size, FontWeight weight);
/// The friendly rounded font of marks and step numbers; the interface's font where it is not installed.
Font roundedFont(double size, FontWeight weight);
/// The font that looks written by hand, always bold; the rounded one where none is installed.
Font handwrittenFont(double size);
/// The font whose characters are all equally wide, for values to compare.
Font monospacedFont(double size, FontWeight weight);

} // namespace Draw

} // namespace pintalux
