// SPDX-License-Identifier: MIT
#include "Desktop.h"

using namespace pintalux::test;

namespace {

// Somebody selecting on a desktop of two monitors, the right one at 2×; every test runs bare and composited.
class OverlayDesktopTest : public testing::TestWithParam<bool> {
protected:
    DisplaySession session{{.size = {1600, 600},
        .compositor = GetParam(),
        .monitors = {{u"IZQ"_s, u"800/200x600/150+0+0"_s, u"screen"_s},
            {u"DER"_s, u"800/200x600/150+800+0"_s, u"none"_s}},
        .scaleFactors = u"IZQ=1;DER=2"_s}};
    DemoWindow demo{u"Informe"_s, u"420x300+100+100"_s, u"#3B6FE0"_s, session};
    QTemporaryDir folder;
    QImage before;
    QProcess* selecting = nullptr;

    void show(const QString& mode, QPoint pointer)
    {
        xdotool({u"windowactivate"_s, u"--sync"_s, demo.id()});
        moveTo(pointer);
        letPass(200);
        before = pictureByOthers(session);
        selecting = &session.start(QStringLiteral(PINTALUX_SELECT_ON_SCREENS), {mode, folder.path()});
        const auto formerFocus = focusedWindow(session);
        ASSERT_TRUE(waitUntil([&] { return focusedWindow(session) != formerFocus; }))
            << "it never took the keyboard";
        letPass(300);
    }

    void xdotool(const QStringList& arguments) const { session.run(u"xdotool"_s, arguments); }
    void moveTo(QPoint to) const
    {
        xdotool({u"mousemove"_s, QString::number(to.x()), QString::number(to.y())});
        letPass(60);
    }
    void key(const QString& name) const { xdotool({u"key"_s, name}); }
    void dragTo(QPoint from, QPoint to) const
    {
        moveTo(from);
        xdotool({u"mousedown"_s, u"1"_s});
        moveTo((from + to) / 2);
        moveTo(to);
    }

    std::string outcome() const
    {
        if (!waitUntil([&] { return selecting->state() == QProcess::NotRunning; }))
            return "still open";
        return selecting->readAllStandardOutput().trimmed().toStdString();
    }
    QImage saved(const QString& name) const
    {
        return QImage(folder.filePath(name)).convertToFormat(QImage::Format_RGB32);
    }
};

INSTANTIATE_TEST_SUITE_P(Desktop, OverlayDesktopTest, testing::Bool(),
    [](const auto& tested) { return tested.param ? "Composited" : "Bare"; });

} // namespace

TEST_P(OverlayDesktopTest, TheOverlayIsTheScreenPixelForPixelAndGivesTheKeyboardBack)
{
    const auto formerFocus = [&] {
        xdotool({u"windowactivate"_s, u"--sync"_s, demo.id()});
        letPass(200);
        return focusedWindow(session);
    }();
    show(u"color"_s, {400, 500});
    const auto shown = pictureByOthers(session);
    // The bar is on the screen of the pointer, and so is the loupe.
    const QRect right(800, 0, 800, 600);
    const QRect left(0, 80, 380, 520);
    EXPECT_EQ(differingPixels(shown.copy(right), before.copy(right)), 0);
    EXPECT_EQ(differingPixels(shown.copy(left), before.copy(left)), 0);
    EXPECT_GT(differingPixels(shown, before), 10000) << "no bar and no loupe";

    key(u"Escape"_s);
    EXPECT_EQ(outcome(), "cancelled");
    EXPECT_TRUE(waitUntil([&] { return focusedWindow(session) == formerFocus; }));
}

TEST_P(OverlayDesktopTest, ADraggedSelectionIsCutFromItsOwnScreen)
{
    show(u"area"_s, {400, 400});
    dragTo({120, 140}, {420, 340});
    xdotool({u"mouseup"_s, u"1"_s});
    EXPECT_EQ(outcome(), "image 300x200 1");
    EXPECT_EQ(differingPixels(saved(u"selected.png"_s), before.copy(120, 140, 300, 200)), 0);

    // From the right screen across to the left one: kept inside, and at the right one's scale.
    show(u"area"_s, {1200, 400});
    dragTo({1100, 240}, {600, 440});
    xdotool({u"mouseup"_s, u"1"_s});
    EXPECT_EQ(outcome(), "image 300x200 2");
    EXPECT_EQ(differingPixels(saved(u"selected.png"_s), saved(u"DER.png"_s).copy(0, 240, 300, 200)), 0);

    // From the desktop's very last pixel to an odd one, which lies between two points.
    show(u"area"_s, {1599, 599});
    dragTo({1599, 599}, {1101, 241});
    xdotool({u"mouseup"_s, u"1"_s});
    EXPECT_EQ(outcome(), "image 499x359 2");
    EXPECT_EQ(differingPixels(saved(u"selected.png"_s), saved(u"DER.png"_s).copy(301, 241, 499, 359)), 0);
}

TEST_P(OverlayDesktopTest, WhatADragLeavesIsWhatAWholeRepaintShows)
{
    for (const int left : {0, 800}) { // at 1× and at 2×
        show(u"area"_s, {left + 700, 500});
        dragTo({left + 101, 103}, {left + 640, 480});
        moveTo({left + 303, 211});
        moveTo({left + 33, 55});
        moveTo({left + 517, 397});
        waitUntil([] { return false; }, 200);
        const auto dragged = pictureByOthers(session);
        EXPECT_GT(differingPixels(dragged, before), 10000) << "nothing was dimmed";
        session.run(u"xrefresh"_s, {});
        waitUntil([] { return false; }, 300);
        EXPECT_EQ(differingPixels(pictureByOthers(session), dragged), 0) << "screen at " << left;
        key(u"Escape"_s);
        xdotool({u"mouseup"_s, u"1"_s});
        key(u"Escape"_s);
        EXPECT_EQ(outcome(), "cancelled");
    }
}

TEST_P(OverlayDesktopTest, KeysActOnTheScreenUnderThePointerInAnyLayout)
{
    show(u"area"_s, {400, 400});
    moveTo({1200, 300});
    key(u"Return"_s);
    EXPECT_EQ(outcome(), "image 800x600 2");
    EXPECT_EQ(differingPixels(saved(u"selected.png"_s), saved(u"DER.png"_s)), 0);

    show(u"text"_s, {400, 400});
    session.run(u"setxkbmap"_s, {u"ru"_s});
    letPass(200);
    moveTo({120, 130});
    xdotool({u"key"_s, u"54"_s});
    EXPECT_EQ(outcome(), "color #3B6FE0");
}

TEST_P(OverlayDesktopTest, AScreenThatGoesAwayEndsItAsCancelled)
{
    show(u"area"_s, {400, 400});
    dragTo({900, 100}, {1000, 200});
    session.run(u"xrandr"_s, {u"--delmonitor"_s, u"DER"_s});
    EXPECT_EQ(outcome(), "cancelled");
    xdotool({u"mouseup"_s, u"1"_s});
}

TEST_P(OverlayDesktopTest, AWindowBelowCannotTakeTheKeyboard)
{
    show(u"area"_s, {400, 400});
    const auto overlayFocus = focusedWindow(session);
    xdotool({u"windowfocus"_s, u"--sync"_s, demo.id()});
    EXPECT_TRUE(waitUntil([&] { return focusedWindow(session) == overlayFocus; }));
    key(u"Escape"_s);
    EXPECT_EQ(outcome(), "cancelled");
}
