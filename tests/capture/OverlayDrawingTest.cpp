// SPDX-License-Identifier: MIT
#include "capture/OverlayDrawing.h"

#include "Pictures.h"
#include "platform/graphics/Geometry.h"

using test::near;

namespace {

constexpr QSize viewSize(800, 500);
const QColor paper(200, 180, 160);
const QColor dimmed(124, 112, 99); // paper under black at .38

// Plain paper with a pixel of its own colour at the top left.
QImage paperPicture(double scale)
{
    auto image = test::plain((QSizeF(viewSize) * scale).toSize(), paper);
    image.setPixelColor(0, 0, Qt::red);
    return image;
}

OverlayScene sceneAt(double scale, OverlayMode mode = OverlayMode::area)
{
    OverlayScene scene;
    scene.mode = mode;
    scene.viewSize = QSizeF(viewSize);
    scene.imageSize = paperPicture(scale).size();
    scene.pixelScale = scale;
    return scene;
}

void paint(QImage& canvas, const OverlayScene& scene, const QRegion& region)
{
    QPainter painter(&canvas);
    painter.scale(scene.pixelScale, scene.pixelScale);
    GraphicsContext context(painter);
    for (const QRect& part : region) {
        const GraphicsContext::Saved saved(context);
        context.clip(QRectF(part));
        OverlayDrawing::draw(layOut(scene), paperPicture(scene.pixelScale), part, context);
    }
}

QImage painted(const OverlayScene& scene)
{
    QImage canvas(scene.imageSize, QImage::Format_RGB32);
    canvas.fill(Qt::magenta);
    paint(canvas, scene, QRect(QPoint(), viewSize));
    return canvas;
}

/// The colour at the middle of the pixel that holds a point.
QColor at(const QImage& canvas, double scale, QPointF point)
{
    return canvas.pixelColor(int(point.x() * scale), int(point.y() * scale));
}

} // namespace

TEST(OverlayDrawing, TheSelectionShowsThePictureAndTheRestIsDimmed)
{
    for (const double scale : {1.0, 2.0}) {
        auto scene = sceneAt(scale);
        scene.selection = QRectF(100, 150, 200, 120);
        const auto canvas = painted(scene);
        const auto inside = canvas.copy(QRect(QPoint(105, 155) * scale, QSize(190, 110) * scale));
        const auto frozen = paperPicture(scale).copy(QRect(QPoint(105, 155) * scale, inside.size()));
        EXPECT_EQ(test::differingPixels(inside, frozen), 0) << "not one pixel of the selection may change";
        EXPECT_TRUE(near(at(canvas, scale, {50, 400}), dimmed));
        EXPECT_TRUE(near(at(canvas, scale, {200, 149.6}), QColor(237, 236, 234), 6)) << "white hairline";
        EXPECT_TRUE(near(at(canvas, scale, {200, 148.4}), QColor(116, 89, 232), 6)) << "brand";
        EXPECT_TRUE(near(at(canvas, scale, {100, 150}), Qt::white)) << "handle";
        EXPECT_TRUE(near(at(canvas, scale, {200, 145}), dimmed)) << "nothing beyond the frame";

        scene.mode = OverlayMode::window;
        EXPECT_FALSE(near(at(painted(scene), scale, {97.4, 150}), Qt::white)) << "no handles on windows";
    }
}

TEST(OverlayDrawing, ColorModeLeavesThePictureAloneAwayFromTheLoupe)
{
    for (const double scale : {1.0, 2.0}) {
        auto scene = sceneAt(scale, OverlayMode::color);
        EXPECT_EQ(test::differingPixels(painted(scene), paperPicture(scale)), 0);

        scene.mouse = QPointF(0.2, 0.2);
        const auto canvas = painted(scene);
        const auto frame = layOut(scene).loupe->frame;
        const auto cell = [&](int column, int row) {
            return at(canvas, scale, frame.topLeft() + QPointF(column + 0.5, row + 0.5) * loupeCell);
        };
        EXPECT_EQ(frame, QRectF(22.2, 22.2, 121, 121));
        EXPECT_EQ(cell(5, 5), QColor(Qt::red));
        EXPECT_EQ(cell(6, 5), paper);
        EXPECT_EQ(cell(4, 5), QColor(Qt::black)) << "outside the image";
        EXPECT_EQ(cell(5, 4), QColor(Qt::black)) << "outside the image";
    }
}

