// SPDX-License-Identifier: MIT
#include "editor/state/EditorCommands.h"

#include "editor/state/EditorModel.h"

namespace pintalux {

bool isPossible(Command command, const EditorModel& model)
{
    switch (command) {
    case Command::undo:
        return model.undoCount() > 0;
    case Command::redo:
        return model.redoCount() > 0;
    case Command::clear:
        return !model.doc().annotations.isEmpty();
    default:
        return true;
    }
}

} // namespace pintalux
