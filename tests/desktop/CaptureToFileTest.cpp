// SPDX-License-Identifier: MIT

// A capture from a shell into a file or a pipe, with and without the program running.

#include "Desktop.h"
#include "platform/base/Files.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScreen>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace pintalux;
using namespace pintalux::test;

namespace {

const QRect area(200, 150, 120, 80);

class CaptureToFile : public testing::Test {
protected:
    void SetUp() override
    {
        const QJsonObject settings{{u"autoSave"_s, true}, {u"autoCopy"_s, true},
            {u"afterCapture"_s, u"editor"_s}, {u"saveFolder"_s, home.filePath(u"capturas"_s)},
            {u"hasLaunchedBefore"_s, true}};
        makeFolders(home.filePath(u"config/pintalux"_s));
        replaceFile(home.filePath(u"config/pintalux/defaults.json"_s), QJsonDocument(settings).toJson());
        QGuiApplication::clipboard()->setText(u"antes"_s);
        before = pictureByOthers();
    }

    void start(QProcess& process, const QStringList& arguments)
    {
        auto environment = desktop().environment();
        environment.insert(u"XDG_CONFIG_HOME"_s, home.filePath(u"config"_s));
        process.setProcessEnvironment(environment);
        process.start(QString::fromUtf8(PINTALUX_PROGRAM), arguments);
        ASSERT_TRUE(process.waitForStarted());
    }

    void startProgram()
    {
        start(program, {u"--trace"_s});
        ASSERT_TRUE(waitUntil([&] { return program.readAllStandardError().contains("en marcha"); }, 10000));
        ASSERT_TRUE(waitUntil([&] { return differingPixels(pictureByOthers(), before) == 0; }, 6000));
    }

    /// The overlay darkens what is not selected.
    bool overlayIsUp() const
    {
        return waitUntil([&] { return differingPixels(pictureByOthers(), before) > 1000; }, 10000);
    }

    static void dragOverArea()
    {
        const auto end = area.bottomRight() + QPoint(1, 1);
        xdotool(u"mousemove %1 %2 mousedown 1 mousemove 230 180 mousemove %3 %4 mouseup 1"_s.arg(area.x())
                    .arg(area.y())
                    .arg(end.x())
                    .arg(end.y()));
    }

    void expectNothingElse() const
    {
        EXPECT_EQ(QGuiApplication::clipboard()->text(), u"antes");
        EXPECT_FALSE(QDir(home.filePath(u"capturas"_s)).exists());
        EXPECT_TRUE(waitUntil([&] { return differingPixels(pictureByOthers(), before) == 0; }))
            << "an editor";
    }

    void TearDown() override
    {
        if (program.state() == QProcess::NotRunning)
            return;
        program.terminate();
        EXPECT_TRUE(program.waitForFinished(5000));
    }

    const DemoWindow window{u"Fondo"_s, u"500x400+150+100"_s, u"#3B6FE0"_s};
    QTemporaryDir home;
    QImage before;
    QProcess program;
};

} // namespace

TEST_F(CaptureToFile, AnAreaGoesThroughThePipeAndNowhereElse)
{
    for (const bool isRunning : {false, true}) {
        if (isRunning)
            startProgram();
        QProcess capture;
        start(capture, {u"--capture"_s, u"area"_s, u"--output"_s, u"-"_s});
        ASSERT_TRUE(overlayIsUp()) << capture.readAllStandardError().constData();
        dragOverArea();
        ASSERT_TRUE(capture.waitForFinished(10000));
        EXPECT_EQ(capture.exitCode(), 0) << capture.readAllStandardError().constData();
        const auto picture = QImage::fromData(capture.readAllStandardOutput(), "png");
        ASSERT_EQ(picture.size(), area.size()) << isRunning;
        EXPECT_EQ(differingPixels(picture.convertToFormat(QImage::Format_RGB32), before.copy(area)), 0);
        expectNothingElse();
    }
}

TEST_F(CaptureToFile, WhoCancelsIsToldApartFromWhatFailed)
{
    startProgram();
    QProcess first;
    start(first, {u"--capture=color"_s, u"--output=color.txt"_s});
    ASSERT_TRUE(overlayIsUp());
    QProcess second;
    start(second, {u"--capture"_s, u"window"_s, u"--output"_s, u"-"_s});
    ASSERT_TRUE(second.waitForFinished(5000)) << "it waits behind the other";
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_TRUE(QString::fromUtf8(second.readAllStandardError()).contains(u"Ya se está eligiendo algo"));
    xdotool(u"key Escape"_s);
    ASSERT_TRUE(first.waitForFinished(5000));
    EXPECT_EQ(first.exitCode(), 3);
    EXPECT_FALSE(QFile::exists(u"color.txt"_s));

    QProcess third; // somebody ends the command: its selection leaves the screen
    start(third, {u"--capture"_s, u"area"_s, u"--output"_s, u"-"_s});
    ASSERT_TRUE(overlayIsUp());
    third.kill();
    third.waitForFinished();
    expectNothingElse();
}

TEST_F(CaptureToFile, AScreenIsTakenByItsNameAndPicturesThatCannotBeOpenedAreTold)
{
    startProgram();
    const auto name = QGuiApplication::primaryScreen()->name();
    const auto path = home.filePath(u"pantalla.png"_s);
    desktop().run(QString::fromUtf8(PINTALUX_PROGRAM),
        {u"--capture"_s, u"fullScreen"_s, u"--screen"_s, name, u"--output"_s, path});
    EXPECT_EQ(differingPixels(QImage(path).convertToFormat(QImage::Format_RGB32), before), 0);
    const auto failsWith = [&](const QStringList& arguments, const QString& sentence) {
        QProcess process;
        start(process, arguments);
        EXPECT_TRUE(process.waitForFinished(5000));
        EXPECT_EQ(process.exitCode(), 1);
        const auto said = QString::fromUtf8(process.readAllStandardError());
        EXPECT_TRUE(said.contains(sentence)) << said.toStdString();
    };
    failsWith({u"--capture"_s, u"fullScreen"_s, u"--screen"_s, u"NADA-1"_s, u"--output"_s, path},
        u"No hay ninguna pantalla «NADA-1»; hay: "_s + name);
    failsWith({u"nada.png"_s}, u"nada.png"_s);
    expectNothingElse();
}
