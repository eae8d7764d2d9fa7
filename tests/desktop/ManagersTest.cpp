// SPDX-License-Identifier: MIT

// Captures on the window managers of other desktops, each of which has its own way of decorating windows.

#include "Desktop.h"
#include "app/floating/Pin.h"
#include "app/messages/HUD.h"
#include "capture/CaptureOverlay.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QWidget>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace pintalux;
using namespace pintalux::test;

namespace {

QByteArray managerName()
{
    const auto named = desktop().run(u"xprop"_s, {u"-root"_s, u"-notype"_s, u"_NET_SUPPORTING_WM_CHECK"_s});
    const auto id = QString::fromLatin1(named.mid(named.indexOf("0x")).trimmed());
    return id.isEmpty() ? QByteArray()
                        : desktop().run(u"xprop"_s, {u"-id"_s, id, u"-notype"_s, u"_NET_WM_NAME"_s});
}

/// Puts a window manager in the place of the one that runs.
void replaceManager(const QString& program, const QByteArray& name, const QStringList& arguments = {})
{
    desktop().start(program, QStringList{u"--replace"_s} + arguments);
    ASSERT_TRUE(waitUntil([&] { return managerName().contains(name); }));
    letPass(500);
}

FrozenScreens frozenScreens() { return finished(ScreenCapture::freezeAllDisplays()); }

void changeState(const DemoWindow& window, const QString& change)
{
    desktop().run(u"wmctrl"_s, {u"-i"_s, u"-r"_s, window.id(), u"-b"_s, change});
    letPass(1000);
}

void move(const DemoWindow& window, int x, int y)
{
    desktop().run(
        u"xdotool"_s, {u"windowmove"_s, u"--sync"_s, window.id(), QString::number(x), QString::number(y)});
    letPass(1000);
}

constexpr QSize client(300, 220);

/// Where a window's contents begin, as another program sees it.
QPoint clientCorner(const DemoWindow& window)
{
    const auto told = QString::fromUtf8(desktop().run(u"xwininfo"_s, {u"-id"_s, window.id()}));
    static const QRegularExpression place(u"upper-left X: *(-?\\d+)\\s*Absolute upper-left Y: *(-?\\d+)"_s);
    const auto found = place.match(told);
    return {found.captured(1).toInt(), found.captured(2).toInt()};
}

class PlasmaTest : public testing::Test {
protected:
    // With large buttons, a rolled-up window is high enough to be taken. How high it is otherwise depends on
    // the release.
    void SetUp() override
    {
        QDir home(desktop().environment().value(u"HOME"_s));
        ASSERT_TRUE(home.mkpath(u".config"_s));
        QFile file(home.filePath(u".config/breezerc"_s));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write("[Windeco]\nButtonSize=ButtonVeryLarge\n");
        file.close();
        replaceManager(u"kwin_x11"_s, "KWin");
    }
};

} // namespace

// The manager paints the title bar as part of compositing; the window's own memory holds what was there
// before.
TEST_F(PlasmaTest, ACapturedWindowHasItsOwnTitleBarOrNone)
{
    const DemoWindow below(u"Debajo"_s, u"300x220+100+100"_s, u"#2E9E6B"_s);
    const DemoWindow above(u"Encima"_s, u"300x220+700+400"_s, u"#D9480F"_s);
    letPass(1500);
    const auto frozen = frozenScreens();
    const auto uncovered = candidateOf(frozen, below.processId());
    ASSERT_TRUE(uncovered);
    const auto seen = frozen.displays[0].image.copy(uncovered->frame.toRect());
    ASSERT_GT(seen.height(), client.height()) << "the manager has no decoration";
    EXPECT_EQ(differingPixels(finished(ScreenCapture::capture(uncovered->window)).image, seen), 0);
    const QPoint corner = clientCorner(below) - uncovered->frame.topLeft().toPoint();

    move(above, 150, 60);
    const auto covered = candidateOf(frozenScreens(), below.processId());
    ASSERT_TRUE(covered);
    const auto picture = finished(ScreenCapture::capture(covered->window)).image;
    ASSERT_EQ(picture.size(), client);
    EXPECT_EQ(differingPixels(picture, seen.copy(QRect(corner, client))), 0);
}

// This one takes its time to paint the screen anew.
TEST_F(PlasmaTest, OwnWindowsAreGoneFromThePicture)
{
    const DemoWindow demo(u"Fondo"_s, u"900x600+100+60"_s, u"#2E9E6B"_s);
    letPass(1000);
    const auto without = frozenScreens().displays[0].image;
    for (int round = 0; round < 5; ++round) {
        QWidget own;
        own.setPalette(QColor(Qt::red));
        own.setGeometry(300, 250, 500, 300);
        own.show();
        letPass(700);
        ASSERT_EQ(pictureByOthers().pixelColor(500, 400), QColor(Qt::red));
        const auto frozen = frozenScreens().displays[0].image;
        const QRect around(240, 240, 620, 380); // below the other window's title bar, which lost the focus
        EXPECT_EQ(differingPixels(frozen.copy(around), without.copy(around)), 0);
    }
}

