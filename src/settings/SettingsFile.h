// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/Files.h"
#include "settings/Settings.h"

#include <QByteArray>
#include <QJsonValue>

#include <array>

namespace pintalux {

/// A setting's value in the form that the store and a settings file share: a truth value, a number, a word or
/// a colour as text.
QJsonValue settingAsJson(const SettingsValues& values, const SettingRow& row);

/// The record that is written to a settings file and read from one.
///
/// A file is a JSON object in UTF-8 with the names of the settings (`SettingRow::fileKey`), `app` and
/// `version`, all required. Values have the type of their setting but any content: what it means is decided
/// when they are applied.
struct Settings::Snapshot {
    explicit Snapshot(const SettingsValues& values);

    /// The values that the program ships with.
    static const Snapshot& factory();

    QString app = QStringLiteral("Pintalux");
    qint64 version = 1;

    const QJsonValue& operator[](Setting setting) const { return values[std::size_t(setting)]; }
    QJsonValue& operator[](Setting setting) { return values[std::size_t(setting)]; }

    /// What `current` becomes when the record is applied; see `Settings::apply`.
    SettingsValues applied(const SettingsValues& current) const;

    /// The text of a settings file: indented, names in alphabetical order, slashes escaped.
    QByteArray encoded() const;
    /// Throws `Error` for whatever is not the text of a settings file; code 2 for that of another program.
    /// Names that it does not know are ignored, and a name that occurs twice is an error.
    static Snapshot decoded(const QByteArray& json);

    /// Writes the file in one step, and the missing folders above it. Throws `Error`.
    void write(const QString& path, Audience audience) const;
    /// Throws `Error`, also for what is too large to be a settings file; that is known before it is read.
    static Snapshot read(const QString& path);

    bool operator==(const Snapshot&) const = default;

private:
    std::array<QJsonValue, settingTable.size()> values;
};

} // namespace pintalux
