// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

namespace pintalux {

/// What the controls around the canvas can ask of an editor's window.
class EditorCommands {
public:
    virtual ~EditorCommands() = default;

    /// Finishes a text that is being typed.
    virtual void commitText() = 0;
    virtual void undo() = 0;
    virtual void redo() = 0;
    /// The finished picture to the clipboard.
    virtual void copy() = 0;
    /// Asks for a place and saves there.
    virtual void saveAs() = 0;
    /// Saves into the captures folder.
    virtual void quickSave() = 0;
    /// Asks for pictures and puts them on the document.
    virtual void insertImage() = 0;
    virtual void pin() = 0;
    virtual void extractText() = 0;
    /// The hovered colour's text to the clipboard.
    virtual void copyHoverColor() = 0;
    /// Starts dragging the finished picture out of the window; `source` is where the press was.
    virtual void dragOut(QWidget& source) = 0;
};

} // namespace pintalux
