// SPDX-License-Identifier: MIT
#pragma once

namespace pintalux {

struct PermissionHelp;

/// Says in a dialog what a person can do who has not allowed pictures of the screen, and opens the desktop's
/// settings where it has any for that. Called again, it brings back the one that is there.
void showPermissionAlert(const PermissionHelp& help);

} // namespace pintalux
