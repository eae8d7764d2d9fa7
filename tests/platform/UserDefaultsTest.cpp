// SPDX-License-Identifier: MIT
#include "platform/base/UserDefaults.h"

#include "Stage.h"

#include <sys/file.h>
#include <sys/wait.h>

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
    const auto largest = std::numeric_limits<qint64>::max();
    const struct {
        QJsonValue stored;
        std::optional<bool> boolean;
        std::optional<qint64> integer;
        std::optional<double> real;
        std::optional<QString> string;
    } cases[]{{true, true, {}, {}, {}}, {1, {}, 1, 1.0, {}}, {2.5, {}, {}, 2.5, {}},
        {1e300, {}, {}, 1e300, {}}, {largest, {}, largest, 0x1p63, {}}, {u"true"_s, {}, {}, {}, u"true"_s},
        {QJsonArray{1}, {}, {}, {}, {}}, {QJsonValue(), {}, {}, {}, {}}};
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

TEST_F(UserDefaultsTest, ADamagedFileIsKeptAsideAndNeverReplaced)
{
    const QByteArray damages[]{"", "{\"key\": tru", "[1, 2]", "{\"key\":" + QByteArray(100'000, '['),
        "{\"key\":\"" + QByteArray(2 << 20, 'x') + "\"}"};
    const auto aside = [&](int number) {
        return own(number == 1 ? u"defaults.damaged.json"_s : u"defaults.damaged-%1.json"_s.arg(number));
    };
    int number = 0;
    for (const auto& damage : damages) {
        put(damage);
        auto defaults = open();
        EXPECT_FALSE(defaults.contains(key));
        EXPECT_EQ(stage::contents(file()), damage) << "reading alone changes nothing";
        defaults.set(u"other"_s, true);
        EXPECT_EQ(onDisk(), (QJsonObject{{u"other"_s, true}}));
        EXPECT_EQ(stage::contents(aside(++number)), damage);
    }
    for (; number > 0; --number)
        EXPECT_EQ(stage::contents(aside(number)), damages[number - 1]) << "an earlier one was overwritten";
}

TEST_F(UserDefaultsTest, AFileThatCannotBeReadIsLeftAloneAndValuesLiveInMemory)
{
    const QByteArray secret = "{\"key\": 7}";
    put(secret);
    stage::require(chmod(QFile::encodeName(file()).constData(), 0) == 0, "chmod");
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

TEST_F(UserDefaultsTest, AFullDiskChangesNothingAndTheNextWriteCatchesUp)
{
    NEEDS_DISKS();
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

TEST_F(UserDefaultsTest, ProcessesThatWriteAtOnceLoseNoKeyAndLetNobodyElseReadThem)
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
    for (const auto& name : files())
        EXPECT_EQ(stage::modeOf(own(name)), 0600u) << name.toStdString();
    EXPECT_EQ(stage::modeOf(own({})), 0700u);
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
            defaults.set(key, 2);
        }
        EXPECT_EQ(defaults.integer(key), 2);
        EXPECT_EQ(files(), QStringList());
    }
    EXPECT_EQ(onDisk().value(key), 2);
}
