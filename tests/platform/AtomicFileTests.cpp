#include "platform/AtomicFile.h"
#include "platform/Error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sched.h>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

namespace pintalux {
namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

QStringList entries(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

/// The sentence of the failure, empty when there was none.
QString failure(const QString& path, const QByteArray& bytes)
{
    try {
        writeAtomically(path, bytes);
    } catch (const Error& error) {
        EXPECT_EQ(error.domain, Error::fileDomain);
        EXPECT_NE(error.code, 0);
        return error.localizedDescription;
    }
    return {};
}

/// Runs `body` in a process of its own, in which it may spoil what it likes. True when it says so.
bool inChild(const std::function<bool()>& body)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(body() ? 0 : 1);
    int status = 1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class AtomicFile : public testing::Test {
protected:
    QString path(const QString& name) const { return folder.filePath(name); }

    QTemporaryDir folder;
};

TEST_F(AtomicFile, ReplacesTheWholeFileAndKeepsItsPermissions)
{
    const QString file = path(u"a.png"_qs);
    EXPECT_EQ(failure(file, QByteArray(100'000, 'x')), QString());
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    EXPECT_EQ(failure(file, "short"), QString());
    EXPECT_EQ(contents(file), "short");
    EXPECT_FALSE(QFileInfo(file).permission(QFile::ReadOther));
    EXPECT_EQ(failure(file, {}), QString());
    EXPECT_EQ(contents(file), "");
    EXPECT_EQ(entries(folder.path()), QStringList{u"a.png"_qs});
}

TEST_F(AtomicFile, FollowsALinkInsteadOfReplacingIt)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"real"_qs));
    ASSERT_EQ(failure(path(u"real/target"_qs), "old"), QString());
    ASSERT_TRUE(QFile::link(u"real/target"_qs, path(u"link"_qs)));
    EXPECT_EQ(failure(path(u"link"_qs), "new"), QString());
    EXPECT_TRUE(QFileInfo(path(u"link"_qs)).isSymLink());
    EXPECT_EQ(contents(path(u"real/target"_qs)), "new");
    EXPECT_EQ(entries(path(u"real"_qs)), QStringList{u"target"_qs});
}

TEST_F(AtomicFile, APrivateFileIsPrivateWhetherItWasThereOrNot)
{
    const auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    const auto ofOthers = QFileDevice::ReadGroup | QFileDevice::ReadOther | QFileDevice::WriteGroup
        | QFileDevice::WriteOther | QFileDevice::ExeOther;
    const QString file = path(u"secret"_qs);
    for (int round = 0; round < 2; ++round) {
        writeAtomically(file, "x", ownerOnly);
        EXPECT_FALSE(QFileInfo(file).permissions() & ofOthers);
        QFile::setPermissions(file, ownerOnly | ofOthers);
    }
}

TEST_F(AtomicFile, SaysWhatIsWrongWithThePath)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"sub"_qs));
    ASSERT_EQ(failure(path(u"file"_qs), "old"), QString());
    EXPECT_EQ(failure(path(u"sub"_qs), "x"), u"«sub» es una carpeta."_qs);
    EXPECT_EQ(failure(path(u"none/a.png"_qs), "x"), u"No existe la carpeta «%1»."_qs.arg(path(u"none"_qs)));
    EXPECT_EQ(failure(path(u"file/a.png"_qs), "x"), u"«%1» no es una carpeta."_qs.arg(path(u"file"_qs)));
    EXPECT_THAT(failure(path(QString(300, u'n')), "x"), testing::Not(QString()));
    EXPECT_EQ(contents(path(u"file"_qs)), "old");
    EXPECT_THAT(entries(folder.path()), testing::UnorderedElementsAre(u"sub"_qs, u"file"_qs));
    EXPECT_TRUE(entries(path(u"sub"_qs)).isEmpty());
}

TEST_F(AtomicFile, SaysThatTheFolderMayNotBeWritten)
{
    ASSERT_EQ(failure(path(u"a.png"_qs), "old"), QString());
    // The administrator may write everywhere: be somebody else for the file system.
    constexpr uid_t nobody = 65534;
    QFile::setPermissions(
        folder.path(), QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
    const int before = setfsuid(geteuid() == 0 ? nobody : geteuid());
    const QString existing = failure(path(u"a.png"_qs), "new");
    const QString fresh = failure(path(u"b.png"_qs), "new");
    setfsuid(static_cast<uid_t>(before));
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(existing, u"No tienes permiso para escribir en «%1»."_qs.arg(folder.path()));
    EXPECT_EQ(fresh, existing);
    EXPECT_EQ(contents(path(u"a.png"_qs)), "old");
    EXPECT_EQ(entries(folder.path()), QStringList{u"a.png"_qs});
}

TEST_F(AtomicFile, AFullDiskLeavesTheOldFileAndNothingElse)
{
    EXPECT_TRUE(inChild([&] {
        // A small disk of its own, seen by this process only.
        if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            perror("no name space of its own");
            return false;
        }
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
        if (mount("tmpfs", qPrintable(folder.path()), "tmpfs", 0, "size=256k") != 0) {
            perror("no disk of its own");
            return false;
        }
        const QString file = path(u"a.png"_qs);
        EXPECT_EQ(failure(file, QByteArray(100'000, 'o')), QString());
        for (const int size : {200'000, 1'000'000, 5'000'000})
            EXPECT_EQ(failure(file, QByteArray(size, 'n')), u"No hay espacio en el disco."_qs) << size;
        EXPECT_EQ(contents(file), QByteArray(100'000, 'o'));
        EXPECT_EQ(entries(folder.path()), QStringList{u"a.png"_qs});
        return !HasFailure();
    }));
}

TEST_F(AtomicFile, ALimitReachedWhileWritingLeavesTheOldFileAndNothingElse)
{
    EXPECT_TRUE(inChild([&] {
        const QString file = path(u"a.png"_qs);
        EXPECT_EQ(failure(file, "old"), QString());
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{50'000, 50'000};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
            return false;
        EXPECT_EQ(failure(file, QByteArray(200'000, 'n')),
            u"El archivo «a.png» es demasiado grande para el disco."_qs);
        EXPECT_EQ(contents(file), "old");
        EXPECT_EQ(entries(folder.path()), QStringList{u"a.png"_qs});
        return !HasFailure();
    }));
}

} // namespace
} // namespace pintalux
