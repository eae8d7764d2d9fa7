// SPDX-License-Identifier: MIT
#pragma once

#include "app/commandline/CommandLine.h"

namespace pintalux {

/// The renderer from the command line: draws the marks of a marks file on a picture and writes a PNG, or only
/// says whether both can be read. Needs no display.
namespace AnnotateCommand {

/// Does it and returns the process's exit status: 0, or 1 after a sentence on standard error. A failure
/// leaves no output file, and one that was there as it was.
int run(const CommandLine& commandLine);

} // namespace AnnotateCommand

} // namespace pintalux
