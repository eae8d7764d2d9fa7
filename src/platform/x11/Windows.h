// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ScreenSource.h"

#include <xcb/xcb.h>

namespace pintalux::x11 {

class XcbConnection;

/// The applications' windows, front to back, by the hints of the window manager; without one that gives
/// hints, the named windows that the server itself shows.
QList<WindowInfo> windows(const XcbConnection& connection, const QList<ScreenInfo>& screens);

/// True for a window manager that paints its decorations onto the screen alone, as part of compositing: what
/// the frame's memory holds in their place is left over from other windows.
bool paintsDecorationsElsewhere(const XcbConnection& connection);

/// What of a window can be read, in device pixels of the desktop: with the decoration that the window manager
/// draws into the frame, without the shadow that it draws inside itself. Empty when the window is gone.
QRect visibleRect(const XcbConnection& connection, xcb_window_t window);

/// The topmost ancestor below the root: the window manager's frame, or the window itself. None when gone.
xcb_window_t frameWindow(const XcbConnection& connection, xcb_window_t window);

/// The whole of that ancestor in device pixels of the desktop: all that there is of a rolled-up window. Empty
/// when it is not shown.
QRect frameRect(const XcbConnection& connection, xcb_window_t window);

/// True when a window manager that gives and takes hints about windows runs.
bool hasWindowManager(const XcbConnection& connection);

/// The root's children, bottom-most first.
QList<xcb_window_t> topLevelWindows(const XcbConnection& connection);

} // namespace pintalux::x11
