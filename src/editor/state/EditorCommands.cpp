// SPDX-License-Identifier: MIT
#include "editor/state/EditorCommands.h"

#include "editor/state/EditorModel.h"

namespace pintalux {

namespace {

bool canMove(DocumentEditing::Order order, const EditorModel& model)
{
    const auto* mark = model.selected();
    return mark && DocumentEditing::placePast(model.doc(), mark->id, order);
}

} // namespace

bool isPossible(Command command, const EditorModel& model)
{
    switch (command) {
    case Command::undo:
        return model.undoCount() > 0;
    case Command::redo:
        return model.redoCount() > 0;
    case Command::clear:
        return !model.doc().annotations.isEmpty();
    case Command::duplicate:
    case Command::deleteMark:
        return model.selected();
    case Command::bringForward:
        return canMove(DocumentEditing::Order::forward, model);
    case Command::sendBackward:
        return canMove(DocumentEditing::Order::backward, model);
    default:
        return true;
    }
}

} // namespace pintalux
