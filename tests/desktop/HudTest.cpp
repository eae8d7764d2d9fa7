// SPDX-License-Identifier: MIT
#include "app/messages/HUD.h"

#include "Desktop.h"

using namespace pintalux::test;

namespace {

/// A window of an application at work: it counts what reaches it.
class Below : public QWidget {
public:
    Below()
    {
        setWindowTitle(u"Debajo"_s);
        setStyleSheet(u"background: #3A86FF"_s);
    }

    int presses = 0;
    int keys = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++presses; }
    void keyPressEvent(QKeyEvent*) override { ++keys; }
};

} // namespace

TEST(Message, TakesNoFocusLetsClicksAndKeysThroughAndStaysOnWhicheverDesktopIsShown)
{
    xdotool(u"set_num_desktops 2 set_desktop 0"_s);
    Below below;
    below.showFullScreen();
    ASSERT_TRUE(waitUntil([&] { return below.isActiveWindow(); }));
    // Within the capsule at its left end, where nothing is drawn on it. It stands 72 above the bottom.
    const auto visible = QGuiApplication::primaryScreen()->availableGeometry();
    const QPoint point(visible.center().x() - 50, visible.bottom() - 72 - 4);
    const auto isSeen = [&] { return pictureByOthers().pixelColor(point) == QColor(0x1B, 0x1A, 0x22); };
    ASSERT_FALSE(isSeen());
    HUD::showUntilReplaced(u"Captura guardada en la carpeta"_s, u"checkmark.circle.fill"_s);
    ASSERT_TRUE(waitUntil(isSeen)) << "above a full-screen window";
    xdotool(u"mousemove %1 %2 click 1 key a"_s.arg(point.x()).arg(point.y()));
    EXPECT_TRUE(waitUntil([&] { return below.presses == 1 && below.keys == 1; }))
        << below.presses << " presses, " << below.keys << " keys";
    EXPECT_TRUE(below.isActiveWindow());
    xdotool(u"set_desktop 1"_s);
    letPass(300);
    EXPECT_TRUE(isSeen());
    xdotool(u"set_desktop 0"_s);
    HUD::dismiss();
    EXPECT_TRUE(waitUntil([&] { return !isSeen(); }));
}
