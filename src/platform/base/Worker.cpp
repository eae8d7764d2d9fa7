// SPDX-License-Identifier: MIT
#include "platform/base/Worker.h"

#include "platform/base/Parallel.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <system_error>

namespace pintalux {

namespace {

/// Those for which the end of the application waits.
struct Awaited {
    std::mutex lock;
    std::vector<Worker*> workers;
    bool isPromised = false; ///< to the application object there is now
};

Awaited& awaited()
{
    static Awaited& all = *new Awaited;
    return all;
}

void awaitAll()
{
    std::vector<Worker*> workers;
    {
        const std::scoped_lock guard(awaited().lock);
        workers = awaited().workers;
        awaited().isPromised = false;
    }
    for (auto* worker : workers)
        worker->waitForDone();
}

void promiseToAwait()
{
    const std::scoped_lock guard(awaited().lock);
    if (QCoreApplication::instance() && !std::exchange(awaited().isPromised, true))
        qAddPostRoutine(awaitAll);
}

} // namespace

Worker::Worker(int mostThreads, AtTheEnd atTheEnd)
    : most(std::size_t(std::max(1, mostThreads)))
    , end(atTheEnd)
{
    if (end != AtTheEnd::isAwaited)
        return;
    const std::scoped_lock guard(awaited().lock);
    awaited().workers.push_back(this);
}

Worker::~Worker()
{
    {
        const std::scoped_lock guard(awaited().lock);
        std::erase(awaited().workers, this);
    }
    waitForDone();
    {
        const std::scoped_lock guard(lock);
        isClosing = true;
    }
    arrived.notify_all();
    for (auto& thread : threads)
        thread.join();
}

void Worker::start(std::function<void()> work)
{
    if (end == AtTheEnd::isAwaited)
        promiseToAwait();
    const std::scoped_lock guard(lock);
    waiting.push_back(std::move(work));
    const bool isWanted = busy + waiting.size() > threads.size() && threads.size() < most;
    try {
        if (isWanted)
            threads.emplace_back([this] { run(); });
    } catch (const std::system_error&) {
        if (threads.empty()) {
            waiting.pop_back();
            throw;
        }
    }
    arrived.notify_one();
}

void Worker::run()
{
    std::unique_lock guard(lock);
    for (;;) {
        arrived.wait(guard, [this] { return isClosing || !waiting.empty(); });
        if (waiting.empty())
            return;
        auto work = std::move(waiting.front());
        waiting.pop_front();
        ++busy;
        guard.unlock();
        work();
        work = nullptr; // what it holds is part of what others wait for
        guard.lock();
        --busy;
        if (isDone())
            done.notify_all();
    }
}

void Worker::clear()
{
    std::deque<std::function<void()>> forgotten; // destroyed when others may use the lock
    const std::scoped_lock guard(lock);
    forgotten.swap(waiting);
    if (isDone())
        done.notify_all();
}

void Worker::waitForDone()
{
    std::unique_lock guard(lock);
    done.wait(guard, [this] { return isDone(); });
}

bool Worker::waitForDone(int milliseconds)
{
    std::unique_lock guard(lock);
    return done.wait_for(guard, std::chrono::milliseconds(milliseconds), [this] { return isDone(); });
}

Worker& sideWorker()
{
    static Worker& worker = *new Worker(usefulThreads());
    return worker;
}

} // namespace pintalux
