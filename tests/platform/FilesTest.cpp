#include "platform/Files.h"

#include "Stage.h"

#include <QDir>

using namespace pintalux;

namespace {

QStringList everythingIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

} // namespace

TEST(Files, EachWayToTakeAFreeNameMovesTheFileAndNeverReplacesOne)
{
    for (const auto how : {FreeNameMove::rename, FreeNameMove::link, FreeNameMove::reserve}) {
        const QTemporaryDir folder;
        const auto from = folder.filePath(u"new"_qs), to = folder.filePath(u"name"_qs);
        stage::put(from, "new");
        stage::put(to, "old");
        EXPECT_EQ(moveToFreeName(how, from, to), EEXIST) << int(how);
        EXPECT_EQ(stage::contents(to), "old") << int(how);
        EXPECT_EQ(stage::contents(from), "new") << int(how);

        QFile::remove(to);
        EXPECT_EQ(moveToFreeName(how, from, to), 0) << int(how);
        EXPECT_EQ(stage::contents(to), "new") << int(how);
        EXPECT_EQ(everythingIn(folder.path()), QStringList{u"name"_qs}) << int(how);

        EXPECT_EQ(moveToFreeName(how, from, folder.filePath(u"other"_qs)), ENOENT) << int(how);
        EXPECT_EQ(everythingIn(folder.path()), QStringList{u"name"_qs}) << int(how);
    }
}

TEST(Files, ADanglingLinkCountsAsATakenName)
{
    const QTemporaryDir folder;
    QFile::link(folder.filePath(u"nowhere"_qs), folder.filePath(u"name"_qs));
    EXPECT_FALSE(writeNewFile(folder.filePath(u"name"_qs), "bytes"));
    EXPECT_EQ(everythingIn(folder.path()), QStringList{u"name"_qs});
}

TEST(Files, FailedWritesNameTheReasonAndLeaveNothingBehind)
{
    const stage::SmallDisk full, readOnly;
    stage::put(full.path() + u"/old"_qs, "old");
    readOnly.makeReadOnly();
    const QTemporaryDir folder;
    stage::put(folder.filePath(u"file"_qs), "");
    QDir(folder.path()).mkdir(u"closed"_qs);
    stage::makeUnwritable(folder.filePath(u"closed"_qs));
    stage::require(chmod(QFile::encodeName(folder.path()).constData(), 0755) == 0, "opening a folder");

    const stage::SmallDisk roomy;
    full.fill();
    const struct {
        QString path;
        QFileDevice::FileError code;
        const char16_t* fragment;
    } cases[]{
        {full.path() + u"/old"_qs, QFileDevice::ResourceError, u"No queda espacio"},
        {readOnly.path() + u"/x"_qs, QFileDevice::PermissionsError, u"solo lectura"},
        {folder.filePath(u"file/x"_qs), QFileDevice::OpenError, u"no es una carpeta"},
        {folder.filePath(u"missing/x"_qs), QFileDevice::OpenError, u"no existe"},
        {roomy.path() + u'/' + QString(300, u'x'), QFileDevice::OpenError, u"demasiado largo"},
        {folder.filePath(u"closed/x"_qs), QFileDevice::PermissionsError, u"No tienes permiso"},
    };
    for (const auto& [path, code, fragment] : cases) {
        for (const auto write : {+[](const QString&p, const QByteArray&b) { replaceFile(p, b); },
                 +[](const QString&p, const QByteArray&b) { writeNewFile(p, b); }}) {
            const stage::WithoutPrivileges unprivileged;
            try {
                write(path, QByteArray(20'000, 'x'));
                ADD_FAILURE() << path.toStdString();
            } catch (const Error& error) {
                EXPECT_EQ(error.domain, Error::fileDomain);
                EXPECT_EQ(error.code, code) << path.toStdString();
                EXPECT_TRUE(error.localizedDescription.contains(QString::fromUtf16(fragment)))
                    << error.localizedDescription.toStdString();
            }
        }
    }
    EXPECT_EQ(everythingIn(full.path()), (QStringList{u"lleno"_qs, u"old"_qs}));
    EXPECT_EQ(stage::contents(full.path() + u"/old"_qs), "old");
    EXPECT_EQ(everythingIn(folder.path()), (QStringList{u"closed"_qs, u"file"_qs}));
}

TEST(Files, ReplacingKeepsTheModeOfASharedFileClosesAPrivateOneAndFollowsALink)
{
    const QTemporaryDir folder;
    const auto file = folder.filePath(u"file"_qs), link = folder.filePath(u"link"_qs);
    stage::put(file, "old");
    stage::require(chmod(QFile::encodeName(file).constData(), 0640) == 0, "chmod");
    QFile::link(file, link);
    replaceFile(link, "new");
    EXPECT_EQ(stage::contents(file), "new");
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(stage::modeOf(file), 0640u);
    replaceFile(file, "newer", Audience::onlyOwner);
    EXPECT_EQ(stage::modeOf(file), 0600u);
}

TEST(Files, APipeIsNeitherReadNorReplaced)
{
    const QTemporaryDir folder;
    const auto pipe = folder.filePath(u"pipe"_qs);
    stage::require(mkfifo(QFile::encodeName(pipe).constData(), 0600) == 0, "mkfifo");
    QByteArray bytes;
    EXPECT_EQ(readFile(pipe, 100, bytes), ENXIO);
    EXPECT_THROW(replaceFile(pipe, "bytes"), Error);
    struct stat found { };
    ASSERT_EQ(lstat(QFile::encodeName(pipe).constData(), &found), 0);
    EXPECT_TRUE(S_ISFIFO(found.st_mode));
    EXPECT_EQ(everythingIn(folder.path()), QStringList{u"pipe"_qs});
}

TEST(Files, AFolderThatTakesNoFilesIsNotSaidToBeMissing)
{
    const std::array<std::function<void()>, 3> attempts{[] { makeFolders(u"/proc/Capturas"_qs); },
        [] { writeNewFile(u"/proc/foto.png"_qs, "x"); }, [] { replaceFile(u"/proc/foto.png"_qs, "x"); }};
    for (const auto& attempt : attempts) {
        try {
            attempt();
            FAIL() << "it was written";
        } catch (const Error& error) {
            EXPECT_EQ(error.localizedDescription, u"No tienes permiso para usar «/proc».");
        }
    }
}

TEST(Files, MakingFoldersNamesTheFileThatStandsInTheWay)
{
    const QTemporaryDir folder;
    makeFolders(folder.filePath(u"a/b/../c/"_qs), Audience::onlyOwner);
    EXPECT_EQ(stage::modeOf(folder.filePath(u"a/c"_qs)), 0700u);
    EXPECT_EQ(stage::modeOf(folder.filePath(u"a"_qs)), 0700u);

    stage::put(folder.filePath(u"file"_qs), "");
    try {
        makeFolders(folder.filePath(u"file/below/deep"_qs));
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.localizedDescription, u"«%1» no es una carpeta."_qs.arg(folder.filePath(u"file"_qs)));
    }
}
