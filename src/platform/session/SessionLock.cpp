// SPDX-License-Identifier: MIT
#include "platform/session/SessionLock.h"

#include "platform/session/SessionBus.h"

#include <QDBusMessage>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr int limitMilliseconds = 100;

/// The truth that a service answers; false when it does not.
bool answersYes(const QDBusConnection& bus, const QDBusMessage& question)
{
    const auto answer = bus.call(question, QDBus::Block, limitMilliseconds);
    const auto value = answer.arguments().value(0);
    const auto inner = value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    return answer.type() == QDBusMessage::ReplyMessage && inner.toBool();
}

bool loginManagerSaysSo()
{
    const auto bus = QDBusConnection::systemBus();
    auto question = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s,
        u"/org/freedesktop/login1/session/auto"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << u"org.freedesktop.login1.Session"_s << u"LockedHint"_s;
    question.setAutoStartService(false);
    return bus.isConnected() && answersYes(bus, question);
}

bool screenSaverSaysSo()
{
    const auto bus = sessionBus();
    auto question = QDBusMessage::createMethodCall(u"org.freedesktop.ScreenSaver"_s,
        u"/org/freedesktop/ScreenSaver"_s, u"org.freedesktop.ScreenSaver"_s, u"GetActive"_s);
    question.setAutoStartService(false);
    return bus && answersYes(*bus, question);
}

} // namespace

bool isSessionLocked() { return loginManagerSaysSo() || screenSaverSaysSo(); }

} // namespace pintalux
