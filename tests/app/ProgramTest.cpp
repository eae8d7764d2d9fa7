// SPDX-License-Identifier: MIT

// The real executable, run as a person would from a shell without any display.

#include "platform/graphics/Color.h"

#include <QDir>
#include <QImage>
#include <QJsonDocument>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace pintalux;

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

    Outcome annotate(const QByteArray& marks)
    {
        write(u"marks.json"_s, marks);
        return run(
            {u"--annotate"_s, u"in.png"_s, u"--marks"_s, u"marks.json"_s, u"--output"_s, u"out.png"_s});
    }

    void write(const QString& name, const QByteArray& bytes)
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    QString path(const QString& name) const { return folder.filePath(name); }

    void SetUp() override
    {
        QImage picture(200, 100, QImage::Format_RGB32);
        picture.fill(Qt::white);
        ASSERT_TRUE(picture.save(path(u"in.png"_s)));
    }

    QTemporaryDir folder;
    QString program = QString::fromUtf8(PINTALUX_PROGRAM);
    QByteArray written; ///< to standard output, by the last run
};

} // namespace

TEST_F(Program, AnnotatesWithoutADisplay)
{
    const auto outcome = annotate(R"({"pixelScale": 2, "annotations": [
        {"kind": "rectangle", "start": [20, 20], "end": [80, 80], "color": "#3A86FF", "lineWidth": 4, "filled": true},
        {"kind": "text", "start": [100, 20], "color": "#FF0000", "text": "Ñu", "id": "00112233-4455-6677-8899-aabbccddeeff"},
        {"kind": "image", "start": [120, 60], "end": [180, 90], "image": "in.png"}],
        "beautify": {"enabled": true, "gradient": 3, "padding": 10, "shadow": false}})");
    ASSERT_EQ(outcome.status, 0) << outcome.errors.toStdString();
    const QImage image(path(u"out.png"_s));
    EXPECT_EQ(image.size(), QSize(240, 140));
    EXPECT_EQ(image.pixelColor(20 + 50, 20 + 50), QColor(0x3A, 0x86, 0xFF));
    EXPECT_NEAR(image.dotsPerMeterX() * 0.0254, 144, 0.1);
}

