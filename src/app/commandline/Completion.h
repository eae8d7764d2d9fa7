// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace pintalux {

/// The script that lets a shell complete the program's options: "bash", "zsh" or "fish". Made from the
/// options of the command line; empty for any other shell.
QString completionScript(QStringView shell);

} // namespace pintalux
