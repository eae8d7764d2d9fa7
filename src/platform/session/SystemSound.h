// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace pintalux {

/// The program's one sound: a short, bright "tink".
namespace SystemSound {

/// Starts playing it and returns at once. Silence (no sound server, no sound card, muted) is no error.
void play();

/// The sound as a WAV file: mono, 16 bits, 44 100 samples a second.
QByteArray wave();

} // namespace SystemSound

} // namespace pintalux
