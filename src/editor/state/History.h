// SPDX-License-Identifier: MIT
#pragma once

#include "model/Document.h"

#include <QList>

namespace pintalux {

/// What undo and redo go back and forth through: snapshots of the whole document, which share their pixels
/// and their marks until one of them changes.
class History {
public:
    /// Most steps that a recorded change leaves.
    static constexpr qsizetype limit = 200;

    qsizetype undoCount() const { return undoStack.size(); }
    qsizetype redoCount() const { return redoStack.size(); }

    /// Keeps the document before a change. The oldest step beyond `limit` is forgotten, and what was undone
    /// cannot be redone any more.
    void record(const Document& before);
    /// The same for the document before a drag, without forgetting a step.
    void recordCheckpoint(Document before);

    /// Puts the document back to the latest step; false when there is none.
    bool undo(Document& document) { return exchange(document, undoStack, redoStack); }
    /// Puts the document to where the latest undo found it; false when there was none.
    bool redo(Document& document) { return exchange(document, redoStack, undoStack); }

private:
    static bool exchange(Document& document, QList<Document>& from, QList<Document>& to);

    QList<Document> undoStack; ///< oldest first
    QList<Document> redoStack;
};

} // namespace pintalux
