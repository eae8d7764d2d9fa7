// SPDX-License-Identifier: MIT

// The real executable as a person uses it: hot keys and mouse from outside, files and clipboard read back.

#include "ProgramStage.h"
#include "platform/x11/XcbConnection.h"

using namespace pintalux::test;

namespace {

class ProgramTest : public ProgramStage {
protected:
    void SetUp() override { startProgram(); }

    void pressHotKey(int digit)
    {
        xdotool(u"key ctrl+shift+%1"_s.arg(digit));
        ASSERT_TRUE(reaches("superposición pintada"));
    }
};

struct ProgramOnASlowDiskTest : ProgramTest {
    ProgramOnASlowDiskTest()
    {
        environment.insert(u"LD_PRELOAD"_s, QStringLiteral(PINTALUX_SLOW_DISK));
        environment.insert(u"SLOW_DISK"_s, captures());
        environment.insert(
            u"ASAN_OPTIONS"_s, qEnvironmentVariable("ASAN_OPTIONS") + u":verify_asan_link_order=0"_s);
    }
};

} // namespace

TEST_F(ProgramTest, AHotKeyAndADragSaveAndCopyJustThePixelsUnderTheSelection)
{
    const DemoWindow window(u"Fondo"_s, u"500x400+150+100"_s, u"#3B6FE0"_s);
    const auto before = pictureByOthers();
    pressHotKey(1);
    xdotool(u"mousemove 180 140 mousedown 1 mousemove 300 200 mousemove 520 391 mouseup 1"_s);
    const auto expected = before.copy(180, 140, 340, 251);
    EXPECT_EQ(differingPixels(saved(), expected), 0);
    EXPECT_EQ(differingPixels(copied(), expected), 0);
    EXPECT_TRUE(savedName.startsWith(u"Pintalux 2"));
    EXPECT_TRUE(waitUntil([&] { return activeWindow() == window.id(); })) << "the focus is not back";
}

TEST_F(ProgramTest, AMenuThatIsOpenIsInThePictureAndClosesWithoutBeingUsed)
{
    const DemoWindow window(u"Fondo"_s, u"500x400+150+100"_s, u"#3B6FE0"_s);
    const auto closed = pictureByOthers();
    const auto openMenu = [&](const QString& more) {
        xdotool(u"mousemove 250 250 click 3"_s + more);
        ASSERT_TRUE(waitUntil([&] { return differingPixels(pictureByOthers(), closed) > 3000; }));
        letPass(300);
    };
    for (const auto& opening : {QString(), u" sleep 0.3 key Up Right"_s}) { // with its submenu, too
        openMenu(opening);
        const auto before = pictureByOthers();
        pressHotKey(1);
        letPass(700); // the menu closes, one level after the other, on a slow machine later
        const auto frozen = pictureByOthers();
        ASSERT_TRUE(waitUntil([&] {
            xdotool(u"mousemove 240 240 mousedown 1 mousemove 300 300"_s);
            letPass(150);
            const bool selects = differingPixels(pictureByOthers(), frozen) > 1000;
            if (!selects)
                xdotool(u"mouseup 1"_s);
            return selects;
        }));
        xdotool(u"mousemove 520 391 mouseup 1"_s);
        EXPECT_EQ(differingPixels(saved(), before.copy(240, 240, 280, 151)), 0);
        EXPECT_TRUE(waitUntil([&] { return differingPixels(pictureByOthers(), closed) < 100; }))
            << "menus are left";
        EXPECT_TRUE(QDir(captures()).removeRecursively());
    }
    const auto title = desktop().run(u"xdotool"_s, {u"getwindowname"_s, window.id()});
    EXPECT_EQ(title.trimmed(), "Fondo") << "a row was chosen";
}

TEST_F(ProgramTest, WhoHoldsTheKeyboardWithoutAMenuKeepsItAndGetsNoKeyFromUs)
{
    const x11::XcbConnection game(desktop().display());
    const auto hold = game.reply<xcb_grab_keyboard_reply_t>(xcb_grab_keyboard(
        game.get(), 0, game.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)
                                                                .sequence);
    ASSERT_TRUE(hold && hold->status == XCB_GRAB_STATUS_SUCCESS);
    const auto before = pictureByOthers();
    pressHotKey(1);
    EXPECT_TRUE(waitUntil([&] { return differingPixels(pictureByOthers(), before) == 0; }))
        << "the overlay and what it said are still there";
    bool gotEscape = false;
    while (const x11::Reply<xcb_generic_event_t> event{xcb_poll_for_event(game.get())})
        if ((event->response_type & 0x7f) == XCB_KEY_PRESS)
            gotEscape |= reinterpret_cast<const xcb_key_press_event_t&>(*event).detail == 9;
    EXPECT_FALSE(gotEscape) << "it would pause a game";
}

