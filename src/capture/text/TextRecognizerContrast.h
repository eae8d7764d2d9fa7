// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace pintalux {

/// The picture as a recogniser of printed pages likes it: grey, dark text on white whatever the colours were,
/// with letters large enough. It shows the same section as `image`, in more pixels where text is small.
QImage preparedForReading(const QImage& image);

} // namespace pintalux
