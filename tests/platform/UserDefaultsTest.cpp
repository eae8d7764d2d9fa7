// SPDX-License-Identifier: MIT
#include "platform/base/UserDefaults.h"

#include "Stage.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

#include <sys/file.h>
#include <sys/wait.h>

#include <limits>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

class UserDefaultsTest : public testing::Test {
protected:
    UserDefaults open() const { return UserDefaults(u"app"_s, root.path()); }
    QString own(const QString& name) const { return root.filePath(u"app/"_s + name); }
    QString file() const { return own(u"defaults.json"_s); }
    QStringList files() const
    {
        return QDir(own({})).entryList(
            QDir::Files | QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    void put(const QByteArray& bytes) const
    {
        QDir().mkpath(own({}));
        stage::put(file(), bytes);
    }
    QJsonObject onDisk() const { return QJsonDocument::fromJson(stage::contents(file())).object(); }

    const QTemporaryDir root;
};

const QString key = QStringLiteral("key");

} // namespace

TEST_F(UserDefaultsTest, ValuesOfOneTypeNeverReadAsAnother)
{
    const double huge = 1e300;
    const struct {
        QJsonValue stored;
        std::optional<bool> boolean;
        std::optional<qint64> integer;
        std::optional<double> real;
        std::optional<QString> string;
    } cases[]{
        {true, true, {}, {}, {}},
        {false, false, {}, {}, {}},
        {1, {}, 1, 1.0, {}},
        {8.0, {}, 8, 8.0, {}},
        {2.5, {}, {}, 2.5, {}},
        {huge, {}, {}, huge, {}},
        {std::numeric_limits<qint64>::max(), {}, std::numeric_limits<qint64>::max(), 0x1p63, {}},
        {u"true"_s, {}, {}, {}, u"true"_s},
        {u"8"_s, {}, {}, {}, u"8"_s},
        {QString(), {}, {}, {}, QString()},
        {QJsonArray{1}, {}, {}, {}, {}},
        {QJsonValue(), {}, {}, {}, {}},
    };
    for (const auto& [stored, boolean, integer, real, string] : cases) {
        open().set(key, stored);
        const auto defaults = open();
        const auto text = stage::contents(file()).toStdString();
        EXPECT_EQ(defaults.boolean(key), boolean) << text;
        EXPECT_EQ(defaults.integer(key), integer) << text;
        EXPECT_EQ(defaults.real(key), real) << text;
        EXPECT_EQ(defaults.string(key), string) << text;
        EXPECT_EQ(defaults.contains(key), !stored.isNull()) << text;
    }
}

TEST_F(UserDefaultsTest, ANumberThatIsNotFiniteLeavesTheKeyAsItWas)
{
    auto defaults = open();
    defaults.set(key, 3);
    for (const double bad : {std::numeric_limits<double>::infinity(), std::nan("")})
        defaults.set(key, bad);
    EXPECT_EQ(defaults.real(key), 3);
    EXPECT_EQ(open().real(key), 3);
}

TEST_F(UserDefaultsTest, OnlyTheOwnerMayReadWhatIsStored)
{
    open().set(key, 1);
    for (const auto& name : files())
        EXPECT_EQ(stage::modeOf(own(name)), 0600u) << name.toStdString();
    EXPECT_EQ(stage::modeOf(own({})), 0700u);
}

TEST_F(UserDefaultsTest, ADamagedFileIsKeptAsideAndNeverReplaced)
{
    const QByteArray damages[]{
        "",
        "{\"key\": tru",
        "[1, 2]",
        "\xff\xfe\x00garbage",
        "{\"key\": 1e999}",
        "{\"key\":" + QByteArray(100'000, '['),
        "{\"key\":\"" + QByteArray(2 << 20, 'x') + "\"}",
    };
    QStringList expected;
    for (const auto& damage : damages) {
        put(damage);
        auto defaults = open();
        EXPECT_FALSE(defaults.contains(key));
        EXPECT_EQ(stage::contents(file()), damage) << "reading alone changes nothing";
        defaults.set(u"other"_s, true);
        EXPECT_EQ(onDisk(), (QJsonObject{{u"other"_s, true}}));
        expected << (expected.isEmpty() ? u"defaults.damaged.json"_s
                                        : u"defaults.damaged-%1.json"_s.arg(expected.size() + 1));
        EXPECT_EQ(stage::contents(own(expected.back())), damage);
    }
    for (qsizetype i = 0; i < expected.size(); ++i)
        EXPECT_EQ(stage::contents(own(expected[i])), damages[i]) << "an earlier one was overwritten";
}

TEST_F(UserDefaultsTest, AFileDamagedWhileRunningIsWrittenAgainWithAllThatIsKnown)
{
    auto defaults = open();
    defaults.set(key, 1);
    put("{");
    defaults.set(u"other"_s, 2);
    EXPECT_EQ(onDisk(), (QJsonObject{{key, 1}, {u"other"_s, 2}}));
}

TEST_F(UserDefaultsTest, AFileThatCannotBeReadIsLeftAloneAndValuesLiveInMemory)
{
    const QByteArray secret = "{\"key\": 7}";
    put(secret);
    stage::require(chmod(QFile::encodeName(file()).constData(), 0) == 0, "chmod");
    if (geteuid() == 0) { // The folders belong to the person, the file to somebody else.
        for (const auto& folder : {root.path(), own({})})
            stage::require(
                chown(QFile::encodeName(folder).constData(), stage::WithoutPrivileges::nobody, 0) == 0,
                "chown");
    }
    {
        const stage::WithoutPrivileges unprivileged;
        auto defaults = open();
        ASSERT_TRUE(defaults.lastError());
        EXPECT_EQ(defaults.lastError()->code, QFileDevice::PermissionsError);
        defaults.set(u"other"_s, 2);
        EXPECT_EQ(defaults.integer(u"other"_s), 2);
        EXPECT_TRUE(defaults.lastError());
        EXPECT_FALSE(files().contains(u"defaults.damaged.json"_s));
    }
    stage::require(chmod(QFile::encodeName(file()).constData(), 0600) == 0, "chmod");
    EXPECT_EQ(stage::contents(file()), secret);
}

TEST_F(UserDefaultsTest, WhatIsNotAFileNeitherHangsNorIsReplaced)
{
    QDir().mkpath(file());
    auto onFolder = open();
    onFolder.set(key, 1);
    EXPECT_TRUE(onFolder.lastError());
    EXPECT_EQ(onFolder.integer(key), 1);
    EXPECT_TRUE(QFileInfo(file()).isDir());

    QDir().rmdir(file());
    stage::require(mkfifo(QFile::encodeName(file()).constData(), 0600) == 0, "making a pipe");
    auto onPipe = open();
    int told = 0;
    onPipe.onWriteFailure = [&](const Error&) { ++told; };
    onPipe.set(key, 1);
    EXPECT_TRUE(onPipe.lastError());
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(QFileInfo(file()).isFile());
}

TEST_F(UserDefaultsTest, AFullDiskChangesNothingAndTheNextWriteCatchesUp)
{
    const stage::SmallDisk disk;
    UserDefaults defaults(u"app"_s, disk.path());
    defaults.set(key, 1);
    ASSERT_FALSE(defaults.lastError());
    QStringList told;
    defaults.onWriteFailure = [&](const Error& error) { told << error.localizedDescription; };
    const auto path = disk.path() + u"/app/defaults.json"_s;
    const auto before = stage::contents(path);
    disk.fill();

    defaults.set(key, 2);
    defaults.set(u"long"_s, QString(10'000, u'x'));
    ASSERT_TRUE(defaults.lastError());
    EXPECT_EQ(defaults.lastError()->code, QFileDevice::ResourceError);
    EXPECT_EQ(defaults.integer(key), 2);
    ASSERT_EQ(told.size(), 1) << "told once for a disk that stays full";
    EXPECT_TRUE(told[0].startsWith(u"No queda espacio")) << qPrintable(told[0]);
    EXPECT_EQ(stage::contents(path), before);
    EXPECT_EQ(QDir(disk.path() + u"/app"_s).entryList(QDir::Files | QDir::Hidden),
        (QStringList{u"defaults.json"_s, u"defaults.lock"_s}));

    disk.makeRoom();
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_FALSE(defaults.lastError());
    EXPECT_EQ(UserDefaults(u"app"_s, disk.path()).integer(key), 2);
}

TEST_F(UserDefaultsTest, AnInstanceKeepsWhatAnotherHasWrittenMeanwhile)
{
    auto first = open(), second = open();
    first.set(u"first"_s, 1);
    second.set(u"second"_s, 2);
    first.set(u"third"_s, 3);
    EXPECT_EQ(onDisk(), (QJsonObject{{u"first"_s, 1}, {u"second"_s, 2}, {u"third"_s, 3}}));
    EXPECT_EQ(first.integer(u"second"_s), 2);
}

TEST_F(UserDefaultsTest, ProcessesThatWriteAtOnceLoseNoKey)
{
    constexpr int writers = 4, keys = 50;
    QList<pid_t> children;
    for (int writer = 0; writer < writers; ++writer) {
        const pid_t child = fork();
        if (child == 0) {
            auto defaults = open();
            for (int i = 0; i < keys; ++i)
                defaults.set(u"%1-%2"_s.arg(writer).arg(i), i);
            // Whoever did not get the lock in time has kept the value and tries again.
            for (int i = 0; i < 50 && !defaults.synchronize(); ++i) { }
            _exit(defaults.lastError() ? 1 : 0);
        }
        children << child;
    }
    for (const auto child : children) {
        int result = -1;
        waitpid(child, &result, 0);
        EXPECT_EQ(result, 0);
    }
    EXPECT_EQ(onDisk().size(), writers * keys);
}

TEST_F(UserDefaultsTest, AStuckHolderOfTheLockIsWaitedForOnlyBriefly)
{
    auto defaults = open();
    defaults.set(key, 1);
    QFile lock(own(u"defaults.lock"_s));
    ASSERT_TRUE(lock.open(QIODevice::ReadWrite));
    ASSERT_EQ(flock(lock.handle(), LOCK_EX), 0);
    defaults.set(key, 2);
    ASSERT_TRUE(defaults.lastError());
    EXPECT_EQ(defaults.lastError()->code, QFileDevice::TimeOutError);
    EXPECT_EQ(onDisk().value(key), 1);
    lock.close();
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(onDisk().value(key), 2);
}

TEST_F(UserDefaultsTest, WhatIsHeldCountsAtOnceAndIsWrittenAtTheEnd)
{
    auto defaults = open();
    {
        const UserDefaults::Hold outer(defaults);
        {
            const UserDefaults::Hold inner(defaults);
            defaults.set(key, 1);
            defaults.set(key, 2);
        }
        EXPECT_EQ(defaults.integer(key), 2);
        EXPECT_EQ(files(), QStringList());
    }
    EXPECT_EQ(onDisk().value(key), 2);
    defaults.set(key, 3);
    EXPECT_EQ(onDisk().value(key), 3);
}

TEST_F(UserDefaultsTest, OtherDomainsAreReadAndNeverTouched)
{
    QDir().mkpath(root.filePath(u"other"_s));
    const auto other = root.filePath(u"other/defaults.json"_s);
    stage::put(other, "{\"a\": 1}");
    const auto defaults = open();
    EXPECT_EQ(defaults.persistentDomain(u"other"_s), (QJsonObject{{u"a"_s, 1}}));
    stage::put(other, "[");
    for (const auto& name : {u"other"_s, u"none"_s, u""_s, u".."_s, u"other/../other"_s})
        EXPECT_FALSE(defaults.persistentDomain(name)) << name.toStdString();
    EXPECT_EQ(stage::contents(other), "[");
}
