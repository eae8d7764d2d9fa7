// SPDX-License-Identifier: MIT
#include "editor/bars/InstrumentDrawing.h"

#include "platform/graphics/Color.h"
#include "platform/graphics/GraphicsContext.h"
#include "platform/graphics/PathData.h"

#include <QLinearGradient>

#include <vector>

namespace pintalux::InstrumentDrawing {

namespace {

constexpr double outlineWidth = 0.8;
constexpr double darkTint = 0.25; ///< below this luminance a tint does not show on a dark ground

struct Part {
    QPainterPath shape;
    QColor color;
};

/// What an instrument is made of: areas with an outline, and lines printed on them.
struct Instrument {
    std::vector<Part> parts;
    std::vector<Part> prints;
};

QPainterPath box(double left, double top, double right, double bottom)
{
    QPainterPath path;
    path.addRect(QRectF(QPointF(left, top), QPointF(right, bottom)));
    return path;
}

Instrument pencil(const QColor& tint)
{
    const auto edge = withAlpha(Qt::black, 0.13);
    return {
        {{pathFromData(u"M6 19 11.2 7.4H14.8L20 19V60H6Z"), {0xEB, 0xD3, 0xA8}},
            {pathFromData(u"M11 7.9 12.1 3.6Q13 1.2 13.9 3.6L15 7.9 13 8.9Z"), tint},
            {pathFromData(u"M6 19.4Q8.3 16.6 10.6 19.4 13 16.6 15.4 19.4 17.7 16.6 20 19.4V60H6Z"), tint}},
        {{box(10.2, 19, 11, height), edge}, {box(15, 19, 15.8, height), edge}}};
}

Instrument highlighter(const QColor& tint)
{
    return {{{pathFromData(u"M9.2 11.4V5.6Q9.2 4.6 10 4.1L15.6 1.1Q16.8 .6 16.8 1.9V11.4Z"), tint},
                {pathFromData(u"M8 10.6H18Q18.8 10.6 19.1 11.4L21.2 17.6H4.8L6.9 11.4Q7.2 10.6 8 10.6Z"),
                    {0x4A, 0x47, 0x57}},
                {pathFromData(u"M4 17.6H22Q23 17.6 23 18.6V60H3V18.6Q3 17.6 4 17.6Z"), {0xF4, 0xF2, 0xF8}}},
        {{box(3, 25.4, 23, 38), tint}}};
}

Instrument eraser(const QColor& tint)
{
    return {{{pathFromData(u"M4.4 24V8.6Q4.4 3 10 3H13.6Q21.6 3 21.6 11V24Z"), {0xF6, 0xD5, 0xDA}},
                {pathFromData(u"M3.2 21H22.8V60H3.2Z"), tint}},
        {{box(3.2, 25.6, 22.8, 28.4), withAlpha(Qt::white, 0.9)}}};
}

/// Light from the left makes the body round.
QLinearGradient sheen(const QRectF& silhouette)
{
    QLinearGradient light(silhouette.topLeft(), silhouette.topRight());
    light.setColorAt(0, withAlpha(Qt::white, 0.42));
    light.setColorAt(0.34, withAlpha(Qt::white, 0.06));
    light.setColorAt(0.62, withAlpha(Qt::black, 0.02));
    light.setColorAt(1, withAlpha(Qt::black, 0.26));
    return light;
}

} // namespace

void draw(Tool tool, const QColor& tint, bool dark, GraphicsContext& context)
{
    Instrument instrument;
    if (tool == Tool::pen)
        instrument = pencil(tint);
    else if (tool == Tool::highlighter)
        instrument = highlighter(tint);
    else if (tool == Tool::eraser)
        instrument = eraser(tint);
    else
        return;

    QPainterPath silhouette;
    for (const auto& part : instrument.parts)
        silhouette = silhouette.united(part.shape);
    const double scale = context.deviceScale();
    {
        const GraphicsContext::Saved saved(context);
        context.setShadow({withAlpha(Qt::black, 0.22), {0, scale}, 3 * scale});
        context.fill(silhouette, instrument.parts.front().color);
    }
    for (const auto& [shape, color] : instrument.parts)
        context.fill(shape, color);
    for (const auto& [shape, color] : instrument.prints)
        context.fill(shape, color);
    context.fill(silhouette, sheen(silhouette.boundingRect()));
    const bool lost = dark && luminance(tint) < darkTint;
    for (const auto& [shape, color] : instrument.parts)
        context.stroke(shape,
            {lost && color == tint ? withAlpha(Qt::white, 0.34) : withAlpha(Qt::black, dark ? 0.22 : 0.18),
                outlineWidth});
}

} // namespace pintalux::InstrumentDrawing
