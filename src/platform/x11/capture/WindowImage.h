// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <xcb/xcb.h>

namespace pintalux::x11 {

class XcbConnection;

/// The picture of one window at native size, with its decoration and without its shadow, whole even where
/// others cover it. Throws `Error` when the window is gone or not shown.
QImage windowImage(const XcbConnection& connection, xcb_window_t window);

} // namespace pintalux::x11
