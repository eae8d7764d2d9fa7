// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace pintalux {

/// Whether the name of a widgets' theme says that it is dark: "Adwaita-dark", "Mint-Y-Dark-Aqua",
/// "Adwaita:dark".
bool isDarkTheme(const QString& name);

} // namespace pintalux
