// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wayland/Outputs.h"

#include <QImage>

namespace pintalux::wayland {

/// The upright pixels of an output of a compositor that gives them to any program (wlr-screencopy): RGB32 and
/// opaque, tagged sRGB. Throws `Error`.
QImage screencopy(const Connection& connection, const Output& output);

} // namespace pintalux::wayland
