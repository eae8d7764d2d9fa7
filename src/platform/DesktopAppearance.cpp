#include "platform/DesktopAppearance.h"

#include "platform/SessionBus.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace pintalux {

namespace {

const auto service = u"org.freedesktop.portal.Desktop"_qs;
const auto path = u"/org/freedesktop/portal/desktop"_qs;
const auto interface = u"org.freedesktop.portal.Settings"_qs;
const auto appearance = u"org.freedesktop.appearance"_qs;
const auto scheme = u"color-scheme"_qs;

/// The value within as many variants as the portal has put around it.
QVariant opened(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

bool isDark(const QVariant& value)
{
    constexpr uint dark = 1;
    return opened(value).toUInt() == dark;
}

} // namespace

DesktopAppearance::DesktopAppearance(QObject* parent)
    : QObject(parent)
{
    auto bus = sessionBus();
    if (!bus)
        return;
    bus->connect(service, path, interface, u"SettingChanged"_qs, this, SLOT(settingChanged(QDBusMessage)));
    auto question = QDBusMessage::createMethodCall(service, path, interface, u"Read"_qs);
    question.setArguments({appearance, scheme});
    auto* answer = new QDBusPendingCallWatcher(bus->asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        if (!answer->isError())
            Q_EMIT darkWished(isDark(answer->reply().arguments().value(0)));
    });
}

void DesktopAppearance::settingChanged(const QDBusMessage& change)
{
    const auto said = change.arguments();
    if (said.value(0) == appearance && said.value(1) == scheme)
        Q_EMIT darkWished(isDark(said.value(2)));
}

} // namespace pintalux
