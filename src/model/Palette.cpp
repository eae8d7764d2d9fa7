// SPDX-License-Identifier: MIT
#include "model/Palette.h"

#include "platform/graphics/Color.h"

using namespace Qt::StringLiterals;

namespace pintalux::Palette {

namespace {

Swatch swatch(const QString& hex, const QString& name) { return {hex, name, colorFromHex(hex).value()}; }

QList<QColor> colors(std::initializer_list<QStringView> hexes)
{
    QList<QColor> list;
    for (const auto hex : hexes)
        list << colorFromHex(hex).value();
    return list;
}

} // namespace

const QList<Swatch>& annotation()
{
    static const QList<Swatch> swatches{
        swatch(u"#FF0000"_s, u"Rojo"_s),
        swatch(u"#FF9F1C"_s, u"Mandarina"_s),
        swatch(u"#FFD23F"_s, u"Limón"_s),
        swatch(u"#2BD67B"_s, u"Menta"_s),
        swatch(u"#3A86FF"_s, u"Cielo"_s),
        swatch(u"#8E6CFF"_s, u"Lavanda"_s),
        swatch(u"#1F2328"_s, u"Grafito"_s),
        swatch(u"#FFFFFF"_s, u"Nieve"_s),
    };
    return swatches;
}

const QList<Gradient>& gradients()
{
    static const QList<Gradient> list{
        {0, u"Pizarrón"_s, colors({u"#16352D", u"#24503F", u"#3C7A5E"})},
        {1, u"Océano"_s, colors({u"#1E3C72", u"#2A7DE1", u"#6DD5FA"})},
        {2, u"Menta"_s, colors({u"#0BA360", u"#3CBA92", u"#9BE3C3"})},
        {3, u"Atardecer"_s, colors({u"#FF7E5F", u"#FEB47B"})},
        {4, u"Durazno"_s, colors({u"#FBD3E9", u"#FFE5C2"})},
        {5, u"Lavanda"_s, colors({u"#C9D6FF", u"#E2C9FF"})},
        {6, u"Bosque"_s, colors({u"#134E5E", u"#3E8E6E", u"#71B280"})},
        {7, u"Medianoche"_s, colors({u"#0F1020", u"#2B2D52", u"#4B3F72"})},
        {8, u"Grafito"_s, colors({u"#2C2F36", u"#4A4F59"})},
        {9, u"Papel"_s, colors({u"#F4F1EA", u"#E9E4D8"})},
    };
    return list;
}

} // namespace pintalux::Palette
