// SPDX-License-Identifier: MIT
#pragma once

class QApplication;

namespace pintalux {

/// Makes the application's windows dark when the desktop wishes so and the toolkit's own palette, which knows
/// the colours of some desktops only, is light. Follows each change until the application ends.
void followDesktopTheme(QApplication& application);

} // namespace pintalux
