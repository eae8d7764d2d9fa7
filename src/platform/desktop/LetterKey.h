// SPDX-License-Identifier: MIT
#pragma once

class QKeyEvent;

namespace pintalux {

/// True when the key stands for a Latin letter ('A' to 'Z'): by what the layout makes of it or, where the
/// layout's letters are not Latin, by its place on the keyboard.
bool isLetterKey(const QKeyEvent& event, char letter);

} // namespace pintalux
