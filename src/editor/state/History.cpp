// SPDX-License-Identifier: MIT
#include "editor/state/History.h"

#include <utility>

namespace pintalux {

void History::record(const Document& before)
{
    recordCheckpoint(before);
    if (undoStack.size() > limit)
        undoStack.removeFirst();
}

void History::recordCheckpoint(Document before)
{
    undoStack.append(std::move(before));
    redoStack.clear();
}

bool History::exchange(Document& document, QList<Document>& from, QList<Document>& to)
{
    if (from.isEmpty())
        return false;
    to.append(std::exchange(document, from.takeLast()));
    return true;
}

} // namespace pintalux
