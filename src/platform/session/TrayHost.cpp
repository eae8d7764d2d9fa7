// SPDX-License-Identifier: MIT
#include "platform/session/TrayHost.h"

#include "platform/desktop/WindowSystem.h"
#include "platform/session/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr int answerLimitMilliseconds = 300;

/// What a service on the session bus answers, its variants opened; invalid when it does not in time.
QVariant ask(const QString& service, const QString& path, const QString& interface, const QString& method,
    const QVariantList& arguments)
{
    const auto bus = sessionBus();
    if (!bus || !bus->interface()->isServiceRegistered(service))
        return {};
    auto call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    const auto answer = bus->call(call, QDBus::Block, answerLimitMilliseconds);
    auto value = answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0) : QVariant();
    while (value.canConvert<QDBusVariant>() && value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

bool hasStatusNotifierHost()
{
    const auto watcher = u"org.kde.StatusNotifierWatcher"_s;
    return ask(watcher, u"/StatusNotifierWatcher"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
        {watcher, u"IsStatusNotifierHostRegistered"_s})
        .toBool();
}

} // namespace

TrayHost findTrayHost()
{
    if (QGuiApplication::platformName() == u"offscreen"_s)
        return TrayHost::none;
    if (hasStatusNotifierHost())
        return TrayHost::statusNotifier;
    return WindowSystem::current().hasTrayPanel() ? TrayHost::embedded : TrayHost::none;
}

std::optional<QColor> panelColorAround(const QRect& iconFrame)
{
    auto* screen = QGuiApplication::screenAt(iconFrame.center());
    if (!screen || iconFrame.isEmpty())
        return std::nullopt;
    const auto frame = iconFrame.translated(-screen->geometry().topLeft());
    const auto picture = screen->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height()).toImage();
    if (picture.isNull())
        return std::nullopt;
    int red = 0;
    int green = 0;
    int blue = 0;
    for (const int x : {0, picture.width() - 1})
        for (const int y : {0, picture.height() - 1}) {
            const auto color = picture.pixelColor(x, y);
            red += color.red();
            green += color.green();
            blue += color.blue();
        }
    return QColor(red / 4, green / 4, blue / 4);
}

} // namespace pintalux
