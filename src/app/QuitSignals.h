// SPDX-License-Identifier: MIT
#pragma once

namespace pintalux {

/// From now on a request to end from the system or the terminal (TERM, INT, HUP) ends the event loop as
/// "Salir" does, when what is being done is done: a picture being written is whole, and the clipboard's
/// content goes to whoever keeps it. The loop's result is the one that shells give for the signal. A second
/// request ends the process at once; one that was ignored from the start stays so.
///
/// With an application object, once.
void quitOnSignals();

/// From now on, when the toolkit ends the process from within the event loop, as it does when the display
/// server has gone (a logout), what is being saved is finished first. Nothing else is put away, for that
/// would use the display.
void finishSavingWithoutDisplay();

} // namespace pintalux
