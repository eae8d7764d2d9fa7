// SPDX-License-Identifier: MIT
#pragma once

#include "model/Tool.h"
#include "platform/graphics/TextBlock.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QUuid>

#include <array>
#include <optional>

namespace pintalux {

/// One mark on a capture: a plain value with every field that any kind of mark needs; `kind` says which
/// matter.
///
/// Coordinates and lengths are document pixels: origin at the image's top-left corner, y downward.
struct Annotation {
    QUuid id = QUuid::createUuid(); ///< identity; also decides the jitter of a sketch arrow
    AnnotationKind kind = AnnotationKind::arrow;
    QPointF start{};         ///< first corner, tail, top-left of the text, centre of the step
    QPointF end{};           ///< opposite corner or arrow head
    QList<QPointF> points{}; ///< pen, highlighter: the stroke's samples
    QColor color{};
    double lineWidth = 0; ///< stroke width; also sizes arrow heads and step discs
    bool filled = false;  ///< rectangle, ellipse: fill instead of stroke; text: callout bubble
    QString text{};
    double fontSize = 32; ///< text; also sizes step discs
    int number = 1;       ///< the number a step shows
    BlurStyle blurStyle = BlurStyle::pixelate;
    QImage image{}; ///< the inserted picture; null for none
    ArrowStyle arrowStyle = ArrowStyle::filled;
    bool handwritten = false;         ///< text: handwriting font
    std::optional<QPointF> control{}; ///< arrow, line: control point of the quadratic curve; none: straight
    std::optional<QPointF> pointer{}; ///< step, callout: tip of the tail
    std::optional<double> boxWidth{}; ///< text: fixed width of the box, bubble padding included

    bool operator==(const Annotation&) const = default;

    /// Can be bent into a curve.
    bool isCurvable() const;
    /// Can have a tail that points somewhere.
    bool supportsPointer() const;
    /// Shows handles to drag in the editor.
    bool hasNodes() const;

    /// The rectangle spanned by `start` and `end`.
    QRectF rect() const;
    /// Corners of `rect`: top left, top right, bottom left, bottom right.
    std::array<QPointF, 4> imageCorners() const;
    double stepRadius() const { return lineWidth * 1.6 + fontSize * 0.42; }

    /// The control point that is drawn with: `control`, or the chord's middle.
    QPointF effectiveControl() const;
    /// The curve's point at half its parameter.
    QPointF curveMidpoint() const;
    /// Bends the curve so that its midpoint is `point`. Straightens it when the control point would come
    /// within half a line width of the chord's middle.
    void setCurveMidpoint(QPointF point);
    /// `count` + 1 points of the curve from `start` to `end`, evenly spaced in the parameter. 0 gives `start`
    /// alone.
    QList<QPointF> curveSamples(int count = 48) const;

    TextAttributes textAttributes() const;
    /// Space between the text and the bubble's edge; zero for plain text.
    QPointF textPadding() const;
    /// Where the lines of the text break; none: only at line feeds.
    std::optional<double> wrapWidth() const;
    /// The laid-out text: what is measured is what is drawn.
    TextBlock textBlock() const;
    /// Size of the text in whole pixels (the wrapping width where one is set). An empty text measures as a
    /// space.
    QSizeF textSize() const;
    /// The callout's bubble; for plain text the text's own box.
    QRectF textBubble() const;

    /// Whether the tail shows: its tip is far enough outside the disc or bubble.
    bool hasPointer() const;
    /// Where a new tail goes when a person first pulls one out.
    QPointF suggestedPointer() const;
    /// Where the tail's handle sits.
    QPointF pointerNode() const;

    /// The rectangle the mark occupies. The null rectangle for a stroke without samples.
    QRectF bounds() const;
    /// Whether a click at `point` means this mark. `tolerance` is the slack, in document pixels.
    bool hitTest(QPointF point, double tolerance) const;
    /// Moves the whole mark.
    void offset(QPointF by);

private:
    bool isFreehand() const { return kind == AnnotationKind::pen || kind == AnnotationKind::highlighter; }
    bool hitTestFrame(QPointF point, double tolerance) const;
};

} // namespace pintalux
