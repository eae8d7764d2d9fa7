// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <xcb/xcb.h>

namespace pintalux::x11 {

/// What of a monitor is left by the edges that windows reserve for themselves (`_NET_WM_STRUT_PARTIAL`) or,
/// where the desktop tells the work area of each monitor (`_GTK_WORKAREAS_D…`), that area. Device pixels of
/// the desktop.
QRect freeOfStruts(xcb_connection_t* connection, const QRect& monitor);

} // namespace pintalux::x11
