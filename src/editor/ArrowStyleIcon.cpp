#include "editor/ArrowStyleIcon.h"

#include "app/Theme.h"
#include "controls/ControlPainting.h"
#include "model/Annotation.h"
#include "model/Geometry.h"
#include "platform/PathData.h"
#include "render/Draw.h"
#include "render/Renderer.h"

#include <QPainter>

namespace pintalux {

namespace {

constexpr double ringWidth = 1.5;
/// The renderer's jitter is made for marks of the screen's size; at this one a fixed drawing reads better.
constexpr QStringView sketch
    = u"M9 26.4C14.5 23.6 19.5 17.4 34.6 9.6M10.4 25C17 22.6 22.5 14.6 34 10M26.4 9.2C29.4 9.8 31.6 9.6 35 "
      u"9.2"
      "C33.4 11.6 32.2 14.2 31.4 17.4M27.6 10.2C30.2 9.4 32.8 9.6 34.4 9.9C32.6 12 31.2 14.4 30.6 16.4";

/// The curve that the previews of the other styles follow.
QList<QPointF> samples(QPointF start, QPointF end)
{
    Annotation mark{.start = start, .end = end};
    mark.control = QPointF(20, 18);
    return mark.curveSamples();
}

} // namespace

ArrowStyleIcon::ArrowStyleIcon(ArrowStyle style, QWidget* parent)
    : ChromeButton(title(style), Theme::toolRadius, parent)
    , shownStyle(style)
{
    setFixedSize(box);
}

void ArrowStyleIcon::draw(ArrowStyle style, const QColor& color, QPainter& painter)
{
    GraphicsContext context(painter);
    const auto points = samples({9, 26}, {35, 9});
    switch (style) {
    case ArrowStyle::sketch:
        context.stroke(pathFromData(sketch), {color, 1.5});
        break;
    case ArrowStyle::outline:
        if (const auto path = Renderer::arrowPath(samples({8.5, 26.5}, {35.5, 8.5}), 5))
            context.stroke(*path, {color, 1.5});
        break;
    case ArrowStyle::filled:
        if (const auto path = Renderer::arrowPath(points, 3.4))
            context.fillAndStroke(*path, color, {color, 1.1});
        break;
    case ArrowStyle::line:
    case ArrowStyle::double_:
        if (const auto path = Renderer::lineArrowPath(points, 2.6, style == ArrowStyle::double_))
            context.stroke(*path, {color, 2.2});
        break;
    }
}

void ArrowStyleIcon::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF whole(rect());
    const auto path = Draw::roundedRect(whole, cornerRadius());
    const double chosen = markedAmount();
    if (chosen > 0) {
        painter.fillPath(path, faded(theme().selected, chosen));
        painter.setPen(QPen(faded(theme().brand, chosen), ringWidth));
        painter.drawPath(Draw::roundedRect(expanded(whole, -ringWidth / 2), cornerRadius() - ringWidth / 2));
        painter.setPen(Qt::NoPen);
    }
    fillForPointer(painter, path);
    draw(shownStyle, mixed(theme().icon, theme().onSelected, chosen), painter);
}

} // namespace pintalux
