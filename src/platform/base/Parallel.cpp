// SPDX-License-Identifier: MIT
#include "platform/base/Parallel.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace pintalux {

int usefulThreads()
{
    static const int threads = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 8);
    return threads;
}

void parallelItems(int count, int threads, const std::function<std::function<void(int item)>()>& makeWorker)
{
    std::atomic<int> next = 0;
    std::exception_ptr failure;
    std::mutex failureLock;
    const auto work = [&] {
        try {
            const std::function<void(int)> worker = makeWorker();
            for (int item = next++; item < count; item = next++)
                worker(item);
        } catch (...) {
            next = count;
            const std::lock_guard guard(failureLock);
            if (!failure)
                failure = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> helpers;
        helpers.reserve(static_cast<std::size_t>(std::max(0, threads)));
        try {
            for (int helper = 1; helper < std::min(threads, count); ++helper)
                helpers.emplace_back(work);
        } catch (const std::system_error&) {
            // The system gives no more threads: those that there are do the work.
        }
        work();
    } // joins the helpers
    if (failure)
        std::rethrow_exception(failure);
}

void parallelRanges(int count, int fewest, const std::function<void(int first, int last)>& body)
{
    if (count <= 0)
        return;
    const int ranges = std::clamp(count / std::max(1, fewest), 1, usefulThreads());
    const auto bound = [&](int range) { return static_cast<int>(std::int64_t(count) * range / ranges); };
    parallelItems(ranges, ranges, [&] { return [&](int range) { body(bound(range), bound(range + 1)); }; });
}

} // namespace pintalux
