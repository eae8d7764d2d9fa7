// SPDX-License-Identifier: MIT
#include "render/export/Exporter.h"

#include "Pictures.h"
#include "Stage.h"
#include "platform/base/Error.h"

static QByteArray refused; ///< no file may have it in its name

static bool isRefused(const char* name)
{
    errno = ENAMETOOLONG;
    return !refused.isEmpty() && QByteArrayView(name).contains(refused);
}

// In place of the system's, by which files that have been written get their names: a disk that refuses some.
extern "C" int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept
{
    return isRefused(to) ? -1 : int(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}
extern "C" int renameat2(
    int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept
{
    return isRefused(to) ? -1 : int(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

namespace {

const QDateTime moment(QDate(2024, 5, 3), QTime(14, 7, 9));
QDateTime standingClock() { return moment; }
const QString stamp = QStringLiteral("2024-05-03 a las 14.07.09");

QString fileName(const QString& title) { return Exporter::defaultFileName(title, moment); }
QString expected(const QString& title) { return u"Pintalux %1 %2.png"_s.arg(title, stamp); }

QImage picture()
{
    auto image = test::plain({40, 20}, QColor(10, 200, 30, 128), QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(3, 4, Qt::red);
    return image;
}

/// Saves into a folder of its own.
class ExporterTest : public testing::Test {
protected:
    QStringList saved() const
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    /// The error that saving meets; one with code 0 when it meets none.
    Error saveError(const QImage& image) const
    {
        try {
            Exporter::quickSave(image, 1, folder, std::nullopt, standingClock);
        } catch (const Error& error) {
            return error;
        }
        return {u"none"_s, 0, {}};
    }

    const QTemporaryDir root;
    QString folder = root.filePath(u"Capturas/hoy"_s); ///< where captures are saved
};

} // namespace

TEST_F(ExporterTest, FileNamesFollowTheTitle)
{
    const auto plain = u"Pintalux %1.png"_s.arg(stamp);
    EXPECT_EQ(Exporter::defaultFileName(std::nullopt, moment), plain);
    const struct {
        QString title, shown;
    } cases[]{
        {u"Informe: Q1/Q2"_s, u"Informe- Q1-Q2"_s},
        {u"../../etc"_s, u"..-..-etc"_s},
        {u" \n dos\nlíneas \t\n"_s, u"dos\nlíneas"_s},
        {u"pintaluxury"_s, u"ury"_s},
        {u"Pintalux \nx"_s, u"\nx"_s},                  // only the first trimming takes line breaks
        {u"Pintalux\u0301 x"_s, u"Pintalux\u0301 x"_s}, // its last letter is another one
        {u"a\0b"_s, u"a-b"_s},
        {u"a"_s + QChar(0xD800) + u'b' + QChar(0xDC00), u"a-b-"_s},
        {u"%1 %2 100 %"_s, u"%1 %2 100 %"_s},
    };
    for (const auto& [title, shown] : cases)
        EXPECT_EQ(fileName(title), u"Pintalux "_s + shown + u' ' + stamp + u".png"_s) << title.toStdString();
    for (const auto& title : {u""_s, u" \t\n "_s, u"Pintalux"_s, u" pinTALUX \u00A0"_s})
        EXPECT_EQ(fileName(title), plain) << title.toStdString();
}

TEST_F(ExporterTest, TitlesAreCutBetweenCharactersAsAPersonCountsThem)
{
    for (const auto& character : {u"x"_s, u"é"_s, u"e\u0301"_s, u"各"_s}) {
        EXPECT_EQ(fileName(character.repeated(60)), expected(character.repeated(60)));
        EXPECT_EQ(fileName(character.repeated(61)), expected(character.repeated(60)));
    }
    EXPECT_EQ(fileName(QString(59, u'x') + u"e\u0301z"_s), expected(QString(59, u'x') + u"e\u0301"_s));

    // Longer ones meet the limit of bytes first, the number of a taken name included.
    const QString flag = u"🇪🇸"_s, family = u"👨‍👩‍👧‍👦"_s;
    for (const auto& character : {flag, family, u"👍🏽"_s, u"e"_s + QString(20, QChar(0x301))}) {
        const auto name = fileName(character.repeated(80));
        EXPECT_LE(name.toUtf8().size() + 12, 255);
        EXPECT_GT(name.toUtf8().size() + 12 + character.toUtf8().size(), 255) << "cut too early";
        const auto title = name.mid(9, name.size() - 9 - 1 - stamp.size() - 4);
        EXPECT_EQ(title, character.repeated(title.size() / character.size())) << name.toStdString();
    }
    EXPECT_EQ(fileName(u"e"_s + QString(400, QChar(0x301))), u"Pintalux %1.png"_s.arg(stamp));
}

TEST_F(ExporterTest, SavesWithinOneSecondAreNumberedAndNoneIsReplaced)
{
    const auto title
        = u"👨‍👩‍👧‍👦"_s.repeated(80); // the longest name, so that a number must find room
    QStringList paths;
    for (int i = 1; i <= 3; ++i) {
        auto image = picture();
        image.setPixelColor(0, 0, QColor(i, i, i));
        paths << Exporter::quickSave(image, 2, folder, title, standingClock);
        EXPECT_EQ(QImage(paths.back()).pixelColor(0, 0), QColor(i, i, i));
    }
    const auto base = folder + u'/' + fileName(title).chopped(4);
    EXPECT_EQ(paths, (QStringList{base + u".png"_s, base + u" (2).png"_s, base + u" (3).png"_s}));
    EXPECT_EQ(saved().size(), 3);
    EXPECT_EQ(QImage(paths.front()).pixelColor(0, 0), QColor(1, 1, 1));
}

TEST_F(ExporterTest, WhatIsWrittenLaterBearsTheTimeAtWhichItWasAskedFor)
{
    int seconds = 0;
    const auto walkingClock = [&] { return moment.addSecs(seconds++); };
    const auto png = Exporter::encode(picture(), 1);
    const auto first = Exporter::startQuickSave(png, folder, u"Uno"_s, walkingClock);
    const auto second = Exporter::startQuickSave(png, folder, u"Uno"_s, standingClock);
    EXPECT_EQ(first.stamp, moment);
    EXPECT_EQ(QFileInfo(first.path.result()).fileName(), expected(u"Uno"_s));
    EXPECT_EQ(QFileInfo(second.path.result()).fileName(), u"Pintalux Uno %1 (2).png"_s.arg(stamp));
    EXPECT_EQ(saved().size(), 2);
}

TEST_F(ExporterTest, WhereADiskRefusesItsTitleAPictureIsSavedWithoutIt)
{
    refused = "?";
    const auto path = Exporter::quickSave(picture(), 1, folder, u"¿Qué?"_s, standingClock);
    EXPECT_EQ(QFileInfo(path).fileName(), u"Pintalux %1.png"_s.arg(stamp));
    EXPECT_EQ(QImage(path).size(), picture().size());
    refused = "Pintalux";
    EXPECT_THROW(Exporter::quickSave(picture(), 1, folder, u"¿Qué?"_s, standingClock), Error);
    refused.clear();
}

TEST_F(ExporterTest, FailedSavesSayWhyAndLeaveNothingBehind)
{
    EXPECT_EQ(saveError(QImage()).localizedDescription, u"No se pudo codificar el PNG."_s);

    NEEDS_DISKS();
    const stage::SmallDisk small;
    folder = small.path();
    EXPECT_TRUE(saveError(test::noise({256, 256})).localizedDescription.startsWith(u"No queda espacio"_s));
    EXPECT_TRUE(saved().isEmpty());
    EXPECT_EQ(saveError(picture()).code, 0) << "the failed one still takes the room";
    EXPECT_THROW(Exporter::write(test::noise({256, 256}), 1, small.path() + u'/' + saved().front()), Error);
    EXPECT_EQ(QImage(small.path() + u'/' + saved().front()).size(), picture().size());

    small.makeReadOnly();
    EXPECT_TRUE(saveError(picture()).localizedDescription.contains(u"solo lectura"_s));
    folder = small.path() + u"/carpeta"_s;
    EXPECT_TRUE(saveError(picture()).localizedDescription.contains(u"solo lectura"_s));

    stage::put(root.filePath(u"archivo"_s), "x");
    folder = root.filePath(u"archivo"_s);
    EXPECT_EQ(saveError(picture()).localizedDescription,
        u"«%1» no es una carpeta."_s.arg(root.filePath(u"archivo"_s)));
}

TEST_F(ExporterTest, TheTemporaryFileIsForItsPersonAlone)
{
    const auto runtime = root.filePath(u"run"_s), shared = root.filePath(u"tmp"_s);
    QDir().mkdir(runtime);
    QDir().mkdir(shared);
    stage::require(chmod(QFile::encodeName(runtime).constData(), 0700) == 0, "chmod");
    qputenv("TMPDIR", QFile::encodeName(shared));
    const auto perUser = u"%1/pintalux-%2"_s.arg(shared).arg(geteuid());

    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime));
    const auto first = Exporter::temporaryFile(picture(), 2, u"Título"_s);
    ASSERT_TRUE(first);
    EXPECT_EQ(QFileInfo(*first).path(), runtime + u"/Pintalux"_s);
    EXPECT_TRUE(QFileInfo(*first).fileName().startsWith(u"Pintalux Título 20"_s));
    EXPECT_EQ(stage::contents(*first), Exporter::pngData(picture(), 2));
    EXPECT_EQ(stage::modeOf(runtime + u"/Pintalux"_s), 0700u);
    EXPECT_EQ(stage::modeOf(*first), 0600u);

    const auto old = runtime + u"/Pintalux/Pintalux ayer.png"_s;
    stage::put(old, "x");
    QFile aged(old);
    stage::require(aged.open(QIODevice::ReadWrite)
            && aged.setFileTime(QDateTime::currentDateTime().addDays(-2), QFileDevice::FileModificationTime),
        "making a file look old");
    EXPECT_TRUE(Exporter::temporaryFile(picture(), 2, u"Otro"_s));
    EXPECT_FALSE(QFile::exists(old));
    EXPECT_TRUE(QFile::exists(*first)) << "somebody may still be reading it";

    // A runtime folder that others can enter is not used, nor one that is missing.
    stage::require(chmod(QFile::encodeName(runtime).constData(), 0755) == 0, "chmod");
    EXPECT_EQ(QFileInfo(Exporter::temporaryFile(picture(), 1).value_or(QString())).path(),
        perUser + u"/Pintalux"_s);
    qunsetenv("XDG_RUNTIME_DIR");
    stage::require(chmod(QFile::encodeName(perUser).constData(), 0777) == 0, "chmod");
    EXPECT_TRUE(Exporter::temporaryFile(picture(), 1));
    EXPECT_EQ(stage::modeOf(perUser), 0700u) << "an own folder that stood open is closed";

    EXPECT_FALSE(Exporter::temporaryFile(QImage(), 1));
    QDir(perUser).removeRecursively();
    QFile::link(runtime, perUser);
    EXPECT_FALSE(Exporter::temporaryFile(picture(), 1)) << "somebody may have laid a link";
    QFile::remove(perUser);
    stage::put(perUser, "");
    EXPECT_FALSE(Exporter::temporaryFile(picture(), 1));
}

TEST_F(ExporterTest, ATemporaryFolderOfSomebodyElseIsRefused)
{
    NEEDS_DISKS();
    const auto shared = root.filePath(u"tmp"_s);
    const auto perUser = QFile::encodeName(u"%1/pintalux-%2"_s.arg(shared).arg(geteuid()));
    QDir().mkpath(QFile::decodeName(perUser));
    // Only the real root can give a folder away; where we are root just for ourselves, the system's are
    // another's.
    constexpr uid_t nobody = 65534;
    if (chown(perUser.constData(), nobody, nobody) != 0)
        stage::require(
            mount("/usr/bin", perUser.constData(), nullptr, MS_BIND, nullptr) == 0, "binding a folder");
    qputenv("TMPDIR", QFile::encodeName(shared));
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_FALSE(Exporter::temporaryFile(picture(), 1));
    umount2(perUser.constData(), MNT_DETACH);
}
