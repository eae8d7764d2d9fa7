// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/KeyModifiers.h"

#include <QString>

class QKeySequence;

namespace pintalux {

/// Key combinations as a person reads them on their keyboard, in Spanish: "Ctrl+Mayús+Z", "Supr".
namespace KeyLabel {

/// What ⌘ stands for: Ctrl in the program's own windows, Super in global hot keys.
enum class Scope { window, global };

/// A text in which every combination written with symbols is written out: "⌘⇧Z" becomes "Ctrl+Mayús+Z",
/// "Deshacer (⌘Z)" becomes "Deshacer (Ctrl+Z)", "↩" becomes "Intro", "⌃⇧ + número" becomes
/// "Ctrl+Mayús+número". A key is the one character after the modifiers. All else stays as it is, so that
/// texts without symbols and texts already written out pass unchanged.
QString text(const QString& text, Scope scope = Scope::window);

/// A combination of the toolkit's; several of them in a sequence are joined by ", ". Empty for none.
QString text(const QKeySequence& sequence);

/// A global hot key: "Ctrl+Mayús+1". The key is what is printed on it.
QString hotKey(KeyModifiers modifiers, const QString& key);

} // namespace KeyLabel

} // namespace pintalux
