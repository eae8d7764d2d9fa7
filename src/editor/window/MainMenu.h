// SPDX-License-Identifier: MIT
#pragma once

#include <QMenuBar>
#include <QString>
#include <QStringView>

#include <array>
#include <functional>
#include <memory>

namespace pintalux {

/// The menu bar of the editor and of the preferences, as a table.
namespace MainMenu {

/// Who carries out an action: the application's delegate, or the first that can of the focused view, its
/// window and the application.
enum class Target { delegate, responder };

struct Row {
    QStringView menu;
    QStringView title;    ///< empty for a separator
    QStringView actionId; ///< see the table
    QStringView key;      ///< portable text such as "Ctrl+Shift+S", empty for none
    Target target;
    QStringView symbol{};
};

inline constexpr int barHeight = 28; ///< points

/// Title of the first menu.
inline constexpr QStringView applicationMenu = u"Pintalux";
inline constexpr QStringView windowMenu = u"Ventana";

inline constexpr std::array<Row, 20> table{{
    {applicationMenu, u"Acerca de Pintalux", u"showAbout", u"", Target::delegate},
    {applicationMenu, u"", u"", u"", Target::responder},
    {applicationMenu, u"Ajustes…", u"showPreferences", u"Ctrl+,", Target::delegate},
    {applicationMenu, u"", u"", u"", Target::responder},
    {applicationMenu, u"Ocultar Pintalux", u"hide", u"Ctrl+H", Target::responder},
    {applicationMenu, u"Salir de Pintalux", u"terminate", u"Ctrl+Q", Target::responder},
    {u"Archivo", u"Abrir imagen…", u"openImage", u"Ctrl+O", Target::delegate, u"photo"},
    {u"Archivo", u"Guardar como PNG…", u"editorSave", u"Ctrl+S", Target::responder, u"square.and.arrow.down"},
    {u"Archivo", u"Guardar en la carpeta de capturas", u"editorQuickSave", u"Ctrl+Shift+S", Target::responder,
        u"tray.and.arrow.down"},
    {u"Archivo", u"Insertar imagen…", u"editorInsertImage", u"Ctrl+Shift+I", Target::responder,
        u"photo.badge.plus"},
    {u"Archivo", u"", u"", u"", Target::responder},
    {u"Archivo", u"Cerrar", u"performClose", u"Ctrl+W", Target::responder},
    {u"Edición", u"Deshacer", u"editorUndo", u"Ctrl+Z", Target::responder, u"arrow.uturn.backward"},
    {u"Edición", u"Rehacer", u"editorRedo", u"Ctrl+Shift+Z", Target::responder, u"arrow.uturn.forward"},
    {u"Edición", u"", u"", u"", Target::responder},
    {u"Edición", u"Cortar", u"cut", u"Ctrl+X", Target::responder},
    {u"Edición", u"Copiar", u"copy", u"Ctrl+C", Target::responder, u"doc.on.doc"},
    {u"Edición", u"Pegar", u"paste", u"Ctrl+V", Target::responder, u"doc.on.clipboard"},
    {u"Edición", u"Seleccionar todo", u"selectAll", u"Ctrl+A", Target::responder},
    {windowMenu, u"Minimizar", u"performMiniaturize", u"Ctrl+M", Target::responder},
}};

/// Called with the action's identifier when a person chooses a row or presses its key.
using Trigger = std::function<void(const QString& actionId, Target target)>;

/// A menu bar with these menus, in the product's look. Its actions work for the window that it is put into;
/// each action's `data()` is its identifier.
std::unique_ptr<QMenuBar> make(const Trigger& trigger, QWidget* parent = nullptr);

} // namespace MainMenu

} // namespace pintalux
