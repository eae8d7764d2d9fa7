// SPDX-License-Identifier: MIT
#include "platform/base/Files.h"

#include "Stage.h"

#include <thread>

static int flushes = 0;
static int flushFailure = 0; ///< the errno that the next flushes meet

/// In place of the system's: a disk that reports its faults when it is flushed.
extern "C" int fsync(int)
{
    ++flushes;
    errno = flushFailure;
    return flushFailure == 0 ? 0 : -1;
}

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
        const auto from = folder.filePath(u"new"_s), to = folder.filePath(u"name"_s);
        stage::put(from, "new");
        stage::put(to, "old");
        EXPECT_EQ(moveToFreeName(how, from, to), EEXIST) << int(how);
        EXPECT_EQ(stage::contents(to), "old") << int(how);
        EXPECT_EQ(stage::contents(from), "new") << int(how);

        QFile::remove(to);
        EXPECT_EQ(moveToFreeName(how, from, to), 0) << int(how);
        EXPECT_EQ(stage::contents(to), "new") << int(how);
        EXPECT_EQ(everythingIn(folder.path()), QStringList{u"name"_s}) << int(how);

        EXPECT_EQ(moveToFreeName(how, from, folder.filePath(u"other"_s)), ENOENT) << int(how);
        EXPECT_EQ(everythingIn(folder.path()), QStringList{u"name"_s}) << int(how);
    }
}

TEST(Files, FailedWritesNameTheReasonAndLeaveNothingBehind)
{
    NEEDS_DISKS();
    const stage::SmallDisk full, readOnly;
    stage::put(full.path() + u"/old"_s, "old");
    readOnly.makeReadOnly();
    const QTemporaryDir folder;
    stage::put(folder.filePath(u"file"_s), "");
    QDir(folder.path()).mkdir(u"closed"_s);
    stage::makeUnwritable(folder.filePath(u"closed"_s));

    const stage::SmallDisk roomy;
    full.fill();
    const struct {
        QString path;
        QFileDevice::FileError code;
        const char16_t* fragment;
    } cases[]{
        {full.path() + u"/old"_s, QFileDevice::ResourceError, u"No queda espacio"},
        {readOnly.path() + u"/x"_s, QFileDevice::PermissionsError, u"solo lectura"},
        {folder.filePath(u"file/x"_s), QFileDevice::OpenError, u"no es una carpeta"},
        {folder.filePath(u"missing/x"_s), QFileDevice::OpenError, u"no existe"},
        {roomy.path() + u'/' + QString(300, u'x'), QFileDevice::OpenError, u"demasiado largo"},
        {folder.filePath(u"closed/x"_s), QFileDevice::PermissionsError, u"No tienes permiso"},
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
    EXPECT_EQ(everythingIn(full.path()), (QStringList{u"lleno"_s, u"old"_s}));
    EXPECT_EQ(stage::contents(full.path() + u"/old"_s), "old");
    EXPECT_EQ(everythingIn(folder.path()), (QStringList{u"closed"_s, u"file"_s}));
}

TEST(Files, WhatIsNotFlushedToTheDiskIsNotWritten)
{
    const QTemporaryDir folder;
    const auto file = folder.filePath(u"file"_s);
    stage::put(file, "old");
    flushes = 0;
    flushFailure = EIO;
    EXPECT_THROW(replaceFile(file, "new"), Error);
    EXPECT_THROW(writeNewFile(folder.filePath(u"other"_s), "new"), Error);
    EXPECT_EQ(flushes, 2);
    EXPECT_EQ(stage::contents(file), "old");
    EXPECT_EQ(everythingIn(folder.path()), QStringList{u"file"_s});
    flushFailure = EINVAL; // of file systems that cannot flush at all
    replaceFile(file, "new");
    EXPECT_EQ(stage::contents(file), "new");
    flushFailure = 0;
}

TEST(Files, ReplacingKeepsTheModeOfASharedFileClosesAPrivateOneAndFollowsALink)
{
    const QTemporaryDir folder;
    const auto file = folder.filePath(u"file"_s), link = folder.filePath(u"link"_s);
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

TEST(Files, PipesAndDanglingLinksAreNeitherReadNorReplaced)
{
    const QTemporaryDir folder;
    const auto pipe = folder.filePath(u"pipe"_s);
    stage::require(mkfifo(QFile::encodeName(pipe).constData(), 0600) == 0, "mkfifo");
    QByteArray bytes;
    EXPECT_EQ(readFile(pipe, 100, bytes), ENXIO);
    EXPECT_THROW(replaceFile(pipe, "bytes"), Error);
    struct stat found { };
    ASSERT_EQ(lstat(QFile::encodeName(pipe).constData(), &found), 0);
    EXPECT_TRUE(S_ISFIFO(found.st_mode));
    QFile::link(folder.filePath(u"nowhere"_s), folder.filePath(u"link"_s));
    EXPECT_FALSE(writeNewFile(folder.filePath(u"link"_s), "bytes")) << "a dangling link is a taken name";
    EXPECT_EQ(everythingIn(folder.path()), (QStringList{u"link"_s, u"pipe"_s}));
}

// Killed in the middle of it, the process would leave such a name for good.
TEST(Files, WhatIsBeingWrittenHasNoNameYet)
{
    const QTemporaryDir folder;
    const int unnamed
        = open(QFile::encodeName(folder.path()).constData(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600);
    if (unnamed < 0)
        GTEST_SKIP() << "this file system has no unnamed files";
    close(unnamed);
    const QByteArray bytes(4 << 20, 'x');
    std::atomic<bool> isWritten = false;
    std::thread writer([&] {
        for (int number = 0; number < 5; ++number)
            EXPECT_TRUE(writeNewFile(folder.filePath(QString::number(number)), bytes));
        isWritten = true;
    });
    int looks = 0;
    while (!isWritten) {
        for (const auto& name : everythingIn(folder.path()))
            EXPECT_FALSE(name.startsWith(u'.')) << qPrintable(name);
        ++looks;
    }
    writer.join();
    EXPECT_GT(looks, 5);
}
