// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

/// Who made the program, for display only.
namespace pintalux::Author {

inline constexpr QStringView credit = u"Hecho con calma para Linux";
inline constexpr QStringView website = u"pintalux.example";
inline constexpr QStringView url = u"https://pintalux.example";

} // namespace pintalux::Author
