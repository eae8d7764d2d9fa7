#include "platform/Font.h"

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
    static const QStringList families{u"Inter"_qs, u"Noto Color Emoji"_qs, u"DejaVu Sans"_qs};
    return families;
}

} // namespace

Font systemFont(double size, FontWeight weight) { return {fallbacks(), size, weight}; }

Font roundedFont(double size, FontWeight weight)
{
    static const QStringList families = QStringList{u"Quicksand"_qs, u"Varela Round"_qs} + fallbacks();
    return {families, size, weight};
}

Font handwrittenFont(double size)
{
    static const QStringList families
        = QStringList{u"Comic Neue"_qs, u"Comic Relief"_qs, u"Quicksand"_qs} + fallbacks();
    return {families, size, FontWeight::bold};
}

Font monospacedFont(double size, FontWeight weight)
{
    static const QStringList families
        = QStringList{u"JetBrains Mono"_qs, u"DejaVu Sans Mono"_qs} + fallbacks();
    return {families, size, weight};
}

} // namespace Draw

} // namespace pintalux
