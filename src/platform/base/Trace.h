// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

/// Milestones of the program's own speed, one line each on standard error, for whoever asked with `--trace`.
namespace pintalux::Trace {

void enable();

/// Starts the clock: a person has just asked for something.
void begin(QStringView what);

/// Writes how long ago that was. Nothing when tracing is off.
void mark(QStringView milestone);

} // namespace pintalux::Trace
