// SPDX-License-Identifier: MIT

// What floats on the desktop, while a compositor comes and goes.

#include "controls/Sheet.h"

#include "Desktop.h"
#include "app/floating/Pin.h"
#include "app/floating/Thumbnail.h"
#include "app/messages/HUD.h"
#include "controls/Menu.h"
#include "controls/ToolTips.h"
#include "platform/base/UserDefaults.h"
#include "settings/Settings.h"

using namespace pintalux::test;

namespace {

constexpr QColor below(0x3A, 0x86, 0xFF);

/// A full-screen window of one colour, which shows every fault of what floats above it.
class Ground : public QWidget {
public:
    Ground()
    {
        setStyleSheet(u"background: #3A86FF"_s);
        showFullScreen();
        waitUntil([this] { return windowHandle()->isExposed(); });
        letPass(300);
    }
};

/// What is on the screen of one window with a sheet in it.
struct Seen {
    QRect sheet;       ///< on the screen
    int strange = 0;   ///< pixels around the sheet that are neither the ground nor the ground in shadow
    int shaded = 0;    ///< pixels around the sheet that are darker than the ground
    int uncovered = 0; ///< pixels within, clear of the corners, that still show the ground
};

bool isGround(const QColor& color) { return color == below; }

/// The ground's colour with any amount of black or violet ink over it.
bool isShade(const QColor& color)
{
    return color.blue() > color.green() && color.green() > color.red() && color.lightness() > 40
        && color.blue() <= below.blue() + 2;
}

Seen look(const QWidget& window, int margin, const QImage& screen)
{
    constexpr int corner = 24;
    const QRect whole = window.geometry();
    Seen seen{.sheet = whole.adjusted(margin, margin, -margin, -margin)};
    const auto inner = seen.sheet.adjusted(corner, 2, -corner, -2);
    const auto edge = seen.sheet.adjusted(-1, -1, 1, 1); // with the hairline, which may lie a pixel outside
    const auto around = whole.adjusted(-6, -6, 6, 6) & screen.rect();
    for (int y = around.top(); y <= around.bottom(); ++y)
        for (int x = around.left(); x <= around.right(); ++x) {
            const auto color = screen.pixelColor(x, y);
            seen.uncovered += inner.contains(x, y) && isGround(color);
            if (!edge.contains(x, y)) {
                seen.shaded += !isGround(color);
                seen.strange += !isGround(color) && !isShade(color);
            }
        }
    return seen;
}

struct Surface {
    const char* name;
    QPointer<const QWidget> window;
    int margin;
    bool casts; ///< a shadow of its own, under a compositor
    bool round = true;
};

/// All of them at once; none lies in the shadow of another.
class SheetTest : public testing::Test {
protected:
    SheetTest()
    {
        ToolTips::install(*qApp);
        xdotool(u"mousemove 640 20"_s);
        for (const auto& title : {u"Capturar área"_s, u"Capturar ventana"_s, u"Pantalla completa"_s})
            menu.addAction(title);
    }
    ~SheetTest() override
    {
        ToolTips::hide();
        HUD::dismiss();
        while (!PinnedImage::open().isEmpty())
            PinnedImage::open().last()->dismiss();
        letPass(50);
    }

    void openAll()
    {
        menu.popUpAt({80, 80});
        letPass(100);
        surfaces.append({"menu", &menu, 40, true});
        PinnedImage::show(picture, 1, nullptr);
        surfaces.append({"pin", PinnedImage::open().last(), 48, true, false});
        PinnedImage::open().last()->setPicture({60, 480, 240, 150});
        HUD::showUntilReplaced(u"Captura guardada"_s, u"checkmark.circle.fill"_s);
        surfaces.append({"message", newest(), 32, true});
        thumbnail.show();
        surfaces.append({"thumbnail", newest(), 48, true});
        ToolTips::show(u"Recortar la imagen"_s, {700, 100, 40, 28});
        surfaces.append({"tool tip", newest(), 0, false});
        letPass(600);
    }

    /// The window that was shown last.
    QWidget* newest()
    {
        QWidget* found = nullptr;
        for (auto* widget : QApplication::topLevelWidgets()) {
            const bool known = std::ranges::any_of(
                surfaces, [&](const Surface& surface) { return surface.window == widget; });
            if (widget->isVisible() && !known && widget != &ground)
                found = widget;
        }
        return found;
    }

    /// Every surface as it must look now.
    void expectAllRight(bool composited, const QString& when)
    {
        ASSERT_TRUE(waitUntil([&] { return WindowSystem::current().hasCompositor() == composited; }));
        letPass(500); // all has been painted
        const auto screen = pictureByOthers();
        for (const auto& surface : surfaces) {
            SCOPED_TRACE(surface.name + when.toStdString());
            ASSERT_TRUE(surface.window && surface.window->isVisible());
            const auto seen = look(*surface.window, surface.margin, screen);
            EXPECT_EQ(seen.uncovered, 0);
            EXPECT_EQ(seen.strange, 0) << "a frame that is not the ground";
            EXPECT_EQ(seen.shaded > 500, composited && surface.casts) << seen.shaded << " shaded pixels";
            // It lies outside of a round corner.
            const auto corner = screen.pixelColor(seen.sheet.topLeft());
            const bool showsGround = isGround(corner) || (composited && isShade(corner));
            EXPECT_TRUE(showsGround || !surface.round) << corner.name().toStdString();
        }
    }

    Ground ground;
    const QImage picture = plain({240, 150}, QColor(0xD9, 0x48, 0x0F));
    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
    Menu menu;
    ThumbnailController thumbnail{
        {picture, 1, u"Informe"_s}, {}, settings, {[](const auto&) {}, [](const auto&) {}}, nullptr};
    QList<Surface> surfaces;
};

void crash(QProcess& process)
{
    process.kill();
    process.waitForFinished(2000);
}

} // namespace

TEST_F(SheetTest, LooksRightWhileACompositorComesAndGoes)
{
    openAll();
    expectAllRight(false, u", opened without a compositor"_s);
    for (int round = 0; round < 2; ++round) {
        auto& compositor = desktop().startCompositor();
        expectAllRight(true, u", after a compositor started"_s);
        crash(compositor);
        expectAllRight(false, u", after it was killed"_s);
    }
}

TEST_F(SheetTest, LooksRightWithoutTheCompositorUnderWhichItOpened)
{
    auto& compositor = desktop().startCompositor();
    ASSERT_TRUE(waitUntil([] { return WindowSystem::current().hasCompositor(); }));
    openAll();
    expectAllRight(true, u", opened under a compositor"_s);
    crash(compositor);
    expectAllRight(false, u", after it was killed"_s);
    menu.close();
    menu.popUpAt({80, 80});
    surfaces.removeIf([](const Surface& surface) { return !surface.window; });
    EXPECT_EQ(surfaces.size(), 4) << "but for the tool tip, which went with the menu";
    expectAllRight(false, u", opened again"_s);
    desktop().startCompositor();
    menu.close();
    menu.popUpAt({80, 80});
    expectAllRight(true, u", opened again after another started"_s);
}
