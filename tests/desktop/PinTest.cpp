// SPDX-License-Identifier: MIT

// Pinned pictures under a real mouse and a real window manager.

#include "app/floating/Pin.h"

#include "Desktop.h"
#include "app/messages/HUD.h"

using namespace pintalux::test;

namespace {

void moveTo(QPoint point)
{
    xdotool(u"mousemove %1 %2"_s.arg(point.x()).arg(point.y()));
    letPass(80);
}

void drag(QPoint from, QPoint to)
{
    moveTo(from);
    xdotool(u"mousedown 1"_s);
    letPass(150);
    for (int step = 1; step <= 6; ++step)
        moveTo(from + (to - from) * step / 6);
    letPass(200); // the window manager does it
    xdotool(u"mouseup 1"_s);
    letPass(200);
}

class PinTest : public testing::Test {
protected:
    PinTest()
    {
        picture.fill(QColor(0xD9, 0x48, 0x0F));
        for (int y = 0; y < picture.height(); ++y)
            for (int x = (y % 2); x < picture.width(); x += 2)
                picture.setPixelColor(x, y, QColor(0x12, 0xB8, 0x86)); // any resampling would blend these
    }
    ~PinTest() override
    {
        while (!PinnedImage::open().isEmpty())
            PinnedImage::open().last()->dismiss();
        HUD::dismiss();
        letPass(50);
    }

    PinnedImage& pinned()
    {
        PinnedImage::show(picture, 1, nullptr);
        HUD::dismiss();
        auto* pin = PinnedImage::open().last();
        waitUntil([&] { return pin->isActiveWindow(); });
        letPass(300);
        return *pin;
    }

    QImage picture{400, 300, QImage::Format_RGB32};
};

} // namespace

TEST_F(PinTest, StandsInTheMiddlePixelForPixelAboveOtherWindowsOnEveryDesktop)
{
    xdotool(u"set_num_desktops 2"_s);
    auto& pin = pinned();
    const auto visible = QGuiApplication::primaryScreen()->availableGeometry();
    const auto offset = pin.picture().center() - visible.center();
    EXPECT_LE(offset.manhattanLength(), 2);
    const auto seen = [&] {
        // Within the hairline at its edge.
        return differingPixels(pictureByOthers().copy(pin.picture().adjusted(1, 1, -1, -1)),
            picture.copy(picture.rect().adjusted(1, 1, -1, -1)));
    };
    EXPECT_EQ(seen(), 0);
    {
        const DemoWindow other(u"Otra"_s, u"900x700+100+20"_s, u"#3B6FE0"_s);
        xdotool(u"windowactivate --sync %1"_s.arg(other.id()));
        EXPECT_EQ(seen(), 0) << "below an ordinary window";
    }
    const int announcement = 1500; // the window manager shows the desktop's name in the middle meanwhile
    xdotool(u"set_desktop 1"_s);
    letPass(announcement);
    EXPECT_EQ(seen(), 0) << "not on the other desktop";
    xdotool(u"set_desktop 0"_s);
    letPass(announcement);
}

// It would wait for an answer where nobody sees it.
TEST_F(PinTest, ADialogStandsAboveIt)
{
    const auto& pin = pinned();
    QWidget window;
    window.setGeometry(pin.picture());
    window.show();
    letPass(300);
    QDialog dialog(&window);
    dialog.setPalette(QColor(Qt::blue));
    dialog.setGeometry(QRect(pin.picture().center() - QPoint(100, 60), QSize(200, 120)));
    dialog.open();
    EXPECT_TRUE(
        waitUntil([&] { return pictureByOthers().pixelColor(pin.picture().center()) == QColor(Qt::blue); }));
}

TEST_F(PinTest, DragsMoveItAndResizeItInItsProportionsAndADoubleClickClosesIt)
{
    auto& pin = pinned();
    auto before = pin.picture();
    drag(before.center(), before.center() + QPoint(-180, 90));
    EXPECT_TRUE(waitUntil([&] { return pin.picture() == before.translated(-180, 90); }))
        << pin.picture().x() << ' ' << pin.picture().y();
    before = pin.picture();
    drag(before.bottomRight() - QPoint(3, 3), before.bottomRight() + QPoint(77, 57));
    EXPECT_EQ(pin.picture(), QRect(before.topLeft(), QSize(480, 360)));
    before = pin.picture();
    drag(QPoint(before.left() + 2, before.center().y()), QPoint(before.left() + 122, before.center().y()));
    EXPECT_EQ(pin.picture(), QRect(before.left() + 120, before.top(), 360, 270));
    moveTo(pin.picture().center());
    xdotool(u"click --repeat 2 --delay 60 1"_s);
    EXPECT_TRUE(waitUntil([] { return PinnedImage::open().isEmpty(); }));
}

TEST_F(PinTest, ItKeepsItsProportionsAlsoWhenTheWindowManagerResizesIt)
{
    auto& pin = pinned();
    const auto around = pin.size() - pin.picture().size();
    const auto told = QSize(600, 300) + around;
    xdotool(u"windowsize --sync %1 %2 %3"_s.arg(pin.winId()).arg(told.width()).arg(told.height()));
    EXPECT_TRUE(waitUntil([&] { return pin.picture().size() == QSize(400, 300); }))
        << pin.picture().width() << " x " << pin.picture().height();
}

TEST_F(PinTest, ItsMenuCopiesTheWholePictureAtTheScaleShownAndCloses)
{
    auto& pin = pinned();
    pin.setPicture(QRect(500, 300, 200, 150));
    letPass(200);
    QGuiApplication::clipboard()->setText(u"antes"_s);
    moveTo(pin.picture().center());
    xdotool(u"click 3"_s);
    letPass(300);
    moveTo(pin.picture().center() + QPoint(40, 6 + 14)); // its first row
    xdotool(u"click 1"_s);
    ASSERT_TRUE(waitUntil([] { return HUD::currentMessage().has_value(); }));
    EXPECT_EQ(HUD::currentMessage(), u"Copiado al portapapeles");
    const auto copied = QImage::fromData(QGuiApplication::clipboard()->mimeData()->data(u"image/png"_s));
    EXPECT_EQ(differingPixels(copied.convertToFormat(QImage::Format_RGB32), picture), 0);
    EXPECT_NEAR(copied.dotsPerMeterX() * 0.0254, 144, 0.1);

    xdotool(u"click 3"_s);
    letPass(300);
    moveTo(QCursor::pos() + QPoint(40, 6 + 28 + 14));
    xdotool(u"click 1"_s);
    EXPECT_TRUE(waitUntil([] { return PinnedImage::open().isEmpty(); }));
}
