// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSize>

namespace pintalux {

/// A new image whose pixels are undefined. Null when the size is empty or there is no memory for it.
///
/// The system hands out memory page by page, which for a whole screen takes longer than drawing it. A large
/// image asks for large pages instead; where there are none it is an ordinary one.
QImage newImage(const QSize& size, QImage::Format format);

/// The same with all pixels zero.
QImage clearedImage(const QSize& size, QImage::Format format);

} // namespace pintalux
