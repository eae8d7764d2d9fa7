// SPDX-License-Identifier: MIT

// Freezing, choosing and keeping on a real Wayland compositor with an ordinary screen and one of scale 1.5.

#include "Desktop.h"
#include "WaylandSession.h"
#include "platform/base/Files.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

using namespace pintalux;
using namespace pintalux::test;

namespace {

const auto leftOutput = u"HEADLESS-1"_s;
const auto rightOutput = u"HEADLESS-2"_s; // at 1.5, its corner at 1280, 0

class Wayland : public testing::Test {
protected:
    WaylandSession session;
    QTemporaryDir folder;
    QImage left;
    QImage right;

    void SetUp() override
    {
        // One window on each output.
        session.tell(u"focus output "_s + leftOutput);
        session.start(QStringLiteral(PINTALUX_DEMO_WINDOW),
            {u"--title"_s, u"Informe"_s, u"--geometry"_s, u"420x300+0+0"_s, u"--color"_s, u"#3B6FE0"_s});
        ASSERT_TRUE(waitUntil(
            [&] { return session.pictureByOthers(leftOutput).pixelColor(600, 30) == QColor(0x3b6fe0); }));
        session.tell(u"focus output "_s + rightOutput);
        session.start(QStringLiteral(PINTALUX_DEMO_WINDOW),
            {u"--title"_s, u"Plan"_s, u"--geometry"_s, u"420x300+0+0"_s, u"--color"_s, u"#D0562B"_s});
        ASSERT_TRUE(waitUntil(
            [&] { return session.pictureByOthers(rightOutput).pixelColor(700, 45) == QColor(0xd0562b); }));
        look();
    }

    void look()
    {
        left = session.restingPicture(leftOutput);
        right = session.restingPicture(rightOutput);
    }

    /// Begins a selection with the pointer at a place of the desktop.
    QProcess& select(const QString& mode, QPoint pointer)
    {
        session.hands(u"move %1 %2"_s.arg(pointer.x()).arg(pointer.y()));
        look(); // without a graphics card the pointer is in every picture
        auto& process = session.start(QStringLiteral(PINTALUX_SELECT_ON_SCREENS), {mode, folder.path()});
        EXPECT_TRUE(waitUntil([&] {
            return differingPixels(session.pictureByOthers(leftOutput), left) > 1000
                || differingPixels(session.pictureByOthers(rightOutput), right) > 1000;
        })) << "nothing is shown";
        letPass(150);
        return process;
    }

    static std::string outcome(QProcess& process)
    {
        if (!waitUntil([&] { return process.state() == QProcess::NotRunning; }, 5000))
            return "still open";
        return process.readAllStandardOutput().trimmed().toStdString();
    }

    QImage saved(const QString& name) const
    {
        return QImage(folder.filePath(name)).convertToFormat(QImage::Format_RGB32);
    }
};

} // namespace

TEST_F(Wayland, APictureOfAScreenIsWhatAnotherProgramTakes)
{
    const auto taken = [&](const QString& output) {
        return QImage::fromData(
            session.run(QString::fromUtf8(PINTALUX_PROGRAM),
                {u"--capture"_s, u"fullScreen"_s, u"--screen"_s, output, u"--output"_s, u"-"_s}))
            .convertToFormat(QImage::Format_RGB32);
    };
    EXPECT_EQ(differingPixels(taken(leftOutput), left), 0);
    EXPECT_EQ(right.size(), QSize(1500, 900));
    EXPECT_EQ(differingPixels(taken(rightOutput), right), 0);
    for (const auto& turned : {u"90"_s, u"flipped"_s, u"flipped-270"_s}) {
        session.tell(u"output %1 transform %2"_s.arg(rightOutput, turned));
        look();
        EXPECT_EQ(differingPixels(taken(rightOutput), right), 0) << turned.toStdString();
    }
}

TEST_F(Wayland, TheFrozenScreensAreTheScreensPixelForPixel)
{
    auto& selecting = select(u"color"_s, {700, 500});
    const auto shownLeft = session.restingPicture(leftOutput);
    const auto shownRight = session.restingPicture(rightOutput);
    EXPECT_EQ(differingPixels(shownRight, right), 0);
    // The bar and the loupe are on the pointer's screen.
    const QRect untouched(0, 80, 650, 720);
    EXPECT_EQ(differingPixels(shownLeft.copy(untouched), left.copy(untouched)), 0);
    EXPECT_GT(differingPixels(shownLeft, left), 10000) << "no bar and no loupe";

    // They go where the pointer goes, and leave nothing behind.
    session.hands(u"move 1700 300"_s);
    EXPECT_EQ(differingPixels(session.restingPicture(leftOutput), left), 0);
    EXPECT_GT(differingPixels(session.restingPicture(rightOutput), right), 10000);
    session.key(u"c"_s);
    EXPECT_EQ(outcome(selecting), "color " + right.pixelColor(630, 450).name().toUpper().toStdString());
}

