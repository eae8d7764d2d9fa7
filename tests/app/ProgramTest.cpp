// SPDX-License-Identifier: MIT

// The real executable, run as a person would from a shell without any display.

#include "Pictures.h"

namespace {

struct Outcome {
    int status;
    QString output;
    QString errors;
};

class Program : public testing::Test {
protected:
    Outcome run(const QStringList& arguments, const QByteArray& input = {})
    {
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const auto* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QString::fromLatin1(name));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder.path());
        process.start(program, arguments);
        process.write(input);
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        written = process.readAllStandardOutput();
        return {process.exitCode(), QString::fromUtf8(written),
            QString::fromUtf8(process.readAllStandardError())};
    }

    void write(const QString& name, const QByteArray& bytes)
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    QString path(const QString& name) const { return folder.filePath(name); }

    void SetUp() override { ASSERT_TRUE(test::plain({200, 100}).save(path(u"in.png"_s))); }

    QTemporaryDir folder;
    QString program = QString::fromUtf8(PINTALUX_PROGRAM);
    QByteArray written; ///< to standard output, by the last run
};

} // namespace

TEST_F(Program, AnnotatesWithoutADisplay)
{
    write(u"marks.json"_s, R"({"pixelScale": 2, "annotations": [
        {"kind": "rectangle", "start": [20, 20], "end": [80, 80], "color": "#3A86FF", "lineWidth": 4, "filled": true},
        {"kind": "image", "start": [120, 60], "end": [180, 90], "image": "in.png"}],
        "beautify": {"enabled": true, "gradient": 3, "padding": 10, "shadow": false}})");
    const auto outcome
        = run({u"--annotate"_s, u"in.png"_s, u"--marks"_s, u"marks.json"_s, u"--output"_s, u"out.png"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.errors.toStdString();
    const QImage image(path(u"out.png"_s));
    EXPECT_EQ(image.size(), QSize(240, 140));
    EXPECT_EQ(image.pixelColor(20 + 50, 20 + 50), QColor(0x3A, 0x86, 0xFF));
    EXPECT_NEAR(image.dotsPerMeterX() * 0.0254, 144, 0.1);
}

TEST_F(Program, WhatCannotBeReadOrWrittenIsToldInOneLineAndLeavesNoFile)
{
    write(u"marks.json"_s, "{}");
    write(u"wrong.json"_s, R"({"annotations": [{"kind": "star"}]})");
    write(u"broken.png"_s, "no");
    const auto before = QDir(folder.path()).entryList(QDir::Files | QDir::Hidden);
    const QStringList rows[]{{u"missing.png"_s, u"marks.json"_s, u"out.png"_s},
        {u"broken.png"_s, u"marks.json"_s, u"out.png"_s}, {u"in.png"_s, u"wrong.json"_s, u"out.png"_s},
        {u"in.png"_s, u"marks.json"_s, u"nowhere/out.png"_s}, {u"in.png"_s, u"marks.json"_s, u"a.webp"_s}};
    for (const auto& row : rows) {
        const auto outcome = run({u"--annotate"_s, row[0], u"--marks"_s, row[1], u"--output"_s, row[2]});
        EXPECT_EQ(outcome.status, 1) << row.join(u' ').toStdString();
        EXPECT_EQ(outcome.errors.count(u'\n'), 1) << outcome.errors.toStdString();
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), before);
    }
}

TEST_F(Program, ReadsAndWritesThroughThePipe)
{
    write(u"marks.json"_s, R"({"$schema": "marcas.schema.json", "pixelScale": 2})");
    QFile picture(path(u"in.png"_s));
    ASSERT_TRUE(picture.open(QIODevice::ReadOnly));
    const auto outcome
        = run({u"--annotate=-"_s, u"--marks=marks.json"_s, u"--output=-"_s}, picture.readAll());
    EXPECT_EQ(outcome.status, 0) << outcome.errors.toStdString();
    const auto image = QImage::fromData(written, "png");
    EXPECT_EQ(image.size(), QSize(200, 100));
    EXPECT_NEAR(image.dotsPerMeterX() * 0.0254, 144, 0.1);

    const auto broken
        = run({u"--annotate"_s, u"-"_s, u"--marks"_s, u"marks.json"_s, u"--output"_s, u"-"_s}, "no");
    EXPECT_EQ(broken.status, 1);
    EXPECT_TRUE(broken.errors.contains(u"entrada estándar")) << broken.errors.toStdString();
    EXPECT_TRUE(written.isEmpty());
}

