// SPDX-License-Identifier: MIT
#include "settings/SettingsFile.h"

#include "model/JsonReader.h"
#include "platform/graphics/Color.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr qint64 largestFile = 1 << 20;

const QString appKey = QStringLiteral("app");
const QString versionKey = QStringLiteral("version");

Error unreadable(const QString& sentence) { return {Error::ownDomain, 1, sentence}; }
Error notOurs() { return {Error::ownDomain, 2, u"El archivo no es una configuración de Pintalux."_s}; }

// A value of each type as JSON.

QJsonValue asJson(bool value) { return value; }
QJsonValue asJson(int value) { return value; }
QJsonValue asJson(double value) { return value; }
QJsonValue asJson(const QString& value) { return value; }
QJsonValue asJson(const QColor& value) { return hexString(value); }
template <StringEnum E> QJsonValue asJson(E value) { return rawValue(value); }

// What is wrong with a value for a field of each type; empty when it has the right one.

bool isWhole(const QJsonValue& value)
{
    // Two fallbacks tell a number that is no whole one of 64 bits from one that equals a fallback.
    return value.isDouble() && value.toInteger(0) == value.toInteger(1);
}

QStringView fault(const QJsonValue& value, bool) { return value.isBool() ? u"" : u"debe ser true o false"; }
QStringView fault(const QJsonValue& value, int)
{
    return isWhole(value) ? u"" : u"debe ser un número entero";
}
QStringView fault(const QJsonValue& value, double)
{
    return value.isDouble() && std::isfinite(value.toDouble()) ? u"" : u"debe ser un número";
}
QStringView fault(const QJsonValue& value, const QString&)
{
    return value.isString() ? u"" : u"debe ser un texto";
}
QStringView fault(const QJsonValue& value, const QColor&) { return fault(value, QString()); }
template <StringEnum E> QStringView fault(const QJsonValue& value, E) { return fault(value, QString()); }

// What a value of the right type means; one that means nothing leaves the field as it is.

double limited(const QJsonValue& value, const SettingRow& row)
{
    return std::clamp(value.toDouble(), row.least, row.most);
}

/// An absolute path; one that is not counts from the home folder. Empty for what is no path. By hand, for the
/// toolkit has other beginnings, such as ":", for absolute paths of its own.
QString folderNamed(const QString& text)
{
    if (text.isEmpty() || text.contains(QChar(u'\0')))
        return {};
    if (text.startsWith(u'/'))
        return QDir::cleanPath(text);
    const bool isInHome = text == u"~" || text.startsWith(u"~/");
    return QDir::cleanPath(QDir::homePath() + u'/' + text.mid(isInHome ? 2 : 0));
}

void assign(const QJsonValue& value, const SettingRow&, bool& field) { field = value.toBool(); }
void assign(const QJsonValue& value, const SettingRow& row, int& field) { field = int(limited(value, row)); }
void assign(const QJsonValue& value, const SettingRow& row, double& field) { field = limited(value, row); }
void assign(const QJsonValue& value, const SettingRow&, QString& field)
{
    if (const auto folder = folderNamed(value.toString()); !folder.isEmpty())
        field = folder;
}
void assign(const QJsonValue& value, const SettingRow&, QColor& field)
{
    field = colorFromHex(value.toString()).value_or(field);
}
template <StringEnum E> void assign(const QJsonValue& value, const SettingRow&, E& field)
{
    field = fromRawValue<E>(value.toString()).value_or(field);
}

QJsonObject parsed(const QByteArray& json)
{
    if (json.trimmed().isEmpty())
        throw unreadable(u"El archivo está vacío."_s);
    QJsonParseError problem{};
    const auto document = QJsonDocument::fromJson(json, &problem);
    if (document.isNull())
        throw unreadable(u"El archivo no es JSON válido (línea %1)."_s.arg(
            json.first(std::clamp<qsizetype>(problem.offset, 0, json.size())).count('\n') + 1));
    // What has no such mark at all is no less somebody else's than what has another one.
    auto fields = document.object();
    if (!fields.contains(appKey))
        throw notOurs();
    if (const auto repeated = repeatedName(json, 1))
        throw unreadable(u"El archivo contiene «%1» dos veces."_s.arg(repeated->name));
    return fields;
}

/// The field of that name, of the type of `like`.
template <typename T> QJsonValue required(const QJsonObject& fields, const QString& name, const T& like)
{
    auto value = fields.value(name);
    if (value.isUndefined())
        throw unreadable(u"Al archivo le falta «%1»."_s.arg(name));
    if (const auto what = fault(value, like); !what.isEmpty())
        throw unreadable(u"En el archivo, «%1» %2."_s.arg(name, what));
    return value;
}

} // namespace

QJsonValue settingAsJson(const SettingsValues& values, const SettingRow& row)
{
    return std::visit([&](auto field) { return asJson(values.*field); }, row.field);
}

Settings::Snapshot::Snapshot(const SettingsValues& settings)
{
    for (const auto& row : settingTable)
        (*this)[row.value] = settingAsJson(settings, row);
}

const Settings::Snapshot& Settings::Snapshot::factory()
{
    static const Snapshot snapshot{SettingsValues()};
    return snapshot;
}

SettingsValues Settings::Snapshot::applied(const SettingsValues& current) const
{
    SettingsValues result;
    result.shortcutPreset = current.shortcutPreset;
    for (const auto& row : settingTable)
        std::visit([&](auto field) { assign((*this)[row.value], row, result.*field); }, row.field);
    return result;
}

QByteArray Settings::Snapshot::encoded() const
{
    QJsonObject fields{{appKey, app}, {versionKey, version}};
    for (const auto& row : settingTable)
        fields.insert(row.fileKey.toString(), (*this)[row.value]);
    // A slash in a JSON text is always inside a string.
    return QJsonDocument(fields).toJson().replace('/', "\\/");
}

Settings::Snapshot Settings::Snapshot::decoded(const QByteArray& json)
{
    const auto fields = parsed(json);
    auto snapshot = factory();
    snapshot.app = required(fields, appKey, QString()).toString();
    if (snapshot.app != factory().app)
        throw notOurs();
    snapshot.version = required(fields, versionKey, int()).toInteger();
    const SettingsValues types;
    for (const auto& row : settingTable)
        snapshot[row.value] = std::visit(
            [&](auto field) { return required(fields, row.fileKey.toString(), types.*field); }, row.field);
    return snapshot;
}

void Settings::Snapshot::write(const QString& path, Audience audience) const
{
    makeFolders(QFileInfo(path).absolutePath(), audience);
    replaceFile(path, encoded(), audience);
}

Settings::Snapshot Settings::Snapshot::read(const QString& path)
{
    QByteArray bytes;
    switch (const int failure = readFile(path, largestFile, bytes)) {
    case 0:
        return decoded(bytes);
    case EFBIG:
        throw unreadable(u"El archivo es demasiado grande para ser una configuración de Pintalux."_s);
    case EIO:
        throw unreadable(u"No se pudo leer «%1»."_s.arg(path));
    default:
        throw fileError(failure, path);
    }
}

} // namespace pintalux
