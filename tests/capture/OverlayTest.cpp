// SPDX-License-Identifier: MIT
#include "Gestures.h"
#include "Pictures.h"
#include "capture/CaptureOverlay.h"
#include "capture/OverlayWindow.h"
#include "fakes/FakeScreenSource.h"
#include "platform/image/PixelSampler.h"

namespace {

QImage picture(int blue)
{
    auto image = test::plain({400, 300});
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 400; ++x)
            image.setPixel(x, y, FakeScreenSource::colorAt({x, y}, blue));
    return image;
}

FrozenScreens frozenScreens()
{
    FrozenScreens frozen;
    frozen.displays = {
        {{u"LEFT"_s, {0, 0, 400, 300}, {0, 0, 400, 300}, 1, true}, picture(0), 1},
        {{u"RIGHT"_s, {400, -50, 200, 150}, {400, -50, 400, 300}, 2, true}, picture(1), 2},
    };
    const auto add = [&](quint64 id, const QRectF& frame, const QString& title) {
        WindowInfo info;
        info.id = id;
        info.frame = frame;
        frozen.windows.append({info, frame, title});
    };
    add(1, {20, 20, 200, 120}, u"Notas — Lista"_s);
    add(2, {60, 40, 300, 200}, u"Navegador"_s);
    add(3, {410, -40, 120, 100}, u"Notas"_s);
    add(4, {375, 25, 100, 50}, u"En las dos"_s);
    frozen.windows.last().window.nativeRect = {350, 100, 200, 100};
    return frozen;
}

class OverlayTest : public testing::Test {
protected:
    void TearDown() override
    {
        overlay.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void show(OverlayMode mode, FrozenScreens frozen = frozenScreens())
    {
        outcomes.clear();
        overlay = std::make_unique<CaptureOverlayController>(
            mode, std::move(frozen), [this](const OverlayOutcome& outcome) {
                outcomes.push_back(outcome);
                overlay.reset(); // as the shell does
            });
        overlay->show();
    }

    OverlayView& view(std::size_t screen) const { return *overlay->windows()[screen]; }

    void mouse(QEvent::Type type, QPointF at, Qt::MouseButtons held, Qt::KeyboardModifiers modifiers = {})
    {
        if (overlay)
            gesture::mouse(view(screen), type, at, held, modifiers);
    }
    void press(QPointF at) { mouse(QEvent::MouseButtonPress, at, Qt::LeftButton); }
    void drag(QPointF to, Qt::KeyboardModifiers modifiers = {})
    {
        mouse(QEvent::MouseMove, to, Qt::LeftButton, modifiers);
    }
    void release(QPointF at) { mouse(QEvent::MouseButtonRelease, at, {}); }
    void move(QPointF to) { mouse(QEvent::MouseMove, to, {}); }
    void select(QPointF from, QPointF to, Qt::KeyboardModifiers modifiers = {})
    {
        press(from);
        drag(to, modifiers);
        release(to);
    }
    void key(int meaning, quint32 scanCode = 0, bool repeated = false)
    {
        if (!overlay)
            return;
        QKeyEvent event(QEvent::KeyPress, meaning, {}, scanCode, 0, 0, {}, repeated);
        QApplication::sendEvent(&view(screen), &event);
    }

    /// The only outcome, when it is of this kind.
    template <typename T> const T* only() const
    {
        return outcomes.size() == 1 ? std::get_if<T>(&outcomes.front()) : nullptr;
    }

    std::size_t screen = 0; ///< that the gestures go to
    std::unique_ptr<CaptureOverlayController> overlay;
    std::vector<OverlayOutcome> outcomes;
};

} // namespace

TEST_F(OverlayTest, ASelectionIsThoseVeryPixelsOfItsOwnScreen)
{
    const struct {
        std::size_t screen;
        QPointF from;
        QPointF to;
        Qt::KeyboardModifiers modifiers;
        QRect pixels;
    } table[] = {
        {0, {30, 40}, {130, 90}, {}, {30, 40, 100, 50}},
        {0, {10, 10}, {13, 13}, {}, {10, 10, 3, 3}},
        {0, {350, 250}, {900, 900}, {}, {350, 250, 50, 50}},
        {0, {350, 250}, {399, 299}, {}, {350, 250, 50, 50}}, // as far as a pointer goes
        {0, {100, 100}, {60, 120}, Qt::ShiftModifier, {60, 100, 40, 40}},
        {0, {380, 100}, {400, 180}, Qt::ShiftModifier, {380, 100, 20, 80}},
        {1, {20.5, 10.5}, {30.5, 20}, {}, {41, 21, 20, 19}},
        {1, {199.5, 149.5}, {20.5, 10.5}, {}, {41, 21, 359, 279}},
    };
    for (const auto& row : table) {
        for (const auto mode : {OverlayMode::area, OverlayMode::text}) {
            SCOPED_TRACE(testing::Message() << "from " << row.from.x() << " to " << row.to.x());
            show(mode);
            screen = row.screen;
            select(row.from, row.to, row.modifiers);
            const auto* image = only<Outcome::Image>();
            const auto* text = only<Outcome::Text>();
            ASSERT_TRUE(mode == OverlayMode::area ? image != nullptr : text != nullptr);
            const auto& result = image ? image->result : text->result;
            EXPECT_EQ(result.image, frozenScreens().displays[qsizetype(screen)].image.copy(row.pixels));
            EXPECT_EQ(result.pixelScale, row.screen == 0 ? 1 : 2);
        }
    }
}

