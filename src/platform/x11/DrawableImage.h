// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRect>

#include <xcb/xcb.h>

namespace pintalux::x11 {

class XcbConnection;

/// A part of a window or pixmap at native size, tagged sRGB: ARGB32_Premultiplied where its depth is 32,
/// else RGB32 with every pixel opaque. Throws `Error`, `temporaryFailure` when the server declines.
QImage drawableImage(
    const XcbConnection& connection, xcb_drawable_t drawable, xcb_visualid_t visual, const QRect& nativeRect);

} // namespace pintalux::x11
