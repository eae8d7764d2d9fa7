// SPDX-License-Identifier: MIT
#include "Gestures.h"
#include "Pictures.h"
#include "controls/FloatingCard.h"
#include "controls/Popover.h"
#include "controls/PushButton.h"
#include "controls/Slider.h"
#include "controls/theme/Elevation.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/GraphicsContext.h"

namespace {

QImage canvas(QSizeF size, double ratio)
{
    QImage image((size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    return image;
}

/// The light shadow of floating sheets, blurred as a whole.
QImage blurredWhole(const QRectF& sheet, double radius, QSizeF size, double ratio)
{
    auto image = canvas(size, ratio);
    QPainter painter(&image);
    GraphicsContext context(painter);
    for (const auto& [drop, blur, alpha] : {std::tuple(1.0, 3.0, 0.10), std::tuple(10.0, 30.0, 0.16)}) {
        const GraphicsContext::Saved saved(context);
        context.setShadow(
            {withAlpha(QColor(0x18, 0x14, 0x30), alpha), QPointF(0, drop) * ratio, blur * ratio});
        context.fill(Draw::roundedRect(sheet, radius), QColor(Qt::white));
    }
    return image;
}

int largestDifference(const QImage& a, const QImage& b, const QRectF& except)
{
    int largest = 0;
    test::countPixels(a, [&](int x, int y) {
        if (!except.contains(QPointF(x + 0.5, y + 0.5) / a.devicePixelRatio()))
            largest = std::max(largest, test::apart(a.pixel(x, y), b.pixel(x, y)));
        return true;
    });
    return largest;
}

} // namespace

TEST(Elevation, AShadowPutTogetherFromPartsIsTheOneBlurredWhole)
{
    for (const double ratio : {1.0, 1.5, 2.0})
        for (const QSizeF sheetSize :
            {QSizeF(958, 60), QSizeF(116, 376), QSizeF(540, 52), QSizeF(400, 300)}) {
            const QRectF sheet(QPointF(48, 48), sheetSize);
            const auto size = expanded(sheet, 48).size();
            auto image = canvas(size, ratio);
            {
                QPainter painter(&image);
                Elevation::drawShadow(Elevation::Level::floating, sheet, 18, Theme::light(), painter);
            }
            EXPECT_LE(largestDifference(image, blurredWhole(sheet, 18, size, ratio), sheet), 3)
                << sheetSize.width() << " × " << sheetSize.height() << " at " << ratio;
            EXPECT_EQ(image.pixelColor(QPointF(sheet.center() * ratio).toPoint()), QColor(Qt::white))
                << "nothing within";
        }
}

TEST(FloatingCard, ItsShadowFollowsItAndLetsTheMouseThrough)
{
    QWidget window;
    window.resize(400, 300);
    auto* ground = new QWidget(&window);
    ground->setGeometry(window.rect());
    ground->setAutoFillBackground(true);
    auto* card = new FloatingCard(18, &window);
    card->setGeometry(100, 100, 200, 60);
    window.show();
    const int plain = qGray(window.grab().toImage().pixel(20, 20));
    const auto isShaded = [&](QPoint at) { return qGray(window.grab().toImage().pixel(at)) < plain - 10; };
    const QPoint beneath(200, 165);
    EXPECT_TRUE(isShaded(beneath));
    EXPECT_EQ(window.childAt(beneath), ground);
    EXPECT_EQ(window.childAt(card->geometry().center()), card);

    card->move(100, 20);
    EXPECT_FALSE(isShaded({200, 190})) << "something stays behind";
    ground->raise();
    card->raise();
    EXPECT_TRUE(isShaded({200, 85})) << "the shadow comes along among the siblings";
    card->setShown(false);
    EXPECT_TRUE(gesture::waitFor([&] { return card->isHidden() && !isShaded({200, 85}); }));
    card->setShown(true);
    EXPECT_TRUE(gesture::waitFor([&] { return isShaded({200, 85}); }));
    delete card;
    EXPECT_FALSE(isShaded({200, 85}));
}

TEST(Popover, StaysByItsButtonAndOnTheScreen)
{
    const QRect visible(8, 8, 984, 684);
    const QSize sheet(280, 200);
    const struct {
        const char* what;
        QRect button;
        QPoint expected;
    } cases[] = {
        {"centred below", {500, 100, 40, 28}, {380, 134}},
        {"above where there is no room below", {500, 600, 40, 28}, {380, 394}},
        {"kept off the left edge", {10, 100, 40, 28}, {8, 134}},
        {"kept off the right edge", {960, 100, 40, 28}, {712, 134}},
    };
    for (const auto& [what, button, expected] : cases)
        EXPECT_EQ(Popover::place(sheet, button, visible), QRect(expected, sheet)) << what;
    const auto tall = Popover::place({280, 680}, {500, 300, 40, 28}, visible);
    EXPECT_TRUE(visible.contains(tall)) << "over the button rather than off the screen";
}

TEST(Popover, ClosesOnEscapeOutsideAndOnItsButtonAndOpensByKeyboardOnItsFirstControl)
{
    QWidget window;
    window.resize(300, 200);
    auto* button = new PushButton(u"Fondo"_s, PushButton::Kind::bordered, &window);
    button->move(100, 20);
    auto* content = new QWidget;
    auto* slider = new Slider(u"Margen"_s, 0, 10);
    (new QVBoxLayout(content))->addWidget(slider);
    Popover popover(content, &window);
    int closings = 0;
    QObject::connect(&popover, &Popover::closed, [&] { ++closings; });
    QObject::connect(button, &QAbstractButton::clicked, [&] { popover.popUp(button); });
    gesture::present(window);

    gesture::click(*button);
    EXPECT_TRUE(popover.isVisible());
    EXPECT_TRUE(button->isDown());
    EXPECT_FALSE(slider->hasFocus());
    gesture::press(*content, {5, 5});
    EXPECT_TRUE(popover.isVisible()) << "a press within is not one outside";
    gesture::key(Qt::Key_Escape);
    EXPECT_FALSE(popover.isVisible());
    EXPECT_FALSE(button->isDown());
    EXPECT_EQ(closings, 1);

    gesture::click(*button);
    gesture::press(popover, QPointF(popover.mapFromGlobal(window.mapToGlobal(QPoint(10, 150)))));
    EXPECT_FALSE(popover.isVisible());
    EXPECT_FALSE(popover.testAttribute(Qt::WA_NoMouseReplay)) << "what was clicked may get the click";

    gesture::click(*button);
    gesture::press(popover, QPointF(popover.mapFromGlobal(button->mapToGlobal(QPoint(5, 5)))));
    EXPECT_FALSE(popover.isVisible());
    EXPECT_TRUE(popover.testAttribute(Qt::WA_NoMouseReplay)) << "the button would open it again";

    button->setFocus();
    gesture::key(Qt::Key_Space);
    EXPECT_TRUE(popover.isVisible());
    EXPECT_TRUE(slider->hasFocus());
    gesture::key(Qt::Key_Escape);
    EXPECT_TRUE(button->hasFocus());
    EXPECT_EQ(closings, 4);
}