TEST_F(ProgramTest, WindowModeTakesTheWindowOnTopWholeUnderItsTitle)
{
    const DemoWindow below(u"Debajo"_s, u"500x400+150+100"_s, u"#3B6FE0"_s);
    const DemoWindow above(u"Año: Q1/Q2"_s, u"400x300+300+200"_s, u"#D9480F"_s);
    const auto candidate = candidateOf(finished(ScreenCapture::freezeAllDisplays()), above.processId());
    ASSERT_TRUE(candidate);
    const auto expected = pictureByOthers().copy(candidate->frame.toRect());
    pressHotKey(1);
    xdotool(u"key space mousemove 450 350 click 1"_s);
    EXPECT_EQ(differingPixels(saved(), expected), 0);
    EXPECT_TRUE(savedName.contains(u"Año- Q1-Q2 2")) << savedName.toStdString();
}

TEST_F(ProgramTest, TheTextUnderTheSelectionIsCopiedLineByLine)
{
    const DemoWindow window(u"Fondo"_s, u"560x400+150+100"_s, u"#3B6FE0"_s);
    pressHotKey(4);
    xdotool(u"mousemove 190 188 mousedown 1 mousemove 300 200 mousemove 680 300 mouseup 1"_s);
    const auto expected = u"Las ventas del primer semestre crecieron un 18 %.\n"
                          "La campaña de otoño empieza el 3 de septiembre.\n"
                          "Pendiente: revisar el presupuesto de diseño."_s;
    EXPECT_TRUE(waitUntil([&] { return QGuiApplication::clipboard()->text() == expected; }))
        << QGuiApplication::clipboard()->text().toStdString();
    EXPECT_TRUE(waitUntil([&] { return activeWindow() == window.id(); })) << "the focus is not back";
}

TEST_F(ProgramOnASlowDiskTest, ACaptureIsCopiedAtOnceAndTheEndWaitsForItsFile)
{
    const auto before = pictureByOthers();
    xdotool(u"key ctrl+shift+3"_s);
    EXPECT_EQ(differingPixels(copied(), before), 0);
    EXPECT_TRUE(QDir(captures()).entryList({u"*.png"_s}).isEmpty()) << "the disk was not slow";
    asked(u"terminate"_s);
    expectEnd();
    EXPECT_EQ(differingPixels(saved(), before), 0) << "what was on its way is lost";
}

TEST_F(ProgramTest, OverTheBusAndFromASecondStartItDoesWhatItKnowsAndRefusesTheRest)
{
    EXPECT_EQ(asked(u"nada"_s), "");
    EXPECT_EQ(asked(u"editorUndo"_s), "") << "no editor's business";
    EXPECT_EQ(asked(u"area"_s), "()\n");
    EXPECT_TRUE(reaches("superposición pintada"));
    xdotool(u"key Escape"_s);
    QProcess second;
    start(second, {u"--capture"_s, u"color"_s});
    ASSERT_TRUE(second.waitForFinished(patience));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(reaches("superposición pintada"));
    xdotool(u"key Escape"_s);
}

TEST_F(ProgramTest, ItEndsCleanlyWhileItReads)
{
    const DemoWindow window(u"Fondo"_s, u"1200x740+20+20"_s, u"#3B6FE0"_s, desktop(),
        {u"--text"_s, u"Una línea de texto que hay que leer entera, palabra por palabra.\n"_s.repeated(24)});
    pressHotKey(4);
    xdotool(u"mousemove 30 90 mousedown 1 mousemove 300 200 mousemove 1200 750 mouseup 1"_s);
    letPass(500); // long before the last line is read
    EXPECT_FALSE(QGuiApplication::clipboard()->text().contains(u"Una línea")) << "it has been read already";
    asked(u"terminate"_s);
    expectEnd();
}
