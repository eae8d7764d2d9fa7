// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace pintalux {

/// True for a JPEG, GIF, BMP or XBM file that ends before its first picture does. Their decoders do not mind:
/// they fill what is missing with some colour or leave it empty, and a person would take that for the
/// picture.
bool isCutOff(const QByteArray& bytes);

} // namespace pintalux
