// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/Error.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QMap>
#include <QString>

#include <functional>
#include <optional>

namespace pintalux {

/// The person's settings of one application: typed values by key.
///
/// They live in `<configuration folder>/<domain>/defaults.json`, one JSON object, readable by the person
/// alone; the configuration folder is `$XDG_CONFIG_HOME`, else `~/.config`. Every change is written at once.
///
/// A value keeps its type: text is never a number and a boolean never an integer. JSON knows one kind of
/// number, so a number reads as a real one and, if it is whole, as an integer too.
///
/// Nothing of the person's is lost on the way:
/// - Another process may write the same file: each change is merged into what the file holds at that moment,
///   under a lock, and keys that nobody here knows stay.
/// - A file that is not a JSON object is moved aside, to `defaults.damaged.json` or the next free number,
///   when the first change is written; until then it is left alone and counts as empty.
/// - A file that cannot be read is never replaced. Then, and when a write fails, values live in memory, the
///   next change tries to write them again, and `lastError` tells why.
///
/// For the main thread only.
class UserDefaults {
public:
    /// This application's own domain.
    static UserDefaults& standard();

    /// Kept in memory only, beside the given domains of other applications.
    static UserDefaults inMemory(QJsonObject values = {}, QMap<QString, QJsonObject> otherDomains = {});

    /// Reads the domain's file. Nothing is created before the first change.
    explicit UserDefaults(const QString& domain, const QString& configurationFolder = defaultFolder());

    /// None when the key is missing or holds another type; `contains` is false for a missing key and a null.
    std::optional<bool> boolean(const QString& key) const;
    std::optional<qint64> integer(const QString& key) const;
    std::optional<double> real(const QString& key) const;
    std::optional<QString> string(const QString& key) const;
    bool contains(const QString& key) const;

    /// Stores the value and writes it. A number that is not finite is not stored: the key keeps its value.
    void set(const QString& key, const QJsonValue& value);

    /// Stores several values with one write.
    void set(const QJsonObject& changes);

    /// Everything that is stored here.
    const QJsonObject& all() const { return values; }
    /// Everything that is stored for another application; none when it has no readable file.
    std::optional<QJsonObject> persistentDomain(const QString& name) const;

    /// While one lives, changes count at once but are written only when the last one goes: for a value that
    /// follows a drag, since a write takes longer than a frame.
    class Hold {
    public:
        explicit Hold(UserDefaults& held);
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        UserDefaults& defaults;
    };

    /// Writes what an earlier failure left in memory. True when everything is on disk.
    bool synchronize();

    /// Called when a write fails and the one before did not: once for a disk that stays full.
    std::function<void(const Error&)> onWriteFailure;

    /// Why the latest read or write failed; none once everything is on disk.
    const std::optional<Error>& lastError() const { return failure; }

private:
    UserDefaults() = default;
    static QString defaultFolder();
    QString fileOf(const QString& domain) const;
    void mergeIntoFile();

    std::optional<QString> ownDomain; ///< none: in memory
    QString folder;                   ///< the folder of all domains
    QJsonObject values;
    QMap<QString, QJsonValue> pending; ///< changes that are not on disk yet
    int holds = 0;
    QMap<QString, QJsonObject> otherDomains;
    std::optional<Error> failure;
    bool isWriteFailing = false;
};

} // namespace pintalux
