// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace pintalux {

/// How many threads a computation may use: the processors there are, at most eight.
int usefulThreads();

/// Has every item from 0 to `count - 1` worked on once, by at most `threads` threads of which the caller is
/// one, and returns when all are done. Each thread makes a worker of its own, which may keep what it needs
/// from item to item; whoever is free takes the next one.
///
/// The first exception that a worker throws stops the handing out of items and is thrown again here.
void parallelItems(int count, int threads, const std::function<std::function<void(int item)>()>& makeWorker);

/// Cuts 0 … `count` into one consecutive range per thread and calls `body(first, last)` for each, `last`
/// excluded. A thread is started only when every range has at least `fewest` items: starting one costs
/// some 30 µs.
void parallelRanges(int count, int fewest, const std::function<void(int first, int last)>& body);

} // namespace pintalux
