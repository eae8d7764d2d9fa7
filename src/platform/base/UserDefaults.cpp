// SPDX-License-Identifier: MIT
#include "platform/base/UserDefaults.h"

#include "platform/base/Files.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

using namespace std::chrono_literals;

/// Real settings take a few kilobytes; what is larger is somebody else's file and not worth the memory.
constexpr qint64 largestFile = 1 << 20;

/// Another process holds the lock for the time of one small write; whoever waits longer waits for a stuck
/// one.
constexpr auto longestWait = 100ms;

struct Stored {
    enum class State { good, missing, damaged, unreadable } state;
    QJsonObject values = {};
    int systemError = 0; ///< of an unreadable file
};

Stored readStored(const QString& path)
{
    using State = Stored::State;
    QByteArray bytes;
    const int failure = readFile(path, largestFile, bytes);
    if (failure == ENOENT || failure == ENOTDIR)
        return {State::missing};
    if (failure == EFBIG)
        return {State::damaged};
    if (failure != 0)
        return {State::unreadable, {}, failure};
    const auto document = QJsonDocument::fromJson(bytes);
    if (!document.isObject())
        return {State::damaged};
    return {State::good, document.object()};
}

/// Excludes the other processes that write the same domain; given up by the system when this one ends.
class DomainLock {
public:
    explicit DomainLock(const QString& path)
        : descriptor(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
        if (descriptor < 0)
            throw fileError(errno, path);
        const auto end = std::chrono::steady_clock::now() + longestWait;
        while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            // Where the file system knows no locks, the write goes on without one.
            if (errno != EWOULDBLOCK && errno != EINTR)
                return;
            if (std::chrono::steady_clock::now() > end) {
                ::close(descriptor);
                throw fileError(ETIMEDOUT, path);
            }
            std::this_thread::sleep_for(1ms);
        }
    }
    DomainLock(const DomainLock&) = delete;
    DomainLock& operator=(const DomainLock&) = delete;
    ~DomainLock() { ::close(descriptor); }

private:
    int descriptor;
};

/// Moves a damaged file to the first free name beside it.
void keepAside(const QString& path)
{
    const auto stem = QFileInfo(path).path() + u"/defaults.damaged"_s;
    auto aside = stem + u".json"_s;
    for (int n = 2;; ++n) {
        const int problem = moveToFreeName(path, aside);
        if (problem == 0)
            return;
        if (problem != EEXIST)
            throw fileError(problem, path);
        aside = u"%1-%2.json"_s.arg(stem, QString::number(n));
    }
}

bool isStorable(const QJsonValue& value) { return !value.isDouble() || std::isfinite(value.toDouble()); }

} // namespace

UserDefaults& UserDefaults::standard()
{
    static UserDefaults defaults(u"pintalux"_s);
    return defaults;
}

UserDefaults UserDefaults::inMemory(QJsonObject values, QMap<QString, QJsonObject> otherDomains)
{
    UserDefaults defaults;
    defaults.values = std::move(values);
    defaults.otherDomains = std::move(otherDomains);
    return defaults;
}

UserDefaults::UserDefaults(const QString& domain, const QString& configurationFolder)
    : ownDomain(domain)
    , folder(configurationFolder)
{
    const auto stored = readStored(fileOf(domain));
    values = stored.values;
    if (stored.state == Stored::State::unreadable)
        failure = fileError(stored.systemError, fileOf(domain));
}

std::optional<bool> UserDefaults::boolean(const QString& key) const
{
    const auto value = values.value(key);
    return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<qint64> UserDefaults::integer(const QString& key) const
{
    const auto value = values.value(key);
    if (!value.isDouble())
        return std::nullopt;
    // Two fallbacks tell a number that is no whole one of this size from one that equals a fallback.
    const auto number = value.toInteger(0);
    return number == value.toInteger(1) ? std::optional(number) : std::nullopt;
}

std::optional<double> UserDefaults::real(const QString& key) const
{
    const auto value = values.value(key);
    return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

std::optional<QString> UserDefaults::string(const QString& key) const
{
    const auto value = values.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

bool UserDefaults::contains(const QString& key) const
{
    const auto value = values.value(key);
    return !value.isUndefined() && !value.isNull();
}

void UserDefaults::set(const QString& key, const QJsonValue& value) { set(QJsonObject{{key, value}}); }

void UserDefaults::set(const QJsonObject& changes)
{
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (!isStorable(change.value()))
            continue;
        values.insert(change.key(), change.value());
        if (ownDomain)
            pending.insert(change.key(), change.value());
    }
    if (holds == 0)
        synchronize();
}

UserDefaults::Hold::Hold(UserDefaults& held)
    : defaults(held)
{
    ++defaults.holds;
}

UserDefaults::Hold::~Hold()
{
    if (--defaults.holds == 0)
        defaults.synchronize();
}

std::optional<QJsonObject> UserDefaults::persistentDomain(const QString& name) const
{
    if (!ownDomain)
        return otherDomains.contains(name) ? std::optional(otherDomains[name]) : std::nullopt;
    if (name.isEmpty() || name.startsWith(u'.') || name.contains(u'/'))
        return std::nullopt;
    auto stored = readStored(fileOf(name));
    return stored.state == Stored::State::good ? std::optional(std::move(stored.values)) : std::nullopt;
}

bool UserDefaults::synchronize()
{
    if (pending.isEmpty())
        return true;
    try {
        mergeIntoFile();
        pending.clear();
        failure.reset();
        isWriteFailing = false;
    } catch (const Error& error) {
        failure = error;
        if (onWriteFailure && !std::exchange(isWriteFailing, true))
            onWriteFailure(error);
    }
    return !failure;
}

QString UserDefaults::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

QString UserDefaults::fileOf(const QString& domain) const
{
    return u"%1/%2/defaults.json"_s.arg(folder, domain);
}

void UserDefaults::mergeIntoFile()
{
    const auto path = fileOf(*ownDomain);
    const auto ownFolder = QFileInfo(path).path();
    makeFolders(ownFolder, Audience::onlyOwner);
    const DomainLock lock(ownFolder + u"/defaults.lock"_s);

    const auto stored = readStored(path);
    if (stored.state == Stored::State::unreadable)
        throw fileError(stored.systemError, path);
    // A file that went missing or bad since it was read is written again from what is known here.
    auto merged = stored.state == Stored::State::good ? stored.values : values;
    for (auto change = pending.begin(); change != pending.end(); ++change)
        merged.insert(change.key(), change.value());
    if (stored.state == Stored::State::damaged)
        keepAside(path);
    if (stored.state != Stored::State::good || merged != stored.values)
        replaceFile(path, QJsonDocument(merged).toJson(), Audience::onlyOwner);
    values = merged;
}

} // namespace pintalux
