// SPDX-License-Identifier: MIT
#include "editor/window/EditorWindowController.h"

#include "app/icon/AppIcon.h"
#include "app/messages/HUD.h"
#include "editor/canvas/CanvasView.h"
#include "editor/window/EditorWindowLayout.h"
#include "platform/desktop/ToolkitScreens.h"
#include "platform/windowing/VisibleFrame.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

/// Puts all windows of the program away; the task bar brings them back.
void hideAll()
{
    for (auto* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowType() == Qt::Window)
            window->showMinimized();
}

/// The view with the focus, if it is one in which text is typed.
QWidget* focusedTextView(const QWidget& window)
{
    auto* view = QApplication::focusWidget();
    const bool takesText
        = view && window.isAncestorOf(view) && view->testAttribute(Qt::WA_InputMethodEnabled);
    return takesText ? view : nullptr;
}

/// Carries out a standard edit command in the text that is being typed, by the key that stands for it; false
/// when none is, or it is another command.
bool runInText(QStringView actionId, const QWidget& window)
{
    struct Row {
        QStringView actionId;
        Qt::Key key;
    };
    constexpr std::array<Row, 4> rows{
        {{u"cut", Qt::Key_X}, {u"copy", Qt::Key_C}, {u"paste", Qt::Key_V}, {u"selectAll", Qt::Key_A}}};
    auto* view = focusedTextView(window);
    const auto row = std::ranges::find(rows, actionId, &Row::actionId);
    if (!view || row == rows.end())
        return false;
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent key(type, row->key, Qt::ControlModifier);
        QCoreApplication::sendEvent(view, &key);
    }
    return true;
}

} // namespace

EditorWindowController::EditorWindowController(
    const CaptureResult& shot, Settings& store, DelegateAction action)
    : editorModel(shot, store)
    , settings(store)
    , delegateAction(std::move(action))
    , editorWindow(std::make_unique<EditorWindow>(editorModel, *this))
{
    editorWindow->setWindowIcon(AppIcon::windowIcon());
    editorWindow->setWillClose([this] { windowWillClose(); });
    makeMenuBar();
    const auto visible = visibleFrame(*screenUnderPointer());
    auto size = EditorWindowLayout::contentSize(QSizeF(shot.image.size()) / shot.pixelScale, visible.size());
    size.rheight() += editorWindow->menuBarHeight(); // else a capture that fits would be shown smaller
    editorWindow->resize(size);
    editorWindow->move(EditorWindowLayout::windowPosition(EditorWindowLayout::framed(size), visible, {}));
    editorWindow->applyPaletteLayout(false);
}

EditorWindowController::~EditorWindowController() = default;

void EditorWindowController::makeMenuBar()
{
    auto bar = MainMenu::make([this](const QString& actionId, MainMenu::Target target) {
        if (target == MainMenu::Target::responder)
            runMenuAction(actionId);
        else if (delegateAction)
            delegateAction(actionId);
    });
    for (auto* action : bar->actions()) {
        const auto* menu = action->menu();
        connect(menu, &QMenu::aboutToShow, this, [this, menu] { showWhatIsPossible(*menu); });
        // A row that cannot do anything does nothing; its key must not go elsewhere because the row was
        // drawn faint when the menu was last open.
        connect(menu, &QMenu::aboutToHide, menu, [menu] {
            for (auto* row : menu->actions())
                row->setEnabled(true);
        });
    }
    editorWindow->setMenuBar(std::move(bar));
}

void EditorWindowController::showWhatIsPossible(const QMenu& menu) const
{
    const bool typing = focusedTextView(*editorWindow);
    for (auto* row : menu.actions()) {
        const auto actionId = row->data().toString();
        if (actionId == u"editorUndo")
            row->setEnabled(typing || editorModel.undoCount() > 0);
        else if (actionId == u"editorRedo")
            row->setEnabled(editorModel.redoCount() > 0);
        else if (actionId == u"cut" || actionId == u"selectAll")
            row->setEnabled(typing);
    }
}

void EditorWindowController::runMenuAction(const QString& actionId)
{
    struct Row {
        QStringView actionId;
        std::function<void()> run;
    };
    const std::array<Row, 11> rows{{
        {u"editorUndo", [this] { undo(); }},
        {u"editorRedo", [this] { redo(); }},
        {u"copy", [this] { copy(); }},
        {u"paste", [this] { canvas().paste(); }},
        {u"editorSave", [this] { saveAs(); }},
        {u"editorQuickSave", [this] { quickSave(); }},
        {u"editorInsertImage", [this] { insertImage(); }},
        {u"performClose", [this] { editorWindow->close(); }},
        {u"performMiniaturize", [this] { editorWindow->showMinimized(); }},
        {u"hide", [] { hideAll(); }},
        {u"terminate", [this] { delegateAction ? delegateAction(u"terminate"_s) : QApplication::quit(); }},
    }};
    if (runInText(actionId, *editorWindow))
        return;
    for (const auto& row : rows)
        if (row.actionId == actionId)
            return row.run();
}

void EditorWindowController::windowWillClose()
{
    // First, so that a text that was being typed counts as the edit that it is.
    commitText();
    if (settings.autoCopy() && editorModel.undoCount() >= 1 && copyFinished())
        HUD::show(u"Copiada con tus anotaciones"_s, u"doc.on.clipboard.fill"_s);
    if (onClose)
        onClose();
}

} // namespace pintalux
