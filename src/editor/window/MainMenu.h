// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorCommands.h"

#include <QMenuBar>

#include <memory>
#include <optional>

namespace pintalux {

class Menu;

/// The menu bar of the editor.
namespace MainMenu {

inline constexpr int barHeight = 28; ///< points

/// A menu bar with these menus, in the product's look, which calls `run` when a person chooses a row or
/// presses its key. Its actions work for the window that it is put into.
std::unique_ptr<QMenuBar> make(const RunCommand& run, QWidget* parent = nullptr);

/// What can be done with the selected mark: a menu that deletes itself when it has been closed.
Menu* makeMarkMenu(const EditorModel& model, const RunCommand& run, QWidget* parent);

/// The command that an action of it stands for; none for a separator and a menu's title.
std::optional<Command> commandOf(const QAction& action);

} // namespace MainMenu

} // namespace pintalux
