// SPDX-License-Identifier: MIT

// A capture from a shell into a file or a pipe, with and without the program running.

#include "ProgramStage.h"

using namespace pintalux::test;

namespace {

const QRect area(200, 150, 120, 80);

class CaptureToFile : public ProgramStage {
protected:
    CaptureToFile()
        : ProgramStage({{u"afterCapture"_s, u"editor"_s}})
    {
    }
    void SetUp() override { before = pictureByOthers(); }

    /// The overlay darkens what is not selected.
    bool overlayIsUp() const
    {
        return waitUntil([&] { return differingPixels(pictureByOthers(), before) > 1000; }, 10000);
    }

    void expectNothingElse() const
    {
        EXPECT_EQ(QGuiApplication::clipboard()->text(), u"antes");
        EXPECT_FALSE(QDir(captures()).exists());
        EXPECT_TRUE(waitUntil([&] { return differingPixels(pictureByOthers(), before) == 0; }))
            << "an editor";
    }

    /// Ends with `code` and says `sentence`.
    static void expectFailure(QProcess& process, int code, const QString& sentence)
    {
        ASSERT_TRUE(process.waitForFinished(5000)) << "it waits behind another";
        EXPECT_EQ(process.exitCode(), code);
        const auto said = QString::fromUtf8(process.readAllStandardError());
        EXPECT_TRUE(said.contains(sentence)) << said.toStdString();
    }

    const DemoWindow window{u"Fondo"_s, u"500x400+150+100"_s, u"#3B6FE0"_s};
    QImage before;
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
        xdotool(u"mousemove 200 150 mousedown 1 mousemove 230 180 mousemove 320 230 mouseup 1"_s);
        ASSERT_TRUE(capture.waitForFinished(10000));
        EXPECT_EQ(capture.exitCode(), 0) << capture.readAllStandardError().constData();
        const auto picture = QImage::fromData(capture.readAllStandardOutput(), "png");
        EXPECT_EQ(differingPixels(picture.convertToFormat(QImage::Format_RGB32), before.copy(area)), 0);
        expectNothingElse();
    }
}

TEST_F(CaptureToFile, WhoCancelsIsToldApartFromWhatFailed)
{
    startProgram();
    QProcess first, second, third;
    const auto output = home.filePath(u"color.txt"_s);
    start(first, {u"--capture=color"_s, u"--output=%1"_s.arg(output)});
    ASSERT_TRUE(overlayIsUp());
    start(second, {u"--capture"_s, u"window"_s, u"--output"_s, u"-"_s});
    expectFailure(second, 1, u"Ya se está eligiendo algo"_s);
    xdotool(u"key Escape"_s);
    expectFailure(first, 3, {});
    EXPECT_FALSE(QFile::exists(output));

    // Somebody ends the command: its selection leaves the screen.
    start(third, {u"--capture"_s, u"area"_s, u"--output"_s, u"-"_s});
    ASSERT_TRUE(overlayIsUp());
    third.kill();
    third.waitForFinished();
    expectNothingElse();
}

TEST_F(CaptureToFile, AScreenIsTakenByItsNameBesideTheRunningProgram)
{
    startProgram();
    const auto name = QGuiApplication::primaryScreen()->name();
    const auto path = home.filePath(u"pantalla.png"_s);
    QProcess capture, wrong;
    start(capture, {u"--capture"_s, u"fullScreen"_s, u"--screen"_s, name, u"--output"_s, path});
    ASSERT_TRUE(capture.waitForFinished());
    EXPECT_EQ(differingPixels(QImage(path).convertToFormat(QImage::Format_RGB32), before), 0);
    start(wrong, {u"--capture"_s, u"fullScreen"_s, u"--screen"_s, u"NADA-1"_s, u"--output"_s, path});
    expectFailure(wrong, 1, u"No hay ninguna pantalla «NADA-1»; hay: "_s + name);
    expectNothingElse();
}
