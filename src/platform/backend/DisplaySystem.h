// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/HotKeyBackend.h"
#include "platform/desktop/ScreenSource.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/desktop/Workspace.h"

#include <QString>

#include <memory>
#include <optional>

namespace pintalux {

/// The display system that shows the program's windows: the one place that chooses it and knows which it is.
namespace DisplaySystem {

/// Decides for the toolkit how it shows windows, unless somebody has done so already. Before the application
/// object is made.
///
/// What the session's compositor offers decides, never a desktop's name: natively on Wayland where our
/// windows can be parts of the desktop, else through the session's X server; natively also where there is
/// none.
void choose();

/// Why no window can be shown, as a Spanish sentence; none when a display server answers.
///
/// The toolkit ends the process when there is no server, so whoever needs one asks here first.
std::optional<QString> problem();

/// The back ends of the display system that runs; where it lacks one, a stand-in that says so.
std::unique_ptr<WindowSystem> makeWindowSystem();
std::unique_ptr<ScreenSource> makeScreenSource();
std::unique_ptr<HotKeyBackend> makeHotKeyBackend();
std::unique_ptr<Workspace> makeWorkspace();

} // namespace DisplaySystem

} // namespace pintalux
