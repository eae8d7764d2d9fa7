// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

namespace pintalux::x11 {

/// What of a monitor is left by the edges that windows reserve for themselves (`_NET_WM_STRUT_PARTIAL`) or,
/// where the desktop tells the work area of each monitor (`_GTK_WORKAREAS_D…`), that area. Device pixels of
/// the desktop. The whole monitor without the toolkit's connection.
QRect freeOfStruts(const QRect& monitor);

} // namespace pintalux::x11