TEST_F(OverlayTest, FractionalScalesTakeNoPixelTooMany)
{
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 2.25, 3.0})
        for (int first = 0; first < 400; first += 7)
            for (int size : {3, 10, 101}) {
                const QPointF from(first / scale, first / scale);
                const QRectF rect(from, QPointF((first + size) / scale, (first + size) / scale));
                ASSERT_EQ(pixelsOf(rect, scale, {1000, 1000}), QRect(first, first, size, size)) << scale;
                ASSERT_EQ(pixelAt(from, scale), QPoint(first, first)) << scale;
            }
}

TEST_F(OverlayTest, GesturesThatSelectNothingLeaveItOpen)
{
    show(OverlayMode::area);
    select({50, 50}, {50, 50});
    select({50, 50}, {52, 100});
    EXPECT_TRUE(outcomes.empty());

    show(OverlayMode::window);
    move({5, 5});
    press({5, 5});
    release({5, 5});
    key(Qt::Key_Return);
    EXPECT_TRUE(outcomes.empty());

    show(OverlayMode::color);
    press({400, 300});
    key(Qt::Key_Return);
    key(Qt::Key_Space);
    EXPECT_EQ(overlay->mode(), OverlayMode::color);
    EXPECT_TRUE(outcomes.empty());
}

TEST_F(OverlayTest, TheFrontmostWindowUnderThePointerIsTakenOnEveryScreen)
{
    const struct {
        std::size_t screen;
        QPointF at;
        quint64 window;
    } table[] = {{0, {100, 100}, 1}, {0, {300, 200}, 2}, {0, {20, 20}, 1}, {1, {10, 10}, 3},
        {1, {129, 109}, 3}, {0, {360, 150}, 4}, {1, {5, 100}, 4}};
    for (const auto& row : table) {
        show(OverlayMode::window);
        screen = row.screen;
        move(row.at);
        press(row.at);
        const auto* chosen = only<Outcome::Window>();
        ASSERT_TRUE(chosen);
        EXPECT_EQ(chosen->window.id, row.window);
        EXPECT_EQ(chosen->title, frozenScreens().windows[qsizetype(row.window) - 1].title);
    }
}

TEST_F(OverlayTest, ColorsAreReadFromTheScreenUnderThePointerAtItsScale)
{
    show(OverlayMode::color);
    press({17, 34});
    ASSERT_TRUE(only<Outcome::Color>());
    EXPECT_EQ(only<Outcome::Color>()->hex, u"#112200");

    // With a layout whose letters are not Latin the key is known by its place, on others it is not.
    show(OverlayMode::area);
    screen = 1;
    move({8.5, 17});
    key(Qt::Key_J, 54);
    EXPECT_TRUE(outcomes.empty());
    key(0x0421, 54);
    ASSERT_TRUE(only<Outcome::Color>());
    EXPECT_EQ(only<Outcome::Color>()->hex, u"#112201");

    QImage translucent(1, 1, QImage::Format_ARGB32_Premultiplied);
    translucent.fill(qRgba(10, 20, 30, 128));
    EXPECT_EQ(PixelSampler::color(translucent, 0, 0), QColor(10, 20, 30));
    EXPECT_FALSE(PixelSampler::color(translucent, 0, -1));
}

TEST_F(OverlayTest, EscapeEndsTheDragFirstAndOnlyThenTheOverlay)
{
    show(OverlayMode::area);
    press({10, 10});
    drag({100, 100});
    key(Qt::Key_Escape);
    key(Qt::Key_Escape, 9, true); // still held
    drag({150, 150});
    release({150, 150});
    EXPECT_TRUE(outcomes.empty());
    key(Qt::Key_Escape);
    EXPECT_TRUE(only<Outcome::Cancelled>());

    show(OverlayMode::window);
    QMouseEvent rightPress(
        QEvent::MouseButtonPress, {50, 50}, {50, 50}, Qt::RightButton, Qt::RightButton, {});
    QApplication::sendEvent(&view(0), &rightPress);
    EXPECT_TRUE(only<Outcome::Cancelled>());
}

TEST_F(OverlayTest, SpaceAndReturnActOnModeAndOnTheFocusedScreen)
{
    show(OverlayMode::area);
    move({100, 100});
    key(Qt::Key_Space);
    EXPECT_EQ(overlay->mode(), OverlayMode::window);
    key(Qt::Key_Return);
    EXPECT_TRUE(outcomes.empty());
    key(Qt::Key_Space);
    EXPECT_EQ(overlay->mode(), OverlayMode::area);
    screen = 1;
    key(Qt::Key_Enter);
    ASSERT_TRUE(only<Outcome::Image>());
    EXPECT_EQ(only<Outcome::Image>()->result.image, frozenScreens().displays[1].image);
    EXPECT_EQ(only<Outcome::Image>()->result.pixelScale, 2);
}

TEST_F(OverlayTest, ItReportsOnceAndSurvivesBeingEndedFromItsOwnReport)
{
    int calls = 0;
    CaptureOverlayController once(
        OverlayMode::area, frozenScreens(), [&](const OverlayOutcome&) { ++calls; });
    once.show();
    EXPECT_EQ(once.windows().size(), 2u);
    once.finish(Outcome::Color{u"#000000"_s});
    once.finish(Outcome::Cancelled());
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(once.windows().empty());
    for (const auto* window : QApplication::topLevelWidgets())
        EXPECT_FALSE(window->isVisible());
}

TEST_F(OverlayTest, WithoutAnyOfItsScreensItEndsAsCancelledAtOnce)
{
    auto frozen = frozenScreens();
    frozen.displays.removeLast();
    frozen.displays[0].screen.name = u"GONE"_s;
    show(OverlayMode::area, frozen);
    EXPECT_TRUE(only<Outcome::Cancelled>());
}
