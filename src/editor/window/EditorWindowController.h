// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorCommands.h"
#include "editor/state/EditorModel.h"
#include "editor/window/EditorWindow.h"

#include <QObject>

#include <functional>
#include <memory>

class QMenu;

namespace pintalux {

/// One open editor: its model, its window and what a person can do with the picture.
///
/// Rendering that fails makes a command do nothing; what else fails is said on screen. Main thread only.
class EditorWindowController : public QObject {
    Q_OBJECT

public:
    /// Builds the window, sized for the capture; the caller places and shows it. `program` carries out the
    /// commands that are not the editor's.
    EditorWindowController(const CaptureResult& shot, Settings& settings, RunCommand program);
    ~EditorWindowController() override;

    EditorModel& model() { return editorModel; }
    EditorWindow& window() { return *editorWindow; }
    CanvasView& canvas() { return editorWindow->canvas(); }

    /// Called when the window is about to close; the owner drops the controller, but not before the event
    /// that closes it is over.
    std::function<void()> onClose;

    /// Carries out a command: the editor's own here, the program's there. One of a text is for
    /// `runFromMenu`.
    void run(Command command);
    /// The same, but in the text that is being typed where that knows the command.
    void runFromMenu(Command command);

    /// Finishes a text that is being typed.
    void commitText();
    void undo();
    void redo();
    void clear();
    /// The finished picture to the clipboard.
    void copy();
    void paste();
    /// Asks for a place and saves there.
    void saveAs();
    /// Saves into the captures folder.
    void quickSave();
    /// Asks for pictures and puts them on the document.
    void insertImage();
    void duplicate();
    void bringForward();
    void sendBackward();
    void deleteMark();
    void pin();
    void extractText();
    /// The hovered colour's text to the clipboard.
    void copyHoverColor();
    /// Starts dragging the finished picture out of the window; `source` is where the press was.
    void dragOut(QWidget& source);
    /// Puts all windows of the program away; the task bar brings them back.
    void hide();
    void minimize();
    void close();

    /// Puts the pictures of these files on the document, the first in the middle of what is seen, the others
    /// further down and to the right. Files that hold no picture are skipped. Returns before they are read.
    void insertFiles(const QStringList& paths);

private:
    /// The finished picture, with the text that is being typed; null when it cannot be made.
    QImage finishedImage();
    /// Puts the finished picture on the clipboard; false when it cannot be made.
    bool copyFinished();
    void windowWillClose();
    void makeMenuBar();
    void showWhatIsPossible(const QMenu& menu) const;

    EditorModel editorModel;
    Settings& settings;
    RunCommand program;
    std::unique_ptr<EditorWindow> editorWindow;
};

} // namespace pintalux
