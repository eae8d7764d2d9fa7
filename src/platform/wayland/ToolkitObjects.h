// SPDX-License-Identifier: MIT
#pragma once

struct wl_display;
struct wl_output;
struct wl_surface;
class QScreen;
class QWindow;

namespace pintalux::wayland {

/// What the toolkit has on its own connection to the compositor; null on other display systems.
///
/// It gives no public access to all of them, so this is the one place that uses its private headers, whose
/// meaning may change with any of its versions.

wl_display* toolkitDisplay();
wl_output* toolkitOutput(QScreen& screen);
/// Of a window that has its native window; another one after it was hidden.
wl_surface* toolkitSurface(QWindow& window);

/// True when the toolkit scales the surfaces of windows itself, each with a viewport of its own: there can
/// be only one. Newer toolkits do so where the compositor tells them fractional scales.
bool toolkitHasViewports(bool compositorTellsFractionalScale);

/// Waits until the compositor has done all that the toolkit asked it for, as taking windows away. Any thread.
void settleToolkit();

} // namespace pintalux::wayland
