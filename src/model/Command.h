// SPDX-License-Identifier: MIT
#pragma once

#include "model/CaptureAction.h"
#include "platform/base/StringEnum.h"

#include <optional>
#include <variant>

namespace pintalux {

/// What a person can ask for in a menu, on the bar, by a key or over the session bus, besides a capture.
enum class Command {
    showAbout,
    showPreferences,
    openImage,
    revealFolder,
    openPermission,
    openWebsite,
    terminate,
    hide,
    minimize,
    close,
    saveAs,
    quickSave,
    insertImage,
    undo,
    redo,
    clear,
    cut,
    copy,
    paste,
    selectAll,
    duplicate,
    bringForward,
    sendBackward,
    deleteMark,
    pin,
    extractText,
    copyHoverColor,
};

/// Who carries a command out.
enum class CommandScope {
    program,
    editor, ///< the editor whose window has the focus
    text,   ///< what is being typed there
};

/// All there is to know of a command but how it is carried out, for which each scope has a table that must be
/// complete to compile.
struct CommandRow {
    Command value;
    QStringView rawValue; ///< its name on the session bus
    CommandScope scope;
    QStringView title; ///< in menus
    /// Within windows, as it is written: "⇧⌘S"; empty for none. One without ⌘ is the canvas's own, for it
    /// types in a text.
    QStringView key = u"";
    QStringView symbol = u"";   ///< name in the symbol set, empty for none
    QStringView help = u"";     ///< of its button, with %1 for the key; empty: the title and the key
    QStringView otherKey = u""; ///< works as well, and is not shown
};

inline constexpr std::array<CommandRow, 27> commandTable{{
    {Command::showAbout, u"showAbout", CommandScope::program, u"Acerca de Pintalux"},
    {Command::showPreferences, u"showPreferences", CommandScope::program, u"Ajustes…", u"⌘,"},
    {Command::openImage, u"openImage", CommandScope::program, u"Abrir imagen…", u"⌘O", u"photo"},
    {Command::revealFolder, u"revealFolder", CommandScope::program, u"Mostrar carpeta de capturas", u"",
        u"folder"},
    {Command::openPermission, u"openPermission", CommandScope::program,
        u"Conceder permiso de Grabación de pantalla…", u"", u"exclamationmark.triangle"},
    {Command::openWebsite, u"openWebsite", CommandScope::program, u""},
    {Command::terminate, u"terminate", CommandScope::program, u"Salir de Pintalux", u"⌘Q"},
    {Command::hide, u"hide", CommandScope::editor, u"Ocultar Pintalux", u"⌘H"},
    {Command::minimize, u"performMiniaturize", CommandScope::editor, u"Minimizar", u"⌘M"},
    {Command::close, u"performClose", CommandScope::editor, u"Cerrar", u"⌘W"},
    {Command::saveAs, u"editorSave", CommandScope::editor, u"Guardar como PNG…", u"⌘S",
        u"square.and.arrow.down", u"Guardar como… (%1)"},
    {Command::quickSave, u"editorQuickSave", CommandScope::editor, u"Guardar en la carpeta de capturas",
        u"⇧⌘S", u"tray.and.arrow.down"},
    {Command::insertImage, u"editorInsertImage", CommandScope::editor, u"Insertar imagen…", u"⇧⌘I",
        u"photo.badge.plus", u"Agregar imagen (%1) · también puedes pegarla con ⌘V o arrastrarla"},
    {Command::undo, u"editorUndo", CommandScope::editor, u"Deshacer", u"⌘Z", u"arrow.uturn.backward"},
    {Command::redo, u"editorRedo", CommandScope::editor, u"Rehacer", u"⇧⌘Z", u"arrow.uturn.forward", u"",
        u"⌘Y"},
    {Command::clear, u"editorClear", CommandScope::editor, u"Borrar todas las anotaciones", u"", u"trash"},
    {Command::cut, u"cut", CommandScope::text, u"Cortar", u"⌘X"},
    {Command::copy, u"copy", CommandScope::editor, u"Copiar", u"⌘C", u"doc.on.doc",
        u"Copiar al portapapeles (%1)"},
    {Command::paste, u"paste", CommandScope::editor, u"Pegar", u"⌘V", u"doc.on.clipboard"},
    {Command::selectAll, u"selectAll", CommandScope::text, u"Seleccionar todo", u"⌘A"},
    {Command::duplicate, u"editorDuplicate", CommandScope::editor, u"Duplicar", u"⌘D"},
    {Command::bringForward, u"editorBringForward", CommandScope::editor, u"Traer adelante", u"⇧⌘↑"},
    {Command::sendBackward, u"editorSendBackward", CommandScope::editor, u"Enviar atrás", u"⇧⌘↓"},
    {Command::deleteMark, u"editorDelete", CommandScope::editor, u"Eliminar", u"⌦"},
    {Command::pin, u"editorPin", CommandScope::editor, u"Fijar en pantalla, siempre visible", u"", u"pin"},
    {Command::extractText, u"editorExtractText", CommandScope::editor, u"Copiar el texto de la imagen (OCR)",
        u"", u"text.viewfinder"},
    {Command::copyHoverColor, u"editorCopyColor", CommandScope::editor,
        u"Color bajo el cursor. ⇧C o clic para copiarlo", u"", u"eyedropper"},
}};
constexpr const auto& enumTable(Command) { return commandTable; }

static_assert(isComplete<Command>());

inline QString symbol(Command command) { return enumRow(command).symbol.toString(); }

/// What a button that stands for the command says of it; `KeyLabel` makes its key readable.
QString help(Command command);

/// True when `rows`, each with a `command`, name every command of the scope once and none of another.
template <typename Rows> constexpr bool covers(CommandScope scope, const Rows& rows)
{
    for (const auto& known : commandTable) {
        const auto count
            = std::ranges::count_if(rows, [&](const auto& row) { return row.command == known.value; });
        if (count != (known.scope == scope ? 1 : 0))
            return false;
    }
    return true;
}

/// What the program itself can be asked for, by its menu or over the session bus.
using ProgramAction = std::variant<CaptureAction, Command>;

/// By its name on the bus; none for what is not the program's to do.
std::optional<ProgramAction> programActionNamed(QStringView name);
QString nameOf(const ProgramAction& action);

} // namespace pintalux
