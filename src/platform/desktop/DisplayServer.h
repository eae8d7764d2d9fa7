// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace pintalux {

/// Decides for the toolkit how it shows windows, unless somebody has done so already. Before the application
/// object is made.
///
/// In a Wayland session the windows come through its X server, until they can do better.
void chooseDisplaySystem();

/// Why no window can be shown, as a Spanish sentence; none when a display server answers.
///
/// The toolkit ends the process when there is no server, so whoever needs one asks here first.
std::optional<QString> displayProblem();

} // namespace pintalux
