// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

namespace pintalux {

/// The program's name towards the desktop: its bus name, its desktop entry, its icon.
inline constexpr QStringView applicationId = u"io.github.pintalux.Pintalux";

} // namespace pintalux
