// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>

#include <optional>

namespace pintalux {

/// The person's session bus; none where there is none, without starting one. With an application object.
std::optional<QDBusConnection> sessionBus();

} // namespace pintalux
