// SPDX-License-Identifier: MIT
#include "platform/graphics/Font.h"

using namespace Qt::StringLiterals;

namespace pintalux {

QFont toolkitFont(const Font& font)
{
    QFont made;
    made.setFamilies(font.families);
    made.setPixelSize(int(font.size));
    made.setWeight(QFont::Weight(font.weight));
    return made;
}

namespace Draw {

namespace {

// Symbols and emoji that the text fonts lack come from these. The emoji stand before the last one, which has
// black and white drawings of them.
const QStringList& fallbacks()
{
    static const QStringList families{u"Inter"_s, u"Noto Color Emoji"_s, u"DejaVu Sans"_s};
    return families;
}

} // namespace

Font systemFont(double size, FontWeight weight) { return {fallbacks(), size, weight}; }

Font roundedFont(double size, FontWeight weight)
{
    static const QStringList families = QStringList{u"Quicksand"_s, u"Varela Round"_s} + fallbacks();
    return {families, size, weight};
}

Font handwrittenFont(double size)
{
    static const QStringList families
        = QStringList{u"Comic Neue"_s, u"Comic Relief"_s, u"Quicksand"_s} + fallbacks();
    return {families, size, FontWeight::bold};
}

Font monospacedFont(double size, FontWeight weight)
{
    static const QStringList families = QStringList{u"JetBrains Mono"_s, u"DejaVu Sans Mono"_s} + fallbacks();
    return {families, size, weight};
}

} // namespace Draw

} // namespace pintalux
