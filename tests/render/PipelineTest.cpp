// SPDX-License-Identifier: MIT
#include "Scene.h"
#include "platform/graphics/Geometry.h"

using namespace pintalux::testing_scene;

namespace {

const BeautifySettings framed{.enabled = true};

bool changesNear(const QImage& image, const QImage& before, QPointF point)
{
    const QRect area(int(point.x()) - 3, int(point.y()) - 3, 7, 7);
    return !difference(image.copy(area), before.copy(area)).isNull();
}

} // namespace

TEST(Frame, ImageKeepsItsPixelsAwayFromCornersAndBorder)
{
    const auto capture = noise(200, 160);
    EXPECT_EQ(drawn(capture, {}), capture) << "without a frame";
    const auto image = drawn({capture, {}, 1}, {}, framed);
    EXPECT_EQ(image.size(), QSize(312, 272));
    const QRect inner(14, 14, 172, 132);
    EXPECT_EQ(image.copy(inner.translated(56, 56)), capture.copy(inner));
    EXPECT_NE(image.pixel(57, 57), capture.pixel(1, 1)) << "the corner is not rounded";
}

TEST(Frame, UnknownGradientLeavesTheMarginTransparentButForTheShadow)
{
    for (const int gradient : {-1, 10}) {
        auto settings = framed;
        settings.gradient = gradient;
        const auto image = drawn({plain(200, 160), {}, 1}, {}, settings);
        const QColor under = image.pixelColor(156, 56 + 160 + 10);
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
        EXPECT_GT(under.alpha(), 40);
        EXPECT_EQ(under.red(), 0);
        settings.shadow = false;
        EXPECT_EQ(drawn({plain(200, 160), {}, 1}, {}, settings).pixelColor(156, 226).alpha(), 0);
    }
}

TEST(Frame, BorderLightensTheImagesEdgeAboveTheMarks)
{
    auto cover = mark(AnnotationKind::rectangle, {-50, -50}, {300, 300}, Qt::black);
    cover.filled = true;
    auto settings = framed;
    const auto image = drawn({plain(200, 160, Qt::black), {cover}, 2}, {}, settings);
    const int margin = 112;
    EXPECT_TRUE(isColor(image, {margin + 100.0, margin}, QColor(56, 56, 56)));
    EXPECT_TRUE(isColor(image, {margin + 100.0, margin + 1.0}, QColor(56, 56, 56)));
    EXPECT_TRUE(isColor(image, {margin + 100.0, margin + 2.0}, Qt::black, 0));
    settings.border = false;
    EXPECT_TRUE(isColor(
        drawn({plain(200, 160, Qt::black), {}, 2}, {}, settings), {margin + 100.0, margin}, Qt::black, 0));
}

TEST(Pipeline, LaterMarksLieOnTopAndTheDraftAboveAll)
{
    auto below = mark(AnnotationKind::rectangle, {20, 20}, {80, 80}, Qt::red);
    below.filled = true;
    auto above = below;
    above.color = Qt::blue;
    auto draft = below;
    draft.color = Qt::green;
    auto highlight = mark(AnnotationKind::highlighter, {}, {}, Qt::yellow); // whose blending must end with it
    highlight.points = {{10, 10}, {50, 10}};
    EXPECT_TRUE(isColor(drawn(plain(100, 100), {below, highlight, above}), {50, 50}, Qt::blue, 0));
    EXPECT_TRUE(isColor(drawn({plain(100, 100), {below, above}, 1}, {.draft = draft}), {50, 50}, Qt::green));
}

TEST(Pipeline, HiddenMarksVanishButKeepTheirSelectionFrame)
{
    auto box = mark(AnnotationKind::rectangle, {40, 40}, {160, 160}, Qt::red);
    box.filled = true;
    const Document document{plain(200, 200), {box}, 1};
    auto image = drawn(document, {.hiddenID = box.id});
    EXPECT_EQ(image, plain(200, 200));
    image = drawn(document, {.hiddenID = box.id, .selectedID = box.id});
    EXPECT_TRUE(isColor(image, {100, 100}, Qt::white, 0));
    EXPECT_TRUE(isColor(image, {33, 32}, Palette::brand, 90)) << "the dashes begin at the corner";
}

TEST(Handles, SitOnThePointsOfTheMark)
{
    auto arrow = mark(AnnotationKind::arrow, {40, 150}, {260, 150});
    arrow.setCurveMidpoint({150, 60});
    auto step = mark(AnnotationKind::step, {100, 100}, {});
    auto bubble = mark(AnnotationKind::text, {60, 60}, {}, Qt::blue);
    bubble.text = u"Hola"_s;
    bubble.filled = true;
    auto picture = mark(AnnotationKind::image, {50, 50}, {200, 150});
    picture.image = plain(10, 10);
    const auto box = bubble.textBubble();
    const auto corners = picture.imageCorners();
    struct Row {
        Annotation annotation;
        QList<QPointF> handles;
    };
    for (const auto& row :
        {Row{arrow, {arrow.start, arrow.end, {150, 60}}}, Row{step, {step.suggestedPointer()}},
            Row{bubble,
                {{box.left(), box.center().y()}, {box.right(), box.center().y()}, bubble.suggestedPointer()}},
            Row{picture, {corners.begin(), corners.end()}}}) {
        const Document document{plain(320, 240, Qt::gray), {row.annotation}, 1};
        const auto before = drawn(document);
        const auto image = drawn(document, {.nodesFor = row.annotation.id, .pointScale = 1});
        for (const auto handle : row.handles)
            EXPECT_TRUE(changesNear(image, before, handle)) << handle.x() << "," << handle.y();
    }
}

TEST(CropOverlay, DimsTheRestAndOnlyTheRest)
{
    const Document document{plain(300, 200), {}, 1};
    const auto image = drawn(document, {.crop = QRectF(60, 50, 150, 90)});
    EXPECT_TRUE(isColor(image, {20, 20}, QColor(127, 127, 127)));
    EXPECT_TRUE(isColor(image, {280, 190}, QColor(127, 127, 127)));
    EXPECT_TRUE(isColor(image, {85, 65}, Qt::white, 0));
    const auto whole = drawn({plain(300, 200, Qt::black), {}, 1}, {.crop = QRectF(0, 0, 300, 200)});
    EXPECT_TRUE(isColor(whole, {30, 30}, Qt::black, 0));
    EXPECT_TRUE(isColor(whole, {10, 0}, Qt::white, 10)) << "corner bracket";
    EXPECT_TRUE(isColor(whole, {100, 20}, QColor(45, 45, 45), 12)) << "guide at a third";
}
