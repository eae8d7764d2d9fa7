// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace pintalux {

/// Makes every pixel of an RGB32 picture opaque, in place when nobody shares it. Display servers leave the
/// fourth byte as it happens to be; painting such a picture onto another would make holes.
void makeOpaque(QImage& image);

} // namespace pintalux
