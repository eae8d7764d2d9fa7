// SPDX-License-Identifier: MIT
#include "app/messages/HUD.h"

#include "Desktop.h"
#include "platform/desktop/WindowSystem.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

using namespace Qt::StringLiterals;

using namespace pintalux;
using namespace pintalux::test;

namespace {

/// A window of an application at work: it counts what reaches it.
class Below : public QWidget {
public:
    Below()
    {
        setWindowTitle(u"Debajo"_s);
        setStyleSheet(u"background: #3A86FF"_s);
        show();
        resize(900, 600);
    }

    void comeForward()
    {
        ASSERT_TRUE(waitUntil([this] { return windowHandle()->isExposed(); }));
        letPass(200);
        activateWindow();
        ASSERT_TRUE(waitUntil([this] { return isActiveWindow(); }));
    }

    int presses = 0;
    int keys = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++presses; }
    void keyPressEvent(QKeyEvent*) override { ++keys; }
};

/// Within the capsule at its left end, where nothing is drawn on it. The capsule stands 72 above the bottom.
QPoint capsulePoint(const QScreen& screen)
{
    const auto visible = screen.availableGeometry();
    return {visible.center().x() - 50, visible.bottom() - 72 - 4};
}

bool isCapsule(QPoint point)
{
    // Opaque without a compositor.
    return pictureByOthers().pixelColor(point) == QColor(0x1B, 0x1A, 0x22);
}

bool messageIsSeen(QPoint point)
{
    return waitUntil([&] { return isCapsule(point); });
}

} // namespace

TEST(Message, TakesNoFocusAndLetsClicksAndKeysThrough)
{
    Below below;
    below.showFullScreen();
    below.comeForward();
    const auto point = capsulePoint(*QGuiApplication::primaryScreen());
    ASSERT_FALSE(isCapsule(point));
    HUD::show(u"Captura guardada en la carpeta"_s, u"checkmark.circle.fill"_s);
    ASSERT_TRUE(messageIsSeen(point)) << "above a full-screen window";
    EXPECT_TRUE(below.isActiveWindow());
    xdotool(u"mousemove %1 %2 click 1 key a"_s.arg(point.x()).arg(point.y()));
    EXPECT_TRUE(waitUntil([&] { return below.presses == 1 && below.keys == 1; }))
        << below.presses << " presses, " << below.keys << " keys";
    EXPECT_TRUE(below.isActiveWindow());
    HUD::dismiss();
    EXPECT_TRUE(waitUntil([&] { return !isCapsule(point); }));
}

TEST(Message, StaysOnWhicheverDesktopIsShown)
{
    xdotool(u"set_num_desktops 2 set_desktop 0"_s);
    Below below;
    below.comeForward();
    const auto point = capsulePoint(*QGuiApplication::primaryScreen());
    HUD::show(u"Captura guardada en la carpeta"_s, u"checkmark.circle.fill"_s);
    ASSERT_TRUE(messageIsSeen(point));
    xdotool(u"set_desktop 1"_s);
    letPass(300);
    EXPECT_TRUE(isCapsule(point));
    xdotool(u"set_desktop 0"_s);
    HUD::dismiss();
}

TEST(Message, ANewerOneReplacesItAtOnceAndKeepsItsOwnTime)
{
    const auto shownWindows = [] {
        int count = 0;
        for (const auto* widget : QApplication::topLevelWidgets())
            count += widget->isVisible();
        return count;
    };
    QElapsedTimer clock;
    HUD::show(u"Primero"_s, u"sparkles"_s);
    letPass(500);
    HUD::show(u"Segundo"_s, u"sparkles"_s);
    clock.start();
    EXPECT_EQ(shownWindows(), 1);
    // The first one's time is over after 1.5 s of this.
    waitUntil([&] { return clock.elapsed() > 1750; });
    EXPECT_EQ(HUD::currentMessage(), u"Segundo"_s);
    EXPECT_TRUE(waitUntil([] { return !HUD::currentMessage(); }));
    EXPECT_GE(clock.elapsed(), 1990);
    EXPECT_EQ(shownWindows(), 0);
}

TEST(Message, IsTranslucentUnderACompositor)
{
    ASSERT_FALSE(WindowSystem::current().hasCompositor());
    auto& compositor = desktop().startCompositor();
    Below below;
    below.showFullScreen();
    below.comeForward();
    const auto point = capsulePoint(*QGuiApplication::primaryScreen());
    HUD::show(u"Captura guardada en la carpeta"_s, u"checkmark.circle.fill"_s);
    letPass(600);
    const auto color = pictureByOthers().pixelColor(point);
    // One tenth of #3A86FF shines through #1B1A22.
    EXPECT_NEAR(color.red(), 30, 3);
    EXPECT_NEAR(color.green(), 37, 3);
    EXPECT_NEAR(color.blue(), 56, 4);
    HUD::dismiss();
    desktop().stop(compositor);
    EXPECT_TRUE(waitUntil([] { return !WindowSystem::current().hasCompositor(); }));
}
