#pragma once

namespace pintalux {

/// Keeps the memory of large pictures at hand after they are gone, for the next ones: pages that are made
/// anew cost more than what is drawn into them.
void keepFreeMemory();

/// Gives what is free in this thread's and the main thread's memory back to the system, and from then on
/// whatever becomes free.
void returnFreeMemory();

} // namespace pintalux
