// SPDX-License-Identifier: MIT
#pragma once

namespace pintalux {

/// Gives memory that is free but kept for later back to the system, for when nothing large is to be expected
/// soon.
void returnFreeMemory();

} // namespace pintalux