TEST_F(Program, TheNameOfTheFileDecidesWhatIsWritten)
{
    write(u"marks.json"_s, "{}");
    const auto writtenAs = [&](const QString& name) {
        return run({u"--annotate"_s, u"in.png"_s, u"--marks"_s, u"marks.json"_s, u"--output"_s, name}).status;
    };
    EXPECT_EQ(writtenAs(u"a.JPG"_s), 0);
    QImage jpeg;
    EXPECT_TRUE(jpeg.load(path(u"a.JPG"_s), "jpeg"));
    EXPECT_EQ(jpeg.pixelColor(100, 50), QColor(Qt::white));
    EXPECT_EQ(writtenAs(u"sin-nombre"_s), 0);
    EXPECT_TRUE(jpeg.load(path(u"sin-nombre"_s), "png"));
}

TEST_F(Program, ChecksAnswerInJson)
{
    const QStringList check{
        u"--annotate"_s, u"in.png"_s, u"--marks"_s, u"marks.json"_s, u"--check"_s, u"--json"_s};
    write(u"marks.json"_s, R"({"annotations": []})");
    EXPECT_EQ(run(check).output, u"{\"annotations\":0,\"ok\":true}\n");
    write(u"marks.json"_s, "{");
    const auto wrong = run(check);
    EXPECT_EQ(wrong.status, 1);
    const auto answer = QJsonDocument::fromJson(written);
    EXPECT_FALSE(answer[u"ok"_s].toBool(true));
    EXPECT_TRUE(answer[u"error"_s].toString().contains(u"no es JSON"));
}

TEST_F(Program, AFileLargerThanAllowedIsAnErrorAndLeavesNothing)
{
    write(u"marks.json"_s, "{}");
    ASSERT_TRUE(test::noise({300, 300}).save(path(u"in.png"_s))); // many times the allowed kilobyte
    program = u"/bin/sh"_s;
    const auto outcome
        = run({u"-c"_s, u"ulimit -f 2; exec \"$@\""_s, u"sh"_s, QString::fromUtf8(PINTALUX_PROGRAM),
            u"--annotate"_s, u"in.png"_s, u"--marks"_s, u"marks.json"_s, u"--output"_s, u"out.png"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.errors.contains(u"es demasiado grande para este disco"))
        << outcome.errors.toStdString();
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
        (QStringList{u"in.png"_s, u"marks.json"_s}));
}

TEST_F(Program, WritesTheIconInTenSizes)
{
    EXPECT_EQ(run({u"--render-icon"_s, u"new/icons"_s}).status, 0);
    const QDir icons(path(u"new/icons"_s));
    EXPECT_EQ(icons.entryList({u"*.png"_s}).size(), 10);
    const QImage icon(icons.filePath(u"icon_32x32@2x.png"_s));
    EXPECT_EQ(icon.size(), QSize(64, 64));
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
    EXPECT_GT(icon.pixelColor(32, 32).alpha(), 250);
}

TEST_F(Program, AnswersInSpanishAndRefusesWhatItDoesNotKnow)
{
    EXPECT_TRUE(run({u"--help"_s}).output.contains(u"--annotate IMAGEN"));
    EXPECT_TRUE(run({u"--version"_s}).output.startsWith(u"Pintalux "));
    const auto wrong = run({u"--marcas"_s});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_TRUE(wrong.errors.contains(u"Opción desconocida: --marcas"));
    EXPECT_TRUE(wrong.output.isEmpty());
    const auto blind = run({u"--selftest"_s, u"out"_s});
    EXPECT_EQ(blind.status, 1);
    EXPECT_TRUE(blind.errors.contains(u"No hay ninguna pantalla"));
}
