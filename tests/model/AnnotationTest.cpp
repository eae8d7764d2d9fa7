// SPDX-License-Identifier: MIT
#include "model/Annotation.h"

#include "platform/graphics/Geometry.h"

namespace {

Annotation mark(AnnotationKind kind, QPointF start, QPointF end, double lineWidth = 4)
{
    return {.kind = kind, .start = start, .end = end, .color = Qt::red, .lineWidth = lineWidth};
}

Annotation text(const QString& words, bool filled = false, double fontSize = 32)
{
    auto annotation = mark(AnnotationKind::text, {100, 100}, {100, 100});
    annotation.text = words;
    annotation.filled = filled;
    annotation.fontSize = fontSize;
    return annotation;
}

} // namespace

TEST(AnnotationCurve, PassesThroughTheMidpointItWasGiven)
{
    auto arrow = mark(AnnotationKind::arrow, {0, 0}, {100, 0});
    arrow.setCurveMidpoint({60, 40});
    EXPECT_EQ(arrow.curveMidpoint(), QPointF(60, 40));
    const auto samples = arrow.curveSamples(2);
    EXPECT_EQ(samples, (QList<QPointF>{{0, 0}, {60, 40}, {100, 0}}));
}

TEST(AnnotationCurve, SnapsStraightOnlyNearTheChord)
{
    auto arrow = mark(AnnotationKind::arrow, {0, 0}, {100, 0}, 10);
    arrow.setCurveMidpoint({50, 2.4}); // the control point comes to 4.8 of the chord, under half the width
    EXPECT_FALSE(arrow.control);
    EXPECT_EQ(arrow.curveMidpoint(), QPointF(50, 0));
    arrow.setCurveMidpoint({50, 2.6});
    EXPECT_TRUE(arrow.control);
}

TEST(AnnotationPointer, TooCloseATipIsKeptButDoesNotShow)
{
    auto step = mark(AnnotationKind::step, {0, 0}, {}, 5);
    step.pointer = {step.stepRadius() * 1.19, 0};
    EXPECT_FALSE(step.hasPointer());
    EXPECT_TRUE(step.pointer);
    EXPECT_EQ(step.pointerNode(), step.suggestedPointer());
    step.pointer = {step.stepRadius() * 1.21, 0};
    EXPECT_TRUE(step.hasPointer());

    auto bubble = text(u"hola"_s, true);
    const auto box = bubble.textBubble();
    bubble.pointer = {box.center().x(), box.bottom() + 0.29 * 32};
    EXPECT_FALSE(bubble.hasPointer());
    bubble.pointer = {box.center().x(), box.bottom() + 0.3 * 32}; // the maximum edge is outside
    EXPECT_TRUE(bubble.hasPointer());
    bubble.filled = false;
    EXPECT_FALSE(bubble.hasPointer());
}

TEST(AnnotationText, BoxWidthWrapsAndNeverGoesBelowTheFontSize)
{
    auto bubble = text(u"una frase que no cabe en una sola línea"_s, true);
    const auto oneLine = bubble.textSize();
    bubble.boxWidth = oneLine.width() / 2;
    EXPECT_DOUBLE_EQ(bubble.textSize().width(), oneLine.width() / 2 - 2 * 0.62 * 32);
    EXPECT_GT(bubble.textSize().height(), 1.9 * oneLine.height());
    EXPECT_DOUBLE_EQ(bubble.textBubble().width(), oneLine.width() / 2);
    bubble.boxWidth = 1;
    EXPECT_DOUBLE_EQ(bubble.textSize().width(), 32);
    EXPECT_EQ(text(u""_s).textSize().height(), text(u"Áy"_s).textSize().height()) << "empty is one line high";
}

TEST(AnnotationHitTest, DecidesByKind)
{
    struct Row {
        const char* what;
        Annotation annotation;
        QPointF point;
        bool hit;
    };
    auto filled = mark(AnnotationKind::rectangle, {0, 0}, {200, 200});
    filled.filled = true;
    auto pen = mark(AnnotationKind::pen, {}, {});
    pen.points = {{0, 0}, {100, 0}};
    auto dot = pen;
    dot.points = {{50, 50}};
    auto highlighter = pen;
    highlighter.kind = AnnotationKind::highlighter;
    const auto frame = mark(AnnotationKind::rectangle, {0, 0}, {200, 200}); // reaches 6 + 4 either way
    const auto small = mark(AnnotationKind::ellipse, {0, 0}, {20, 20});
    const auto line = mark(AnnotationKind::line, {0, 0}, {100, 0});
    for (const auto& row : {
             Row{"centre of a hollow frame", frame, {100, 100}, false},
             Row{"edge of a hollow frame", frame, {9.9, 100}, true},
             Row{"inside of a frame's reach", frame, {10.1, 100}, false},
             Row{"minimum edge belongs to it", frame, {-10, 100}, true},
             Row{"maximum edge does not", frame, {210, 100}, false},
             Row{"a frame with no inside left is all edge", small, {10, 10}, true},
             Row{"filled centre", filled, {100, 100}, true},
             Row{"line within twice its width", line, {50, 8}, true},
             Row{"past the end of a line", line, {108.1, 0}, false},
             Row{"pen beyond", pen, {50, 10.1}, false},
             Row{"highlighter beyond", highlighter, {50, 16.1}, false},
             Row{"single point", dot, {50, 60}, true},
             Row{"no points", mark(AnnotationKind::pen, {}, {}), {0, 0}, false},
             Row{"blur is its bounds", mark(AnnotationKind::blur, {0, 0}, {50, 50}), {-13.9, 20}, true},
         })
        EXPECT_EQ(row.annotation.hitTest(row.point, 6), row.hit) << row.what;
}

TEST(Annotation, MovingTakesEveryPointAlong)
{
    auto arrow = mark(AnnotationKind::arrow, {0, 0}, {10, 0});
    arrow.points = {{1, 1}};
    arrow.control = {5, 5};
    arrow.pointer = {7, 7};
    arrow.offset({3, -2});
    EXPECT_EQ(arrow.start, QPointF(3, -2));
    EXPECT_EQ(arrow.end, QPointF(13, -2));
    EXPECT_EQ(arrow.points, QList<QPointF>({{4, -1}}));
    EXPECT_EQ(arrow.control, QPointF(8, 3));
    EXPECT_EQ(arrow.pointer, QPointF(10, 5));
}
