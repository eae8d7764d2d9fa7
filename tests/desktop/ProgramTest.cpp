// SPDX-License-Identifier: MIT

// The real executable as a person uses it: hot keys and mouse from outside, files and clipboard read back.

#include "Desktop.h"
#include "platform/base/Files.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

using namespace Qt::StringLiterals;

using namespace pintalux;
using namespace pintalux::test;

namespace {

/// Milestones that the program writes with `--trace`.
const QByteArray ready = "en marcha";
const QByteArray overlayPainted = "superposición pintada";

/// The program with settings and a captures folder of its own.
class ProgramTest : public testing::Test {
protected:
    void SetUp() override
    {
        const QJsonObject settings{{u"autoSave"_s, true}, {u"autoCopy"_s, true},
            {u"afterCapture"_s, u"copyOnly"_s}, {u"saveFolder"_s, captures()},
            {u"hasLaunchedBefore"_s, true}};
        makeFolders(home.filePath(u"config/pintalux"_s));
        replaceFile(home.filePath(u"config/pintalux/defaults.json"_s), QJsonDocument(settings).toJson());
        QGuiApplication::clipboard()->setText(u"antes"_s);

        const auto empty = pictureByOthers();
        auto environment = desktop().environment();
        environment.insert(u"XDG_CONFIG_HOME"_s, home.filePath(u"config"_s));
        if (diskIsSlow) {
            environment.insert(u"LD_PRELOAD"_s, QStringLiteral(PINTALUX_SLOW_DISK));
            environment.insert(u"SLOW_DISK"_s, captures());
            environment.insert(
                u"ASAN_OPTIONS"_s, qEnvironmentVariable("ASAN_OPTIONS") + u":verify_asan_link_order=0"_s);
        }
        program.setProcessEnvironment(environment);
        program.start(QString::fromUtf8(PINTALUX_PROGRAM), {u"--trace"_s});
        ASSERT_TRUE(reaches(ready));
        // It says that this desktop has no tray; that message must have come and gone.
        waitUntil([&] { return differingPixels(pictureByOthers(), empty) > 0; }, 5000);
        ASSERT_TRUE(waitUntil([&] { return differingPixels(pictureByOthers(), empty) == 0; }));
    }

    void TearDown() override
    {
        if (hasEnded)
            return;
        printed += program.readAllStandardError();
        ASSERT_EQ(program.state(), QProcess::Running)
            << "it ended with " << program.exitCode()
            << ", crashed: " << (program.exitStatus() == QProcess::CrashExit) << "\n"
            << printed.constData();
        program.terminate();
        EXPECT_TRUE(program.waitForFinished(patience));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit) << "killed instead of asked";
        EXPECT_EQ(program.exitCode(), 128 + SIGTERM);
    }

    /// Waits for the next line with this milestone.
    bool reaches(const QByteArray& milestone)
    {
        return waitUntil(
            [&] {
                printed += program.readAllStandardError();
                const auto at = printed.indexOf(milestone);
                if (at >= 0)
                    printed.remove(0, at + milestone.size());
                return at >= 0;
            },
            10000);
    }

    void pressHotKey(int digit)
    {
        xdotool(u"key ctrl+shift+%1"_s.arg(digit));
        ASSERT_TRUE(reaches(overlayPainted));
    }

    QString captures() const { return home.filePath(u"capturas"_s); }

    /// The one picture that was saved.
    QImage saved()
    {
        QStringList names;
        waitUntil([&] { return !(names = QDir(captures()).entryList({u"*.png"_s})).isEmpty(); });
        savedName = names.value(0);
        return QImage(QDir(captures()).filePath(savedName)).convertToFormat(QImage::Format_RGB32);
    }

    static QImage copied()
    {
        const auto* offered = QGuiApplication::clipboard()->mimeData();
        waitUntil(
            [&] { return (offered = QGuiApplication::clipboard()->mimeData())->hasFormat(u"image/png"_s); });
        return QImage::fromData(offered->data(u"image/png"_s)).convertToFormat(QImage::Format_RGB32);
    }

    static QString activeWindow()
    {
        return QString::fromUtf8(desktop().run(u"xdotool"_s, {u"getactivewindow"_s})).trimmed();
    }

    QTemporaryDir home;
    QProcess program;
    QByteArray printed;
    QString savedName;
    bool hasEnded = false; ///< as the test asked it to
    bool diskIsSlow = false;
};

