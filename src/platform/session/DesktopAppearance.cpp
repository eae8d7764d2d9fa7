// SPDX-License-Identifier: MIT
#include "platform/session/DesktopAppearance.h"

#include "platform/desktop/WindowSystem.h"
#include "platform/session/SessionBus.h"
#include "platform/session/ThemeName.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

const auto service = u"org.freedesktop.portal.Desktop"_s;
const auto path = u"/org/freedesktop/portal/desktop"_s;
const auto interface = u"org.freedesktop.portal.Settings"_s;
const auto appearance = u"org.freedesktop.appearance"_s;
const auto colorScheme = u"color-scheme"_s;
const auto widgets = u"org.gnome.desktop.interface"_s;
const auto theme = u"gtk-theme"_s;

/// The value within as many variants as the portal has put around it.
QVariant opened(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

/// What programs go by whose desktop runs no settings daemon.
QString themeOfSettingsFile()
{
    const auto path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + u"/gtk-3.0/settings.ini"_s;
    if (!QFileInfo::exists(path))
        return {};
    const QSettings file(path, QSettings::IniFormat);
    if (file.value(u"Settings/gtk-application-prefer-dark-theme"_s).toBool())
        return u"dark"_s;
    return file.value(u"Settings/gtk-theme-name"_s).toString();
}

} // namespace

DesktopAppearance::DesktopAppearance(QObject* parent)
    : QObject(parent)
{
    connect(&WindowSystem::current(), &WindowSystem::themeNameChanged, this, &DesktopAppearance::changed);
    auto bus = sessionBus();
    if (!bus)
        return;
    bus->connect(service, path, interface, u"SettingChanged"_s, this, SLOT(settingChanged(QDBusMessage)));
    ask(appearance, colorScheme);
    ask(widgets, theme);
}

std::optional<bool> DesktopAppearance::wishesDark() const
{
    constexpr uint dark = 1;
    constexpr uint light = 2;
    if (scheme == dark || scheme == light)
        return scheme == dark;
    for (const auto& name :
        {qEnvironmentVariable("GTK_THEME"), WindowSystem::current().themeName(), portalTheme})
        if (!name.isEmpty())
            return isDarkTheme(name) ? std::optional(true) : std::nullopt;
    return isDarkTheme(themeOfSettingsFile()) ? std::optional(true) : std::nullopt;
}

void DesktopAppearance::ask(const QString& space, const QString& key)
{
    auto question = QDBusMessage::createMethodCall(service, path, interface, u"Read"_s);
    question.setArguments({space, key});
    auto* answer = new QDBusPendingCallWatcher(sessionBus()->asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, space, key] {
        answer->deleteLater();
        if (!answer->isError())
            take(space, key, answer->reply().arguments().value(0));
    });
}

void DesktopAppearance::settingChanged(const QDBusMessage& change)
{
    const auto said = change.arguments();
    take(said.value(0).toString(), said.value(1).toString(), said.value(2));
}

void DesktopAppearance::take(const QString& space, const QString& key, const QVariant& value)
{
    if (space == appearance && key == colorScheme)
        scheme = opened(value).toUInt();
    else if (space == widgets && key == theme)
        portalTheme = opened(value).toString();
    else
        return;
    Q_EMIT changed();
}

} // namespace pintalux