TEST_F(Wayland, ASelectionIsCutFromItsOwnScreen)
{
    auto& onRight = select(u"area"_s, {1600, 300});
    session.drag({1380, 100}, {1580, 300});
    EXPECT_EQ(outcome(onRight), "image 300x300 1.5");
    EXPECT_EQ(differingPixels(saved(u"selected.png"_s), right.copy(150, 150, 300, 300)), 0);

    // The session tells of no windows: the mode for them takes areas.
    auto& instead = select(u"window"_s, {600, 300});
    session.drag({120, 140}, {420, 340});
    EXPECT_EQ(outcome(instead), "image 300x200 1");
    EXPECT_EQ(differingPixels(saved(u"selected.png"_s), left.copy(120, 140, 300, 200)), 0);
}

TEST_F(Wayland, KeysActOnTheScreenUnderThePointer)
{
    auto& whole = select(u"area"_s, {600, 300});
    session.hands(u"move 1700 300"_s);
    session.key(u"Return"_s);
    EXPECT_EQ(outcome(whole), "image 1500x900 1.5");
    EXPECT_EQ(differingPixels(saved(u"selected.png"_s), right), 0);

    auto& escaped = select(u"text"_s, {1700, 300});
    session.key(u"Escape"_s);
    EXPECT_EQ(outcome(escaped), "cancelled");
    EXPECT_EQ(differingPixels(session.restingPicture(rightOutput), right), 0);
}

TEST_F(Wayland, AScreenThatChangesEndsItAsCancelled)
{
    auto& selecting = select(u"area"_s, {600, 300});
    session.tell(u"output HEADLESS-2 scale 2"_s);
    EXPECT_EQ(outcome(selecting), "cancelled");
}

TEST_F(Wayland, ACommandFromAKeyIsWhatTheRunningProgramDoes)
{
    const QJsonObject settings{{u"autoSave"_s, true}, {u"autoCopy"_s, true},
        {u"afterCapture"_s, u"copyOnly"_s}, {u"saveFolder"_s, folder.filePath(u"capturas"_s)},
        {u"hasLaunchedBefore"_s, true}};
    const auto configuration = session.environment().value(u"HOME"_s) + u"/.config/pintalux"_s;
    makeFolders(configuration);
    replaceFile(configuration + u"/defaults.json"_s, QJsonDocument(settings).toJson());
    const auto program = QString::fromUtf8(PINTALUX_PROGRAM);
    QProcess running;
    running.setProcessEnvironment(session.environment());
    running.start(program, {u"--trace"_s});
    ASSERT_TRUE(waitUntil([&] { return running.readAllStandardError().contains("en marcha"); }));
    session.hands(u"move 1700 300"_s);
    look();
    session.run(program, {u"--capture"_s, u"area"_s}); // handed over: it returns at once
    const qsizetype most = qsizetype(right.width()) * right.height() / 2;
    ASSERT_TRUE(
        waitUntil([&] { return differingPixels(session.pictureByOthers(rightOutput), right) > most; }));
    letPass(150);
    session.drag({1380, 100}, {1580, 300});

    // No window of ours has the focus, and the message that tells of it takes it from nobody.
    const auto expected = right.copy(150, 150, 300, 300);
    const auto pasted = [&] {
        return QImage::fromData(session.run(u"wl-paste"_s, {u"--type"_s, u"image/png"_s}))
            .convertToFormat(QImage::Format_RGB32);
    };
    EXPECT_TRUE(waitUntil([&] { return differingPixels(pasted(), expected) == 0; }, 5000));
    EXPECT_TRUE(session.run(u"wl-paste"_s, {u"--list-types"_s}).contains("image/png"));
    const QDir folderOfCaptures(folder.filePath(u"capturas"_s));
    ASSERT_TRUE(waitUntil([&] { return !folderOfCaptures.entryList(QDir::Files).isEmpty(); }, 5000));
    const QImage file(folderOfCaptures.filePath(folderOfCaptures.entryList(QDir::Files).constFirst()));
    EXPECT_EQ(differingPixels(file.convertToFormat(QImage::Format_RGB32), expected), 0);
    EXPECT_EQ(running.state(), QProcess::Running);
    running.terminate();
    EXPECT_TRUE(running.waitForFinished(patience));
    EXPECT_EQ(running.exitStatus(), QProcess::NormalExit);
}
