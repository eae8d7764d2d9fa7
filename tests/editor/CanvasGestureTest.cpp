// SPDX-License-Identifier: MIT
#include "CanvasStage.h"
#include "platform/graphics/Geometry.h"

namespace {

/// The same rules at every pixel scale of the capture; lengths in the tests are points of the capture.
struct CanvasGestureTest : CanvasStage, testing::WithParamInterface<double> {
    void SetUp() override { open(GetParam()); }

    /// A document point from points of the capture.
    QPointF at(double x, double y) const { return QPointF(x, y) * pixelScale(); }
    /// Document pixels from view points.
    double viewPoints(double length) const { return length / scale(); }

    Annotation placeArrow(QPointF from, QPointF to)
    {
        return place({.kind = Kind::arrow, .start = from, .end = to, .color = Qt::red, .lineWidth = 2});
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(PixelScales, CanvasGestureTest, testing::Values(1, 1.25, 1.5, 2, 3));

TEST_P(CanvasGestureTest, DraftsAreKeptFromThreePointsOn)
{
    struct Case {
        Tool tool;
        QPointF by; ///< points
        bool kept;
        bool selected;
    };
    for (const auto& [tool, by, kept, selected] : {
             Case{Tool::arrow, {2.05, 2.05}, false, false},
             Case{Tool::arrow, {2.2, 2.2}, true, true},
             Case{Tool::rectangle, {40, 2.9}, false, false},
             Case{Tool::rectangle, {-3.1, -3.1}, true, false},
             Case{Tool::blur, {30, 30}, true, false},
         }) {
        open(GetParam());
        model->setTool(tool);
        gesture(at(100, 100), at(100, 100) + by * pixelScale());
        EXPECT_EQ(marks().size(), kept) << int(tool) << " by " << by.x();
        EXPECT_EQ(model->undoCount(), kept);
        EXPECT_EQ(model->selectedID().has_value(), selected);
        EXPECT_FALSE(view->debugState().contains(u"draft=true"_s));
    }
}

TEST_P(CanvasGestureTest, ShiftSnapsDraftsTo45DegreesOrSquares)
{
    model->setTool(Tool::line);
    gesture(at(100, 100), at(150, 110), Qt::ShiftModifier);
    expectNear(marks().last().end, at(100 + std::hypot(50, 10), 100), 0.001);

    model->setTool(Tool::ellipse);
    gesture(at(300, 300), at(280, 350), Qt::ShiftModifier);
    expectNear(marks().last().end, at(250, 350), 0.001);

    model->setTool(Tool::highlighter);
    gesture(at(200, 100), at(203, 160), Qt::ShiftModifier);
    ASSERT_EQ(marks().last().points.size(), 2);
    expectNear(marks().last().points[1], at(200, 100 + std::hypot(3, 60)), 0.001);
}

TEST_P(CanvasGestureTest, FreehandKeepsPointsFartherApartThanOneAndAHalf)
{
    model->setTool(Tool::pen);
    press(at(100, 100));
    for (double x = 101; x <= 110; ++x) // every second one is 2 points from the last that was kept
        drag(at(x, 100));
    release();
    ASSERT_EQ(marks().size(), 1);
    EXPECT_EQ(marks().first().points.size(), 6);
    EXPECT_EQ(model->undoCount(), 1);

    click(at(200, 200));
    EXPECT_EQ(marks().last().points.size(), 1) << "a click leaves a dot";

    // The toolkit would give a slow machine the last of the movements that wait, and with it a straight line.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents);
    press(at(100, 200));
    EXPECT_FALSE(QCoreApplication::testAttribute(Qt::AA_CompressHighFrequencyEvents));
    release(at(100, 200));
    EXPECT_TRUE(QCoreApplication::testAttribute(Qt::AA_CompressHighFrequencyEvents));
}

TEST_P(CanvasGestureTest, MovingIsOneStepAndJitterNone)
{
    for (const auto tool : {Tool::select, Tool::arrow}) {
        open(GetParam());
        const auto arrow = placeArrow(at(100, 100), at(300, 100));
        model->setTool(tool);
        const auto onBody = at(130, 100);
        const auto jittered = view->viewPoint(onBody) + QPointF(1.9, 0);
        press(onBody);
        dragView(jittered);
        releaseView(jittered);
        EXPECT_EQ(newSteps(), 0);
        EXPECT_EQ(marks().first(), arrow) << "what leaves no step changes nothing";

        gesture(onBody, onBody + at(20, 30));
        EXPECT_EQ(newSteps(), 1);
        expectNear(marks().first().start, at(120, 130), 0.001);
        expectNear(marks().first().end, at(320, 130), 0.001);

        press(onBody + at(20, 30));
        drag(onBody);
        drag(onBody + at(20, 30));
        release();
        expectNear(marks().first().start, at(120, 130), 0.001);
        while (model->undoCount() > steps)
            model->undo();
        EXPECT_EQ(marks().first(), arrow);
    }
}

TEST_P(CanvasGestureTest, HitSlackIsSixViewPointsAndHandlesReachTen)
{
    const auto box = place({.kind = Kind::blur, .start = at(200, 100), .end = at(300, 200)});
    model->setTool(Tool::select);
    const double edge = box.bounds().left();
    click({edge - viewPoints(6.5), at(0, 150).y()});
    EXPECT_FALSE(model->selectedID());
    click({edge - viewPoints(5.5), at(0, 150).y()});
    EXPECT_EQ(model->selectedID(), box.id);

    const auto arrow = placeArrow(at(100, 300), at(400, 300));
    for (const auto& [off, taken] : {std::pair(9.5, true), std::pair(10.5, false)}) {
        press(arrow.start - QPointF(viewPoints(off), 0));
        EXPECT_EQ(view->debugState().contains(u"nodeDrag=start"_s), taken) << off;
        release();
        model->setSelectedID(arrow.id);
    }
}

TEST_P(CanvasGestureTest, ArrowHandlesReshapeAndSnapOnlyWhileStraight)
{
    const auto arrow = placeArrow(at(100, 100), at(300, 100));
    gesture(arrow.end, at(310, 140), Qt::ShiftModifier);
    expectNear(marks().first().end, at(100 + std::hypot(210, 40), 100), 0.001);
    EXPECT_EQ(newSteps(), 1);

    gesture(marks().first().curveMidpoint(), at(200, 180));
    expectNear(marks().first().curveMidpoint(), at(200, 180), 0.001);
    gesture(marks().first().start, at(90, 130), Qt::ShiftModifier);
    expectNear(marks().first().start, at(90, 130), 0.001);
    EXPECT_EQ(newSteps(), 3);

    doubleClick(marks().first().curveMidpoint());
    EXPECT_FALSE(marks().first().control);
    EXPECT_EQ(newSteps(), 4);
    doubleClick(marks().first().curveMidpoint());
    EXPECT_EQ(newSteps(), 4) << "straight already";
}

TEST_P(CanvasGestureTest, ImageCornersKeepRatioLeastSizeAndTheAnchorOfThePress)
{
    QImage image(80, 40, QImage::Format_RGB32);
    image.fill(Qt::yellow);
    const auto placed
        = place({.kind = Kind::image, .start = at(200, 100), .end = at(280, 140), .image = image});
    model->setTool(Tool::select);
    press(at(280, 140));
    drag(at(320, 145));
    expectNear(marks().first().rect().bottomRight(), at(320, 160), 0.001);
    EXPECT_EQ(marks().first().rect().topLeft(), at(200, 100));
    drag(at(290, 190), Qt::ShiftModifier);
    expectNear(marks().first().rect().bottomRight(), at(290, 190), 0.001);
    drag(at(201, 101), Qt::ShiftModifier);
    expectNear(marks().first().rect().bottomRight(), at(212, 112), 0.001);
    drag(at(100, 60), Qt::ShiftModifier); // across the anchor, and back again
    EXPECT_EQ(marks().first().rect().bottomRight(), at(200, 100));
    drag(at(260, 130), Qt::ShiftModifier);
    EXPECT_EQ(marks().first().rect().topLeft(), at(200, 100));
    release();
    EXPECT_EQ(newSteps(), 1);
    model->undo();
    EXPECT_EQ(marks().first(), placed);
}

TEST_P(CanvasGestureTest, TextHandlesSetTheBoxesWidthAndPointer)
{
    const auto text = place({.kind = Kind::text,
        .start = at(200, 100),
        .filled = true,
        .text = u"Una nota"_s,
        .fontSize = 20 * pixelScale()});
    model->setTool(Tool::text);
    const auto bubble = text.textBubble();
    gesture({bubble.right(), bubble.center().y()}, {bubble.right() + at(30, 0).x(), bubble.center().y()});
    EXPECT_NEAR(*marks().first().boxWidth, bubble.width() + at(30, 0).x(), 0.001);
    const double right = marks().first().textBubble().right();
    gesture({bubble.left(), marks().first().textBubble().center().y()}, {right, bubble.center().y()});
    EXPECT_NEAR(*marks().first().boxWidth, 2.5 * text.fontSize, 0.001) << "the least width";
    EXPECT_NEAR(marks().first().textBubble().right(), right, 0.001) << "the other edge stays";

    gesture(marks().first().pointerNode(), at(150, 250));
    ASSERT_TRUE(marks().first().pointer);
    expectNear(*marks().first().pointer, at(150, 250), 0.001);
    doubleClick(at(150, 250));
    EXPECT_FALSE(marks().first().pointer);
    EXPECT_EQ(newSteps(), 4);
}

TEST_P(CanvasGestureTest, StepsCountPullTheirPointerAndAreMovedByTheirBody)
{
    model->setTool(Tool::step);
    press(at(200, 200));
    drag(at(260, 240));
    release();
    click(at(400, 100));
    ASSERT_EQ(marks().size(), 2);
    EXPECT_EQ(marks()[1].number, 2);
    EXPECT_FALSE(marks()[1].pointer) << "a click pulls none";
    EXPECT_EQ(model->undoCount(), 2);
    ASSERT_TRUE(marks()[0].pointer);
    expectNear(*marks()[0].pointer, at(260, 240), 0.001);

    gesture(at(200, 200), at(210, 220));
    EXPECT_EQ(model->undoCount(), 3);
    expectNear(marks()[0].start, at(210, 220), 0.001);
    while (model->undoCount() > 1)
        model->undo();
    model->undo();
    EXPECT_TRUE(marks().isEmpty()) << "marker and pointer are one step";
}

TEST_P(CanvasGestureTest, OneStrokeOfTheEraserIsOneStep)
{
    for (int i = 0; i < 4; ++i)
        place({.kind = Kind::blur, .start = at(100 + 60 * i, 100), .end = at(130 + 60 * i, 140)});
    model->setTool(Tool::eraser);
    gesture(at(20, 20), at(60, 20));
    EXPECT_EQ(newSteps(), 0);
    press(at(110, 120));
    drag(at(300, 120)); // two marks lie between the events
    release();
    EXPECT_TRUE(marks().isEmpty());
    EXPECT_EQ(newSteps(), 1);
    model->undo();
    EXPECT_EQ(marks().size(), 4);
}

TEST_P(CanvasGestureTest, CropIsClampedSquaredAndDroppedBelowFourPixels)
{
    model->setTool(Tool::crop);
    press(at(-50, 20));
    drag(at(900, 300));
    EXPECT_EQ(*model->cropRect(), QRectF(at(0, 20), at(600, 300)));
    drag(at(40, 100), Qt::ShiftModifier);
    EXPECT_NEAR(model->cropRect()->width(), model->cropRect()->height(), 0.001);
    drag({3.9, at(0, 20).y() + 200});
    release();
    EXPECT_FALSE(model->cropRect());

    gesture(at(100, 100), at(300, 200));
    ASSERT_TRUE(model->cropRect());
    const auto spanned = model->cropRect()->size();
    press(at(200, 150));
    release();
    EXPECT_FALSE(model->cropRect()) << "a single press starts anew";
    gesture(at(100, 100), at(300, 200));
    doubleClick(at(200, 150));
    EXPECT_NEAR(model->doc().imageSize().width(), spanned.width(), 2);
    EXPECT_EQ(model->undoCount(), 1);
    EXPECT_EQ(model->tool(), Tool::arrow);
}

TEST_P(CanvasGestureTest, TheCanvasNeverEnlargesAndMapsBothWays)
{
    view->resize(2000, 1600);
    EXPECT_DOUBLE_EQ(scale(), 1 / pixelScale());
    view->grab();
    QApplication::processEvents();
    EXPECT_EQ(view->hover().zoom(), 100);
    view->setInsets({28, 16, 28, 1400});
    EXPECT_DOUBLE_EQ(scale(), 184 / at(0, 400).y());
    for (const auto& point : {at(0, 0), at(123, 45), at(600, 400)})
        expectNear(view->documentPoint(view->viewPoint(point)), point);
    expectNear(view->viewPoint(view->visibleImageCenter()), {1000, 108});
}

TEST_P(CanvasGestureTest, HoverTellsThePictureColourUnderThePointer)
{
    // The toolkit gives a child whole points; the rest of them is in the window's.
    for (int x = 200; x < 210; ++x) {
        const auto inWindow = view->viewPoint({x + 0.5, 100.5});
        QMouseEvent rounded(QEvent::MouseMove, inWindow.toPoint(), inWindow, view->mapToGlobal(inWindow),
            Qt::NoButton, {}, {});
        QApplication::sendEvent(view.get(), &rounded);
        EXPECT_EQ(view->hover().color(), QColor(x, 100, x ^ 100));
    }
    send(QEvent::MouseMove, view->viewPoint({-3, 5}), {}, {});
    EXPECT_FALSE(view->hover().color());
}
