// SPDX-License-Identifier: MIT
#include "Scene.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Geometry.h"

using namespace pintalux::testing_scene;

TEST(Marks, TwiceTheScaleIsTheSamePictureTwiceAsLarge)
{
    const auto scaled = [](Annotation annotation, double by) {
        annotation.start *= by;
        annotation.end *= by;
        for (auto& point : annotation.points)
            point *= by;
        annotation.lineWidth *= by;
        annotation.fontSize *= by;
        if (annotation.control)
            *annotation.control *= by;
        if (annotation.pointer)
            *annotation.pointer *= by;
        if (annotation.boxWidth)
            *annotation.boxWidth *= by;
        return annotation;
    };
    QList<Annotation> marks;
    for (const auto style : allCases<ArrowStyle>()) {
        marks << mark(AnnotationKind::arrow, {20, 100}, {150, 60});
        marks.back().arrowStyle = style;
        marks << marks.back();
        marks.back().control = QPointF(60, 160);
    }
    for (const auto kind : {AnnotationKind::rectangle, AnnotationKind::ellipse, AnnotationKind::line}) {
        marks << mark(kind, {20, 30}, {150, 120});
        marks << marks.back();
        marks.back().filled = true;
        marks.back().control = QPointF(80, 10);
    }
    for (const auto kind : {AnnotationKind::pen, AnnotationKind::highlighter}) {
        marks << mark(kind, {}, {});
        marks.back().points = {{20, 20}, {60, 90}, {120, 40}, {150, 120}};
    }
    for (const bool filled : {false, true}) {
        for (const bool pointing : {false, true}) {
            marks << mark(AnnotationKind::text, {30, 40}, {}, filled ? Qt::blue : Qt::red);
            marks.back().text = u"Ñandú"_s;
            marks.back().filled = filled;
            marks.back().handwritten = pointing;
            if (pointing)
                marks.back().pointer = QPointF(120, 130);
        }
    }
    marks << mark(AnnotationKind::step, {60, 60}, {});
    marks << marks.back();
    marks.back().pointer = QPointF(140, 120);
    marks << mark(AnnotationKind::image, {30, 30}, {130, 110});
    marks.back().image = plain(40, 40, Qt::darkGreen);

    for (const auto& annotation : marks) {
        const auto once = drawn(plain(170, 150), {annotation}, 1);
        const auto twice = drawn(plain(340, 300), {scaled(annotation, 2)}, 2);
        EXPECT_FALSE(difference(once, plain(170, 150)).isNull()) << int(annotation.kind);
        const auto halved = twice.scaled(170, 150, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        // Edges are anti-aliased on another grid; nothing may differ by more than such an edge.
        double sum = 0;
        test::countPixels(once, [&](int x, int y) {
            return sum += std::abs(qGray(once.pixel(x, y)) - qGray(halved.pixel(x, y)));
        });
        EXPECT_LT(sum / (170 * 150), 1.0) << "kind " << int(annotation.kind);
    }
}

TEST(Highlighter, DarkPixelsStayDarkAndEndsAreSquare)
{
    auto capture = plain(120, 80);
    QPainter(&capture).fillRect(50, 0, 20, 80, Qt::black);
    auto stroke = mark(AnnotationKind::highlighter, {}, {}, QColor(255, 255, 0), 4); // 20 wide
    stroke.points = {{30, 40}, {90, 40}};
    const auto image = drawn(capture, {stroke});
    EXPECT_TRUE(isColor(image, {60, 40}, Qt::black, 0));
    EXPECT_TRUE(isColor(image, {40, 40}, QColor(255, 255, 148)));
    EXPECT_TRUE(isColor(image, {21, 31}, QColor(255, 255, 148))); // the square cap's corner
    EXPECT_TRUE(isColor(image, {18, 40}, Qt::white, 0));
}

TEST(Text, TheGlowIsWhiteBehindDarkAndDarkBehindLight)
{
    const auto extremes = [](const QColor& ink) {
        auto label = mark(AnnotationKind::text, {20, 20}, {}, ink);
        label.text = u"IIII"_s;
        const auto image = drawn(plain(140, 80, QColor(128, 128, 128)), {label}, 2);
        std::pair found(255, 0);
        test::countPixels(image, [&](int x, int y) {
            const int gray = qGray(image.pixel(x, y));
            found = {std::min(found.first, gray), std::max(found.second, gray)};
            return true;
        });
        return found;
    };
    EXPECT_GT(extremes(Qt::black).second, 160);
    EXPECT_LT(extremes(Qt::white).first, 100);
}

TEST(Callout, HasAWhiteRimAndNoTailWithoutAPointer)
{
    auto bubble = mark(AnnotationKind::text, {60, 60}, {}, Qt::blue);
    bubble.text = u"Hola"_s;
    bubble.filled = true;
    const auto box = bubble.textBubble();
    auto image = drawn(plain(240, 200, Qt::gray), {bubble}, 1);
    EXPECT_TRUE(isColor(image, {box.center().x(), box.bottom() - 4}, Qt::blue));
    EXPECT_TRUE(isColor(image, {box.center().x(), box.top() - 1}, Qt::white, 20));
    EXPECT_FALSE(isColor(image, {box.center().x(), box.bottom() + 20}, Qt::blue, 60));

    bubble.pointer = QPointF(box.center().x(), 180);
    image = drawn(plain(240, 200, Qt::gray), {bubble}, 1);
    EXPECT_TRUE(isColor(image, {box.center().x(), box.bottom() + 20}, Qt::blue, 10));
    EXPECT_LT(difference(image, plain(240, 200, Qt::gray), 40).bottom(), 185);

    bubble.text.clear();
    EXPECT_TRUE(difference(drawn(plain(240, 200), {bubble}), plain(240, 200)).isNull());
}

TEST(Callout, ReachesItsTipAndHasNoHoles)
{
    // The tail overlaps the body; by parity alone their common part would fall out.
    for (int angle = 0; angle < 360; angle += 7) {
        const auto tip = QPointF(200, 130) + polar(angle * M_PI / 180, 220);
        const auto shape = Renderer::calloutShape({100, 100, 200, 60}, tip, 30);
        const auto disc = Renderer::calloutPath({200, 130}, 40, tip);
        EXPECT_TRUE(expanded(shape.boundingRect(), 0.01).contains(tip)) << angle;
        EXPECT_TRUE(expanded(disc.boundingRect(), 0.01).contains(tip)) << angle;
        for (int x = 112; x < 290; x += 6)
            for (const int y : {102, 130, 158})
                EXPECT_TRUE(shape.contains(QPointF(x, y))) << angle << " at " << x << "," << y;
        for (int x = 164; x < 236; x += 4)
            EXPECT_TRUE(disc.contains(QPointF(x, 130))) << angle << " at " << x;
    }
}

TEST(Callout, TheLightFromAboveCrossesIntoATailAtTheSide)
{
    auto bubble = mark(AnnotationKind::text, {100, 40}, {}, Qt::darkBlue);
    bubble.text = u"Hola"_s;
    bubble.filled = true;
    const auto box = bubble.textBubble();
    for (const double side : {box.left(), box.right()}) {
        const double outward = side < box.center().x() ? -1 : 1;
        bubble.pointer = QPointF(side + 60 * outward, box.center().y());
        const auto image = drawn(plain(320, 140, Qt::gray), {bubble}, 1);
        const double y = box.center().y() - 5;
        EXPECT_TRUE(isColor(
            image, {side + 3 * outward, y}, image.pixelColor(QPointF(side - 5 * outward, y).toPoint())))
            << outward;
    }
}

TEST(Step, TheNumberSitsInTheMiddle)
{
    auto step = mark(AnnotationKind::step, {60, 60}, {}, Qt::red, 10);
    step.number = 8;
    const auto image = drawn(plain(120, 120), {step});
    QRect ink;
    const double reach = step.stepRadius() * 0.8;
    for (int y = 0; y < 120; ++y)
        for (int x = 0; x < 120; ++x)
            if (distance({x + 0.5, y + 0.5}, {60, 60}) < reach && qGreen(image.pixel(x, y)) > 200)
                ink |= QRect(x, y, 1, 1);
    EXPECT_NEAR(QRectF(ink).center().x(), 60, 1);
    EXPECT_NEAR(QRectF(ink).center().y(), 60, 2);
    EXPECT_GT(ink.height(), step.stepRadius() * 0.6);
}
