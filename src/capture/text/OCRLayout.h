// SPDX-License-Identifier: MIT
#pragma once

#include "capture/text/TextRecognizer.h"

namespace pintalux {

/// From words with boxes to lines of text.
namespace OCRLayout {

/// The text of the observations, along a line from left to right, lines from top to bottom: words separated
/// by a space, lines by a line feed, no white space around it. Observations without text are left out.
QString textOf(const QList<TextObservation>& observations);

} // namespace OCRLayout

} // namespace pintalux