struct ProgramOnASlowDiskTest : ProgramTest {
    ProgramOnASlowDiskTest() { diskIsSlow = true; }
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

TEST_F(ProgramTest, TheColourUnderThePointerIsCopied)
{
    const DemoWindow window(u"Color"_s, u"500x400+150+100"_s, u"#2E9E6B"_s);
    pressHotKey(5);
    xdotool(u"mousemove 161 146 click 1"_s);
    EXPECT_TRUE(waitUntil([] { return QGuiApplication::clipboard()->text() == u"#2E9E6B"; }))
        << QGuiApplication::clipboard()->text().toStdString();
    EXPECT_FALSE(QDir(captures()).exists());
}

TEST_F(ProgramTest, EscapeLeavesEverythingAsItWas)
{
    const DemoWindow other(u"Otra"_s, u"300x200+700+100"_s, u"#3B6FE0"_s);
    const DemoWindow window(u"Activa"_s, u"500x400+150+100"_s, u"#2E9E6B"_s);
    ASSERT_EQ(activeWindow(), window.id());
    const auto before = pictureByOthers();
    pressHotKey(1);
    EXPECT_GT(differingPixels(pictureByOthers(), before), 1000);
    xdotool(u"key ctrl+shift+5"_s); // while an overlay is up, a hot key does nothing
    xdotool(u"mousemove 200 200 mousedown 1 mousemove 300 300 key Escape mouseup 1"_s);
    EXPECT_GT(differingPixels(pictureByOthers(), before), 1000) << "the first one only ends the drag";
    xdotool(u"key Escape"_s);
    EXPECT_TRUE(waitUntil([&] { return differingPixels(pictureByOthers(), before) == 0; }));
    EXPECT_TRUE(waitUntil([&] { return activeWindow() == window.id(); }));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"antes");
    EXPECT_FALSE(QDir(captures()).exists());
}

TEST_F(ProgramTest, ASecondStartHandsItsWishOver)
{
    auto environment = desktop().environment();
    QProcess second;
    second.setProcessEnvironment(environment);
    second.start(QString::fromUtf8(PINTALUX_PROGRAM), {u"--capture"_s, u"color"_s});
    ASSERT_TRUE(second.waitForFinished(patience));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(reaches(overlayPainted));
    xdotool(u"key Escape"_s);
}

TEST_F(ProgramTest, AFullScreenGoesStraightToAFileBesideTheRunningProgram)
{
    const DemoWindow window(u"Fondo"_s, u"500x400+150+100"_s, u"#3B6FE0"_s);
    const auto before = pictureByOthers();
    const auto path = home.filePath(u"pantalla.png"_s);
    desktop().run(
        QString::fromUtf8(PINTALUX_PROGRAM), {u"--capture"_s, u"fullScreen"_s, u"--output"_s, path});
    EXPECT_EQ(differingPixels(QImage(path).convertToFormat(QImage::Format_RGB32), before), 0);

    xdotool(u"key ctrl+shift+3"_s);
    EXPECT_EQ(differingPixels(saved(), before), 0);
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
    callProgram(u"ActivateAction"_s, {u"terminate"_s, u"[]"_s, u"{}"_s});
    ASSERT_TRUE(program.waitForFinished(8000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    hasEnded = true;
    EXPECT_EQ(differingPixels(saved(), before), 0) << "what was on its way is lost";
}

TEST_F(ProgramTest, OverTheBusItDoesWhatItKnowsAndRefusesTheRest)
{
    const auto asked = [](const QString& action) {
        return callProgram(u"ActivateAction"_s, {action, u"[]"_s, u"{}"_s});
    };
    EXPECT_EQ(asked(u"nada"_s), "");
    EXPECT_EQ(asked(u"editorUndo"_s), "") << "no editor's business";
    EXPECT_EQ(asked(u"area"_s), "()\n");
    EXPECT_TRUE(reaches(overlayPainted));
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
    callProgram(u"ActivateAction"_s, {u"terminate"_s, u"[]"_s, u"{}"_s});
    ASSERT_TRUE(program.waitForFinished(patience)) << "it hangs";
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    hasEnded = true;
}

TEST_F(ProgramTest, TaskBarsListItsDialogsOnlyBesideAWindow)
{
    const auto search = [](const QString& title) {
        return QString::fromLatin1(
            desktop().run(u"xdotool"_s, {u"search"_s, u"--sync"_s, u"--name"_s, u"^%1$"_s.arg(title)}))
            .trimmed();
    };
    const auto open = [](const QString& action) {
        callProgram(u"ActivateAction"_s, {action, u"[]"_s, u"{}"_s});
    };
    open(u"showAbout"_s);
    const auto about = search(u"Acerca de Pintalux"_s);
    const auto isListed = [&] {
        return !desktop()
                    .run(u"xprop"_s, {u"-id"_s, about, u"_NET_WM_STATE"_s})
                    .contains("_NET_WM_STATE_SKIP_TASKBAR");
    };
    EXPECT_TRUE(waitUntil([&] { return !isListed(); }));
    open(u"showPreferences"_s);
    const auto preferences = search(u"Ajustes de Pintalux"_s);
    EXPECT_TRUE(waitUntil([&] { return isListed(); }));
    xdotool(u"windowactivate --sync %1 key Escape"_s.arg(preferences));
    EXPECT_TRUE(waitUntil([&] { return !isListed(); }));
}
