#pragma once

#include <QByteArray>

namespace pintalux {

/// True for a JPEG or GIF file that ends before its first picture does. Their decoders do not mind: they fill
/// what is missing with grey or leave it empty, and a person would take that for the picture.
bool isCutOff(const QByteArray& bytes);

} // namespace pintalux
