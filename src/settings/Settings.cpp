// SPDX-License-Identifier: MIT
#include "settings/Settings.h"

#include "platform/graphics/Color.h"
#include "settings/SettingsFile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

const QString siblingDomain = QStringLiteral("trazalio");
const QString siblingCopiedKey = QStringLiteral("ajustesCopiadosDeTrazalio");
const QString launchedKey = QStringLiteral("hasLaunchedBefore");

static_assert(isComplete(settingTable, &SettingRow::value), "a setting's row is found by its ordinal");

// How a value of each type is read; what cannot be read leaves the value as it is.

void fetch(const UserDefaults& store, const QString& key, bool& value)
{
    value = store.boolean(key).value_or(value);
}

/// A number beyond the range is still no index of anything: it stays the nearest one.
void fetch(const UserDefaults& store, const QString& key, int& value)
{
    using Limits = std::numeric_limits<int>;
    value = int(std::clamp<qint64>(store.integer(key).value_or(value), Limits::min(), Limits::max()));
}

void fetch(const UserDefaults& store, const QString& key, double& value)
{
    value = store.real(key).value_or(value);
}

void fetch(const UserDefaults& store, const QString& key, QString& value)
{
    if (const auto text = store.string(key); text && !text->isEmpty())
        value = *text;
}

void fetch(const UserDefaults& store, const QString& key, QColor& value)
{
    value = colorFromHex(store.string(key).value_or(QString())).value_or(value);
}

template <StringEnum E> void fetch(const UserDefaults& store, const QString& key, E& value)
{
    value = fromRawValue<E>(store.string(key).value_or(QString())).value_or(value);
}

} // namespace

SettingsValues::SettingsValues()
    : saveFolder(Settings::defaultFolder())
{
}

Settings& Settings::shared()
{
    static Settings settings(UserDefaults::standard());
    return settings;
}

const QString& Settings::defaultFolder()
{
    static const auto folder = [] {
        const auto pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
        return (pictures.isEmpty() ? QDir::homePath() + u"/Pictures"_s : pictures) + u"/Pintalux"_s;
    }();
    return folder;
}

Settings::Settings(UserDefaults& defaults)
    : store(defaults)
{
    copySiblingSettings();
    for (const auto& row : settingTable)
        std::visit([&](auto field) { fetch(store, row.key.toString(), current.*field); }, row.field);
    store.onWriteFailure = [this](const Error& error) { Q_EMIT writeFailed(error.localizedDescription); };
}

Settings::~Settings() { store.onWriteFailure = nullptr; }

void Settings::setStrokeWidth(double width)
{
    if (std::isfinite(width))
        set(Setting::strokeWidth, width);
}

Settings::Snapshot Settings::snapshot() const { return Snapshot(current); }

void Settings::apply(const Snapshot& snapshot)
{
    const auto next = snapshot.applied(current);
    const bool presetStays = next.shortcutPreset == current.shortcutPreset;
    const auto isSet
        = [=](const SettingRow& row) { return row.value != Setting::shortcutPreset || !presetStays; };
    QJsonObject changes;
    for (const auto& row : settingTable)
        if (isSet(row))
            changes.insert(row.key.toString(), settingAsJson(next, row));
    current = next;
    store.set(changes);
    for (const auto& row : settingTable)
        if (isSet(row))
            Q_EMIT changed(row.value);
}

void Settings::write(const QString& path) const { snapshot().write(path, Audience::everyone); }

void Settings::read(const QString& path) { apply(Snapshot::read(path)); }

QString Settings::savedCopyPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + u"/pintalux/Configuración guardada.json"_s;
}

bool Settings::hasSavedCopy() { return QFileInfo(savedCopyPath()).isFile(); }

void Settings::saveCopy() const { snapshot().write(savedCopyPath(), Audience::onlyOwner); }

void Settings::restoreSavedCopy() { read(savedCopyPath()); }

void Settings::resetToFactory() { apply(Snapshot::factory()); }

bool Settings::hasLaunchedBefore() const { return store.boolean(launchedKey).value_or(false); }

void Settings::setHasLaunchedBefore(bool launched) { store.set(launchedKey, launched); }

template <typename T> void Settings::set(Setting setting, const T& value)
{
    const auto& row = settingTable[static_cast<std::size_t>(setting)];
    current.*std::get<T SettingsValues::*>(row.field) = value;
    store.set(row.key.toString(), settingAsJson(current, row));
    Q_EMIT changed(setting);
}

/// Every key that has no value here yet is taken over, whatever its name; a missing sibling is as good as
/// copied.
void Settings::copySiblingSettings()
{
    if (store.boolean(siblingCopiedKey).value_or(false))
        return;
    QJsonObject changes;
    const auto sibling = store.persistentDomain(siblingDomain).value_or(QJsonObject());
    for (auto entry = sibling.begin(); entry != sibling.end(); ++entry)
        if (!store.contains(entry.key()))
            changes.insert(entry.key(), entry.value());
    changes.insert(siblingCopiedKey, true);
    store.set(changes);
}

// The setters in the header use these.
template void Settings::set(Setting, const bool&);
template void Settings::set(Setting, const int&);
template void Settings::set(Setting, const double&);
template void Settings::set(Setting, const QString&);
template void Settings::set(Setting, const QColor&);
template void Settings::set(Setting, const ShortcutPreset&);
template void Settings::set(Setting, const AfterCapture&);
template void Settings::set(Setting, const ArrowStyle&);
template void Settings::set(Setting, const PaletteEdge&);

} // namespace pintalux
