// SPDX-License-Identifier: MIT
#pragma once

namespace pintalux {

/// Whether the person has locked the session, as the login manager or the desktop's screen saver says; false
/// where neither is there. Waits for each at most a tenth of a second.
bool isSessionLocked();

} // namespace pintalux
