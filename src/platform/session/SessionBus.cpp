// SPDX-License-Identifier: MIT
#include "platform/session/SessionBus.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Without an address the bus library starts a bus for the display, which nobody else would be on.
bool hasAddress()
{
    const auto address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return !address.startsWith(u"autolaunch:");
    const auto runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(runtime + u"/bus"_s);
}

} // namespace

std::optional<QDBusConnection> sessionBus()
{
    if (!hasAddress())
        return std::nullopt;
    const auto bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

} // namespace pintalux
