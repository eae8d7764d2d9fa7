// SPDX-License-Identifier: MIT
#include "editor/window/EditorWindowController.h"

#include "app/icon/AppIcon.h"
#include "app/messages/HUD.h"
#include "controls/Menu.h"
#include "editor/canvas/CanvasView.h"
#include "editor/window/EditorWindowLayout.h"
#include "editor/window/MainMenu.h"
#include "platform/desktop/ToolkitScreens.h"
#include "platform/desktop/WindowSystem.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

/// What carries out each command of an editor.
struct Deed {
    Command command;
    void (EditorWindowController::*run)();
};
constexpr std::array<Deed, 18> deeds{{
    {Command::hide, &EditorWindowController::hide},
    {Command::minimize, &EditorWindowController::minimize},
    {Command::close, &EditorWindowController::close},
    {Command::saveAs, &EditorWindowController::saveAs},
    {Command::quickSave, &EditorWindowController::quickSave},
    {Command::insertImage, &EditorWindowController::insertImage},
    {Command::undo, &EditorWindowController::undo},
    {Command::redo, &EditorWindowController::redo},
    {Command::clear, &EditorWindowController::clear},
    {Command::copy, &EditorWindowController::copy},
    {Command::paste, &EditorWindowController::paste},
    {Command::duplicate, &EditorWindowController::duplicate},
    {Command::bringForward, &EditorWindowController::bringForward},
    {Command::sendBackward, &EditorWindowController::sendBackward},
    {Command::deleteMark, &EditorWindowController::deleteMark},
    {Command::pin, &EditorWindowController::pin},
    {Command::extractText, &EditorWindowController::extractText},
    {Command::copyHoverColor, &EditorWindowController::copyHoverColor},
}};
static_assert(covers(CommandScope::editor, deeds), "a command of the editor's that nothing carries out");

/// The key by which a text is asked for a command that it knows too.
struct TextKey {
    Command command;
    Qt::Key key;
};
constexpr std::array<TextKey, 4> textKeys{{
    {Command::cut, Qt::Key_X},
    {Command::copy, Qt::Key_C},
    {Command::paste, Qt::Key_V},
    {Command::selectAll, Qt::Key_A},
}};

/// The view with the focus, if it is one in which text is typed.
QWidget* focusedTextView(const QWidget& window)
{
    auto* view = QApplication::focusWidget();
    const bool takesText
        = view && window.isAncestorOf(view) && view->testAttribute(Qt::WA_InputMethodEnabled);
    return takesText ? view : nullptr;
}

/// Carries out the command in the text that is being typed; false when none is, or it is none of a text's.
bool runInText(Command command, const QWidget& window)
{
    auto* view = focusedTextView(window);
    const auto row = std::ranges::find(textKeys, command, &TextKey::command);
    if (!view || row == textKeys.end())
        return false;
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent key(type, row->key, Qt::ControlModifier);
        QCoreApplication::sendEvent(view, &key);
    }
    return true;
}

} // namespace

EditorWindowController::EditorWindowController(
    const CaptureResult& shot, Settings& store, RunCommand programCommand)
    : editorModel(shot, store)
    , settings(store)
    , program(std::move(programCommand))
    , editorWindow(std::make_unique<EditorWindow>(
          editorModel, [this](Command command) { run(command); },
          [this](QWidget& source) { dragOut(source); }))
{
    editorWindow->setWindowIcon(AppIcon::windowIcon());
    editorWindow->setWillClose([this] { windowWillClose(); });
    makeMenuBar();
    connect(&canvas(), &CanvasView::markMenuRequested, this, [this](QPoint screenPoint) {
        const auto runHere = [this](Command command) { run(command); };
        MainMenu::makeMarkMenu(editorModel, runHere, editorWindow.get())->popUpAt(screenPoint);
    });
    const auto visible = WindowSystem::current().visibleFrame(*screenUnderPointer());
    auto size = EditorWindowLayout::contentSize(QSizeF(shot.image.size()) / shot.pixelScale, visible.size());
    size.rheight() += editorWindow->menuBarHeight(); // else a capture that fits would be shown smaller
    editorWindow->resize(size);
    editorWindow->move(EditorWindowLayout::windowPosition(EditorWindowLayout::framed(size), visible, {}));
    editorWindow->applyPaletteLayout(false);
}

EditorWindowController::~EditorWindowController() = default;

void EditorWindowController::makeMenuBar()
{
    auto bar = MainMenu::make([this](Command command) { runFromMenu(command); });
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
        const auto command = MainMenu::commandOf(*row);
        if (!command)
            continue;
        // What is being typed is finished by undoing, which makes it the step that is undone.
        const bool isOfText = enumRow(*command).scope == CommandScope::text;
        const bool usesText = isOfText || *command == Command::undo;
        row->setEnabled((typing && usesText) || (!isOfText && isPossible(*command, editorModel)));
    }
}

void EditorWindowController::runFromMenu(Command command)
{
    if (!runInText(command, *editorWindow))
        run(command);
}

void EditorWindowController::run(Command command)
{
    switch (enumRow(command).scope) {
    case CommandScope::program:
        return program(command);
    case CommandScope::editor:
        return (this->*std::ranges::find(deeds, command, &Deed::command)->run)();
    case CommandScope::text:
        break; // there is none
    }
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
