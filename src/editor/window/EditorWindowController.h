// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorCommands.h"
#include "editor/state/EditorModel.h"
#include "editor/window/EditorWindow.h"
#include "editor/window/MainMenu.h"

#include <QObject>

#include <functional>
#include <memory>

class QAction;
class QDrag;

namespace pintalux {

/// One open editor: its model, its window and what a person can do with the picture.
///
/// Rendering that fails makes a command do nothing; what else fails is said on screen. Main thread only.
class EditorWindowController : public QObject, public EditorCommands {
    Q_OBJECT

public:
    /// Carries out a row of the main menu that is not the editor's.
    using DelegateAction = std::function<void(const QString& actionId)>;

    /// Builds the window, sized for the capture; the caller places and shows it.
    EditorWindowController(const CaptureResult& shot, Settings& settings, DelegateAction delegateAction = {});
    ~EditorWindowController() override;

    EditorModel& model() { return editorModel; }
    EditorWindow& window() { return *editorWindow; }
    CanvasView& canvas() { return editorWindow->canvas(); }

    /// Called when the window is about to close; the owner drops the controller, but not before the event
    /// that closes it is over.
    std::function<void()> onClose;

    void commitText() override;
    void undo() override;
    void redo() override;
    void copy() override;
    void saveAs() override;
    void quickSave() override;
    void insertImage() override;
    void pin() override;
    void extractText() override;
    void copyHoverColor() override;
    void dragOut(QWidget& source) override;

    /// Puts the pictures of these files on the document, the first in the middle of what is seen, the others
    /// further down and to the right. Files that hold no picture are skipped. Returns before they are read.
    void insertFiles(const QStringList& paths);

    /// Carries out a row of the main menu: in the view with the focus if that can, else here.
    void runMenuAction(const QString& actionId);

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
    DelegateAction delegateAction;
    std::unique_ptr<EditorWindow> editorWindow;
};

} // namespace pintalux
