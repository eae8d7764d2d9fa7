// SPDX-License-Identifier: MIT
#include "controls/theme/ArrowGlyph.h"

#include "model/Annotation.h"
#include "platform/graphics/PathData.h"
#include "render/Renderer.h"

#include <QPainter>

namespace pintalux {

namespace {

constexpr QSizeF field(44, 36);

/// The renderer's jitter is made for marks of the screen's size; at this one a fixed drawing reads better.
constexpr QStringView sketch = u"M9 26.4C14.5 23.6 19.5 17.4 34.6 9.6M10.4 25C17 22.6 22.5 14.6 34 10"
                               "M26.4 9.2C29.4 9.8 31.6 9.6 35 9.2 33.4 11.6 32.2 14.2 31.4 17.4"
                               "M27.6 10.2C30.2 9.4 32.8 9.6 34.4 9.9 32.6 12 31.2 14.4 30.6 16.4";

/// The curve of an arrow on the capture.
QList<QPointF> bow(QPointF start, QPointF bend, QPointF end)
{
    Annotation mark{.start = start, .end = end};
    mark.control = bend;
    return mark.curveSamples();
}

struct Drawing {
    QPainterPath path;
    double strokeWidth;
    bool filled;
};

Drawing drawingOf(ArrowStyle style)
{
    const auto points = bow({9, 26}, {20, 18}, {35, 9});
    switch (style) {
    case ArrowStyle::sketch:
        return {pathFromData(sketch), 1.5, false};
    case ArrowStyle::outline:
        return {Renderer::arrowPath(bow({8.5, 26.5}, {20, 18}, {35.5, 8.5}), 5).value(), 1.5, false};
    case ArrowStyle::filled:
        return {Renderer::arrowPath(points, 3.4).value(), 1.1, true};
    case ArrowStyle::line:
    case ArrowStyle::double_:
        break;
    }
    return {Renderer::lineArrowPath(points, 2.6, style == ArrowStyle::double_).value(), 2.2, false};
}

} // namespace

void drawArrowGlyph(ArrowStyle style, const QRectF& rect, const QColor& color, QPainter& painter)
{
    const auto [path, strokeWidth, filled] = drawingOf(style);
    const double scale = std::min(rect.width() / field.width(), rect.height() / field.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.center() - QPointF(field.width(), field.height()) * scale / 2);
    painter.scale(scale, scale);
    painter.setPen(QPen(color, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(filled ? QBrush(color) : QBrush(Qt::NoBrush));
    painter.drawPath(path);
    painter.restore();
}

} // namespace pintalux