TEST(OverlayLayout, TheSizeLabelTellsPixelsAndKeepsItsRules)
{
    auto scene = sceneAt(2);
    scene.selection = QRectF(100, 100, 100, 50);
    EXPECT_EQ(layOut(scene).label->content, u"200 × 100");
    EXPECT_EQ(layOut(scene).label->pill.topLeft(), QPointF(100, 158));
    scene.selection = QRectF(760, 100, 40, 50);
    EXPECT_NEAR(layOut(scene).label->pill.right(), 794, 1e-6);
    scene.selection = QRectF(-2, 300, 100, 200);
    const auto low = *layOut(scene).label;
    EXPECT_EQ(low.pill.left(), 6);
    EXPECT_NEAR(low.pill.bottom(), 500 - 8, 1e-6) << "inside the selection";
}

TEST(OverlayLayout, WhatIsShownStaysOnTheScreenAndOnOneLine)
{
    const QString titles[]
        = {u"Corto"_s, u"Con\nsalto\r\ny otro"_s, QString(500, u'W'), u"👩‍👩‍👧"_s.repeated(200)};
    const QRectF frames[] = {{10, 10, 300, 200}, {-500, -900, 300, 400}, {-50, -50, 900, 5000},
        {700, 450, 400, 400}, {790, 0, 41, 41}, {0, -80, 800, 81}};
    for (const auto size : {QSizeF(800, 500), QSizeF(320, 200), QSizeF(150, 100)}) {
        const QRectF screen(QPointF(), size);
        auto scene = sceneAt(1, OverlayMode::window);
        scene.viewSize = size;
        scene.imageSize = size.toSize();
        const double height = [&] {
            scene.selection = QRectF(10, 10, 50, 50);
            return layOut(scene).label->pill.height();
        }();
        for (const auto& title : titles) {
            for (const auto& frame : frames) {
                scene.windowTitle = title;
                scene.selection = frame;
                const auto label = *layOut(scene).label;
                EXPECT_TRUE(screen.contains(label.pill)) << size.width() << " " << frame.x();
                EXPECT_LT(label.pill.height(), height * 1.4) << "one line";
                EXPECT_FALSE(label.content.contains(u'\n'));
                EXPECT_TRUE(label.content.contains(u" × "_s)) << "the size is never left out";
            }
        }
    }
    for (const auto size : {QSizeF(800, 500), QSizeF(300, 170), QSizeF(180, 160)}) {
        auto scene = sceneAt(1, OverlayMode::color);
        scene.viewSize = size;
        const QRectF screen(QPointF(), size);
        for (double x = 0; x < size.width(); x += 9.5)
            for (double y = 0; y < size.height(); y += 9.5) {
                scene.mouse = QPointF(x, y);
                const auto loupe = *layOut(scene).loupe;
                ASSERT_TRUE(screen.contains(loupe.frame) && screen.contains(loupe.readout)) << x << " " << y;
            }
    }
}

// A partial repaint must leave what a full one gives, whatever was there before.
TEST(OverlayDamage, RepaintingTheDamageEqualsRepaintingEverything)
{
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        std::vector<OverlayScene> script;
        auto scene = sceneAt(scale);
        script.push_back(scene);
        for (const auto to : {QPointF(103, 103), QPointF(300, 200), QPointF(301, 201.5), QPointF(301, 204),
                 QPointF(799, 499), QPointF(20, 499), QPointF(99, 40), QPointF(300, 45)}) {
            scene.mouse = to;
            scene.selection = QRectF(QPointF(100, 100), to).normalized();
            script.push_back(scene);
        }
        scene.mode = OverlayMode::window;
        for (const auto& frame :
            {QRectF(100, 45, 200, 55), QRectF(50, 50, 300, 300), QRectF(-20, 60, 900, 300)}) {
            scene.selection = frame;
            scene.windowTitle = u"Ventana %1"_s.arg(frame.width());
            script.push_back(scene);
        }
        scene.selection.reset();
        script.push_back(scene);
        scene.mode = OverlayMode::color;
        for (const auto to :
            {QPointF(0, 0), QPointF(3.2, 4), QPointF(400, 60), QPointF(799, 499), QPointF(790, 2)}) {
            scene.mouse = to;
            script.push_back(scene);
        }
        scene.mouse.reset();
        script.push_back(scene);

        auto canvas = painted(script.front());
        for (std::size_t step = 1; step < script.size(); ++step) {
            paint(canvas, script[step], damage(layOut(script[step - 1]), layOut(script[step])));
            ASSERT_EQ(canvas, painted(script[step])) << "step " << step << " at " << scale;
        }
    }
}
