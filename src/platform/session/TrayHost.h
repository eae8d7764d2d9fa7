// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QRect>

#include <optional>

namespace pintalux {

/// The places for status icons that a desktop can offer.
enum class TrayHost {
    none,
    statusNotifier, ///< draws the icon and its menu itself, told over D-Bus
    embedded,       ///< gives our own window a place in its panel
};

/// The place there is now. The toolkit looks for a StatusNotifier host only once, when the first status icon
/// is made, so nobody makes one before this says that there is a place.
TrayHost findTrayHost();

/// What the panel shows at the corners of an embedded icon, which are clear; none when it cannot be read.
std::optional<QColor> panelColorAround(const QRect& iconFrame);

} // namespace pintalux
