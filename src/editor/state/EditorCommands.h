// SPDX-License-Identifier: MIT
#pragma once

#include "model/Command.h"

#include <functional>

namespace pintalux {

class EditorModel;

/// Carries out a command. Whoever offers commands is handed one of these.
using RunCommand = std::function<void(Command)>;

/// Whether the command has something to work on in this model; always true of one that needs nothing.
bool isPossible(Command command, const EditorModel& model);

} // namespace pintalux
