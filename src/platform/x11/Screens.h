// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ScreenSource.h"

namespace pintalux::x11 {

class XcbConnection;

/// The server's monitors, each matched by name with the toolkit's screen; the primary one first.
QList<ScreenInfo> screens(const XcbConnection& connection, const QList<ToolkitScreen>& toolkitScreens);

/// The screen that holds most of a rectangle of device pixels, the first one when none does; null without
/// screens.
const ScreenInfo* screenOf(const QRect& nativeRect, const QList<ScreenInfo>& screens);

} // namespace pintalux::x11
