#include "model/Palette.h"

#include "model/Color.h"

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
        swatch(u"#FF0000"_qs, u"Rojo"_qs),
        swatch(u"#FF9F1C"_qs, u"Mandarina"_qs),
        swatch(u"#FFD23F"_qs, u"Limón"_qs),
        swatch(u"#2BD67B"_qs, u"Menta"_qs),
        swatch(u"#3A86FF"_qs, u"Cielo"_qs),
        swatch(u"#8E6CFF"_qs, u"Lavanda"_qs),
        swatch(u"#1F2328"_qs, u"Grafito"_qs),
        swatch(u"#FFFFFF"_qs, u"Nieve"_qs),
    };
    return swatches;
}

const QList<Gradient>& gradients()
{
    static const QList<Gradient> list{
        {0, u"Pizarrón"_qs, colors({u"#16352D", u"#24503F", u"#3C7A5E"})},
        {1, u"Océano"_qs, colors({u"#1E3C72", u"#2A7DE1", u"#6DD5FA"})},
        {2, u"Menta"_qs, colors({u"#0BA360", u"#3CBA92", u"#9BE3C3"})},
        {3, u"Atardecer"_qs, colors({u"#FF7E5F", u"#FEB47B"})},
        {4, u"Durazno"_qs, colors({u"#FBD3E9", u"#FFE5C2"})},
        {5, u"Lavanda"_qs, colors({u"#C9D6FF", u"#E2C9FF"})},
        {6, u"Bosque"_qs, colors({u"#134E5E", u"#3E8E6E", u"#71B280"})},
        {7, u"Medianoche"_qs, colors({u"#0F1020", u"#2B2D52", u"#4B3F72"})},
        {8, u"Grafito"_qs, colors({u"#2C2F36", u"#4A4F59"})},
        {9, u"Papel"_qs, colors({u"#F4F1EA", u"#E9E4D8"})},
    };
    return list;
}

} // namespace pintalux::Palette