TEST_F(Program, MarksThatCannotBeReadAreNamedByTheirPlaceAndLeaveNoFile)
{
    struct Row {
        QByteArray marks;
        QString place;
    };
    const QByteArray box
        = R"("kind": "rectangle", "start": [0, 0], "end": [9, 9], "color": "#FF0000", "lineWidth": 1)";
    const auto one = [](const QByteArray& fields) { return "{\"annotations\": [{" + fields + "}]}"; };
    for (const auto& row : {
             Row{"", u"no es JSON"_s},
             Row{"{\"annotations\": [", u"no es JSON"_s},
             Row{QByteArray(200000, '['), u"no es JSON"_s},
             Row{"[]", u"$: "_s},
             Row{"{\"anotations\": []}", u"$.anotations: campo desconocido"_s},
             Row{"{\"pixelScale\": \"2\"}", u"$.pixelScale: debe ser un número"_s},
             Row{"{\"pixelScale\": 0}", u"$.pixelScale"_s},
             Row{"{\"annotations\": {}}", u"$.annotations: debe ser una lista"_s},
             Row{"{\"annotations\": [7]}", u"$.annotations[0]: debe ser un objeto"_s},
             Row{one("\"kind\": \"star\""), u"$.annotations[0].kind: valor desconocido"_s},
             Row{one("\"kind\": \"pen\", \"color\": \"#FF0000\", \"lineWidth\": 2"),
                 u"$.annotations[0]: falta «points»"_s},
             Row{one(box + ", \"colour\": \"#FF0000\""), u"$.annotations[0].colour: campo desconocido"_s},
             Row{one("\"kind\": \"pen\", \"pints\": []"), u"$.annotations[0].pints: campo desconocido"_s},
             Row{one(box + ", \"color\": \"#00FF00\""), u"$.annotations[0].color: aparece dos veces"_s},
             Row{"{\"beautify\": {}, \"\\u0062eautify\": {}}", u"$.beautify: aparece dos veces"_s},
             Row{one(box + ", \"control\": [1]"), u"$.annotations[0].control: debe ser un punto"_s},
             Row{one(box + ", \"control\": [1, true]"), u"$.annotations[0].control[1]: debe ser un número"_s},
             Row{one(box + ", \"fontSize\": 1e999"), u""_s},
             Row{one(box + ", \"fontSize\": 0"), u"$.annotations[0].fontSize"_s},
             Row{one(box + ", \"number\": 1.5"), u"$.annotations[0].number: debe ser un número entero"_s},
             Row{one(box + ", \"filled\": 1"), u"$.annotations[0].filled: debe ser true o false"_s},
             Row{one(box + ", \"id\": \"yo\""), u"$.annotations[0].id: debe ser un UUID"_s},
             Row{one(box + ", \"image\": \"no.png\""), u"$.annotations[0].image: "_s},
             Row{one("\"kind\": \"line\", \"start\": [0, 0], \"end\": [9, 9], \"color\": \"red\", "
                     "\"lineWidth\": 1"),
                 u"$.annotations[0].color: debe ser un color"_s},
             Row{"{\"beautify\": {\"padding\": -1}}", u"$.beautify.padding"_s},
         }) {
        const auto outcome = annotate(row.marks);
        EXPECT_EQ(outcome.status, 1) << row.marks.left(80).constData();
        EXPECT_TRUE(outcome.errors.contains(row.place))
            << row.marks.left(80).constData() << "\n  said: " << outcome.errors.toStdString();
        EXPECT_EQ(outcome.errors.count(u'\n'), 1);
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
            (QStringList{u"in.png"_s, u"marks.json"_s}));
    }
}

TEST_F(Program, PicturesThatCannotBeReadOrWrittenAreErrors)
{
    const QStringList rest{u"--marks"_s, u"marks.json"_s, u"--output"_s};
    write(u"marks.json"_s, "{}");
    write(u"broken.png"_s, "\x89PNG\r\n\x1a\n broken");
    for (const auto& [picture, output] : {std::pair(u"missing.png"_s, u"out.png"_s),
             std::pair(u"broken.png"_s, u"out.png"_s), std::pair(u"in.png"_s, u"nowhere/out.png"_s)}) {
        const auto outcome = run(QStringList{u"--annotate"_s, picture} + rest + QStringList{output});
        EXPECT_EQ(outcome.status, 1) << picture.toStdString();
        EXPECT_FALSE(outcome.errors.isEmpty());
        EXPECT_FALSE(QFile::exists(path(u"out.png"_s)));
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
    EXPECT_EQ(writtenAs(u"a.webp"_s), 1);
    EXPECT_FALSE(QFile::exists(path(u"a.webp"_s)));
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
    QImage noise(300, 300, QImage::Format_RGB32); // many times the allowed kilobyte
    for (int y = 0; y < noise.height(); ++y)
        for (int x = 0; x < noise.width(); ++x)
            noise.setPixel(x, y, QRandomGenerator::global()->generate());
    ASSERT_TRUE(noise.save(path(u"in.png"_s)));
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
    for (const auto& [name, size] : {std::pair(u"icon_16x16.png"_s, 16), std::pair(u"icon_32x32.png"_s, 32),
             std::pair(u"icon_32x32@2x.png"_s, 64), std::pair(u"icon_512x512@2x.png"_s, 1024)}) {
        const QImage icon(icons.filePath(name));
        EXPECT_EQ(icon.size(), QSize(size, size));
        EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
        EXPECT_GT(icon.pixelColor(size / 2, size / 2).alpha(), 250);
    }
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
