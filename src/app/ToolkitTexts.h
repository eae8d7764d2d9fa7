// SPDX-License-Identifier: MIT
#pragma once

class QCoreApplication;

namespace pintalux {

/// Makes the toolkit's own dialogs and context menus speak Spanish. Where its translation is not installed
/// they speak English.
void translateToolkit(QCoreApplication& application);

} // namespace pintalux
