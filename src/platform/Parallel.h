#pragma once

#include <functional>

namespace pintalux {

/// How many threads a computation may use: the processors there are, at most eight.
int usefulThreads();

/// Calls `body(item)` once for every item from 0 to `count - 1`, on at most `threads` threads of which the
/// caller is one, and returns when all are done. Whoever is free takes the next item.
///
/// The first exception that a body throws stops the handing out of items and is thrown again here.
void parallelItems(int count, int threads, const std::function<void(int item)>& body);

/// Cuts 0 … `count` into one consecutive range per thread and calls `body(first, last)` for each, `last`
/// excluded. A thread is started only when every range has at least `fewest` items: starting one costs
/// some 30 µs.
void parallelRanges(int count, int fewest, const std::function<void(int first, int last)>& body);

} // namespace pintalux