TEST_F(PlasmaTest, WindowsKeptAboveMaximisedAndRolledUpCanBeTaken)
{
    const DemoWindow window(u"Ventana"_s, u"300x220+300+200"_s, u"#2E9E6B"_s);
    letPass(1500);
    for (const auto& state : {u"above"_s, u"maximized_vert,maximized_horz"_s, u"shaded"_s}) {
        changeState(window, u"add,"_s + state);
        const auto frozen = frozenScreens();
        const auto candidate = candidateOf(frozen, window.processId());
        ASSERT_TRUE(candidate) << qPrintable(state);
        const auto seen = frozen.displays[0].image.copy(candidate->frame.toRect());
        EXPECT_EQ(differingPixels(finished(ScreenCapture::capture(candidate->window)).image, seen), 0)
            << qPrintable(state);
        changeState(window, u"remove,"_s + state);
    }
}

TEST(XfceTest, RoundedCornersAreTransparent)
{
    replaceManager(u"xfwm4"_s, "Xfwm4", {u"--compositor=off"_s});
    const DemoWindow behind(u"Fondo"_s, u"600x500+60+40"_s, u"#D9480F"_s);
    const DemoWindow window(u"Ventana"_s, u"300x220+200+150"_s, u"#2E9E6B"_s);
    letPass(1000);
    const auto frozen = frozenScreens();
    const auto candidate = candidateOf(frozen, window.processId());
    ASSERT_TRUE(candidate);
    const auto picture = finished(ScreenCapture::capture(candidate->window)).image;
    ASSERT_EQ(picture.size(), candidate->frame.size().toSize());
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(picture.pixelColor(picture.width() - 1, 0).alpha(), 0);
    qsizetype holes = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            holes += qAlpha(picture.pixel(x, y)) != 255;
    EXPECT_LT(holes, 200);
}

struct Manager {
    QString program;
    QByteArray name;
    QStringList arguments;
};

class PinOnManagersTest : public testing::TestWithParam<Manager> { };

// One puts a new window on the desktop that is seen, whatever it says of itself, the other on the last one.
TEST_P(PinOnManagersTest, IsOnEveryDesktop)
{
    replaceManager(GetParam().program, GetParam().name, GetParam().arguments);
    desktop().run(u"wmctrl"_s, {u"-n"_s, u"2"_s});
    letPass(500);
    QImage picture(300, 200, QImage::Format_RGB32);
    picture.fill(QColor(0xD9, 0x48, 0x0F));
    PinnedImage::show(picture, 1, nullptr);
    HUD::dismiss();
    auto& pin = *PinnedImage::open().first();
    const auto isSeen
        = [&] { return pictureByOthers().pixelColor(pin.picture().center()) == picture.pixelColor(0, 0); };
    ASSERT_TRUE(waitUntil(isSeen));
    const auto current = [] { return desktop().run(u"xdotool"_s, {u"get_desktop"_s}).trimmed(); };
    desktop().run(u"wmctrl"_s, {u"-s"_s, u"1"_s});
    ASSERT_TRUE(waitUntil([&] { return current() == "1"; }));
    letPass(1500); // the manager's own show
    EXPECT_TRUE(isSeen());
    EXPECT_EQ(pin.picture().size(), picture.size());
    pin.dismiss();
}

INSTANTIATE_TEST_SUITE_P(Manager, PinOnManagersTest,
    testing::Values(
        Manager{u"kwin_x11"_s, "KWin", {}}, Manager{u"xfwm4"_s, "Xfwm4", {u"--compositor=off"_s}}),
    [](const auto& each) { return each.param.name.toStdString(); });

// Of a rolled-up window there is no more than a title bar of this height.
TEST(RolledUp, ASmallTitleBarIsLeftOutAndNothingBehindItIsTakenInItsPlace)
{
    const DemoWindow behind(u"Fondo"_s, u"600x500+60+40"_s, u"#D9480F"_s);
    const DemoWindow window(u"Ventana"_s, u"300x220+200+150"_s, u"#2E9E6B"_s);
    changeState(window, u"add,shaded"_s);
    const auto frozen = frozenScreens();
    EXPECT_FALSE(candidateOf(frozen, window.processId()));
    const auto found = candidateOf(frozen, behind.processId());
    ASSERT_TRUE(found);
    ASSERT_EQ(found->inFront.size(), 1);
    const auto bar = found->inFront[0].frame;
    EXPECT_LE(bar.height(), 40);
    EXPECT_GT(bar.width(), 290);
    EXPECT_TRUE(found->frame.contains(bar));

    const CaptureOverlayController overlay(OverlayMode::window, frozen, [](const OverlayOutcome&) {});
    const auto& screen = frozen.displays[0].screen;
    EXPECT_FALSE(overlay.windowAt(bar.center(), screen));
    EXPECT_TRUE(overlay.windowAt(bar.center() + QPointF(0, 60), screen));
}
