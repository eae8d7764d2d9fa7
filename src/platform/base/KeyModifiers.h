// SPDX-License-Identifier: MIT
#pragma once

#include <QFlags>

namespace pintalux {

/// The keys that are held while another one is pressed, as the symbols ⌃ ⇧ ⌥ ⌘ name them.
///
/// In global hot keys they are Ctrl, Shift, Alt and Super. Inside the program's own windows ⌘ is Ctrl too.
enum class KeyModifier {
    control = 1,
    shift = 2,
    option = 4,
    command = 8,
};
Q_DECLARE_FLAGS(KeyModifiers, KeyModifier)
Q_DECLARE_OPERATORS_FOR_FLAGS(KeyModifiers)

} // namespace pintalux
