// SPDX-License-Identifier: MIT
#include "model/Annotation.h"

#include "platform/graphics/Color.h"
#include "platform/graphics/Geometry.h"

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

bool hitsPolyline(const QList<QPointF>& points, QPointF point, double tolerance)
{
    if (points.size() == 1)
        return distance(point, points.front()) <= tolerance;
    for (qsizetype i = 1; i < points.size(); ++i)
        if (distanceToSegment(point, points[i - 1], points[i]) <= tolerance)
            return true;
    return false;
}

} // namespace

bool Annotation::isCurvable() const { return kind == AnnotationKind::arrow || kind == AnnotationKind::line; }

bool Annotation::supportsPointer() const
{
    return kind == AnnotationKind::step || (kind == AnnotationKind::text && filled);
}

bool Annotation::hasNodes() const
{
    return isCurvable() || supportsPointer() || kind == AnnotationKind::image;
}

QRectF Annotation::rect() const { return united(QRectF(start, QSizeF(0, 0)), end); }

std::array<QPointF, 4> Annotation::imageCorners() const
{
    const auto r = rect();
    return {r.topLeft(), r.topRight(), r.bottomLeft(), r.bottomRight()};
}

QPointF Annotation::effectiveControl() const { return control.value_or(midpoint(start, end)); }

QPointF Annotation::curveMidpoint() const { return 0.25 * start + 0.5 * effectiveControl() + 0.25 * end; }

void Annotation::setCurveMidpoint(QPointF point)
{
    const auto chordMiddle = midpoint(start, end);
    const auto bent = 2 * point - chordMiddle;
    if (distance(bent, chordMiddle) < lineWidth * 0.5)
        control.reset();
    else
        control = bent;
}

QList<QPointF> Annotation::curveSamples(int count) const
{
    if (count <= 0)
        return {start};
    const auto bend = effectiveControl();
    QList<QPointF> samples;
    samples.reserve(count + 1);
    for (int i = 0; i <= count; ++i) {
        const double t = double(i) / count;
        const double u = 1 - t;
        samples << u * u * start + 2 * t * u * bend + t * t * end;
    }
    return samples;
}

TextAttributes Annotation::textAttributes() const
{
    const auto font = handwritten
        ? Draw::handwrittenFont(fontSize * 1.08)
        : Draw::roundedFont(fontSize, filled ? FontWeight::bold : FontWeight::semibold);
    return {font, filled ? contrasting(color) : color, 1.05};
}

QPointF Annotation::textPadding() const
{
    return filled ? QPointF(fontSize * 0.62, fontSize * 0.3) : QPointF(0, 0);
}

std::optional<double> Annotation::wrapWidth() const
{
    if (!boxWidth)
        return std::nullopt;
    return std::max(fontSize, *boxWidth - 2 * textPadding().x());
}

TextBlock Annotation::textBlock() const
{
    return {text.isEmpty() ? u" "_s : text, textAttributes(), wrapWidth()};
}

QSizeF Annotation::textSize() const
{
    const auto measured = textBlock().size();
    return {wrapWidth().value_or(std::ceil(measured.width())), std::ceil(measured.height())};
}

QRectF Annotation::textBubble() const
{
    const auto padding = textPadding();
    const auto size = textSize();
    return {start - padding, QSizeF(size.width() + 2 * padding.x(), size.height() + 2 * padding.y())};
}

bool Annotation::hasPointer() const
{
    if (!pointer || !supportsPointer())
        return false;
    if (kind == AnnotationKind::step)
        return distance(*pointer, start) > stepRadius() * 1.2;
    return !containsPoint(expanded(textBubble(), fontSize * 0.3), *pointer);
}

QPointF Annotation::suggestedPointer() const
{
    if (kind == AnnotationKind::step)
        return start + QPointF(1.5, 1.5) * stepRadius();
    const auto bubble = textBubble();
    return {bubble.left() + 0.7 * bubble.width(), bubble.bottom() + 1.8 * fontSize};
}

QPointF Annotation::pointerNode() const { return hasPointer() ? *pointer : suggestedPointer(); }

QRectF Annotation::bounds() const
{
    const auto withPointer
        = [this](const QRectF& body) { return hasPointer() ? united(body, *pointer) : body; };
    switch (kind) {
    case AnnotationKind::arrow:
    case AnnotationKind::line:
        return expanded(boundsOf(curveSamples(24)), 2 * lineWidth);
    case AnnotationKind::pen:
    case AnnotationKind::highlighter:
        return points.isEmpty() ? QRectF() : expanded(boundsOf(points), 2 * lineWidth);
    case AnnotationKind::text:
        return withPointer(textBubble());
    case AnnotationKind::step:
        return withPointer(expanded(QRectF(start, QSizeF(0, 0)), stepRadius()));
    case AnnotationKind::rectangle:
    case AnnotationKind::ellipse:
    case AnnotationKind::blur:
    case AnnotationKind::image:
        break;
    }
    return expanded(rect(), 2 * lineWidth);
}

bool Annotation::hitTestFrame(QPointF point, double tolerance) const
{
    if (filled)
        return containsPoint(expanded(rect(), tolerance), point);
    const double reach = tolerance + lineWidth;
    const auto inner = expanded(rect(), -reach);
    return containsPoint(expanded(rect(), reach), point) && (inner.isEmpty() || !containsPoint(inner, point));
}

bool Annotation::hitTest(QPointF point, double tolerance) const
{
    switch (kind) {
    case AnnotationKind::rectangle:
    case AnnotationKind::ellipse:
        return hitTestFrame(point, tolerance);
    case AnnotationKind::arrow:
    case AnnotationKind::line:
        return hitsPolyline(curveSamples(32), point, std::max(tolerance, 2 * lineWidth));
    case AnnotationKind::pen:
        return hitsPolyline(points, point, tolerance + lineWidth);
    case AnnotationKind::highlighter:
        return hitsPolyline(points, point, tolerance + 2.5 * lineWidth);
    case AnnotationKind::text:
    case AnnotationKind::step:
    case AnnotationKind::blur:
    case AnnotationKind::image:
        break;
    }
    return containsPoint(expanded(bounds(), tolerance), point);
}

void Annotation::offset(QPointF by)
{
    start += by;
    end += by;
    for (auto& point : points)
        point += by;
    if (control)
        *control += by;
    if (pointer)
        *pointer += by;
}

} // namespace pintalux
