// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

class QWidget;

namespace pintalux {

class DirectSurface;

namespace x11 {

/// The surface of a window that has its native window already, in bands of memory shared with the server.
/// Null without such memory or where the window's pixels are not those of a QImage.
std::unique_ptr<DirectSurface> makeBandSurface(const QWidget& window);

} // namespace x11

} // namespace pintalux
