// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/Error.h"

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>
#include <QPromise>

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace pintalux {

/// Threads that do one thing after another, started when there is something to do; they stay.
///
/// Unlike the toolkit's pool it says when no thread can be made. One that serves the whole process is never
/// destroyed, as `static Worker& worker = *new Worker`: the end of the application waits for it.
class Worker {
public:
    /// Who sees to it that nothing is under way any more when the application object goes.
    enum class AtTheEnd { isAwaited, isSeenToByOwner };

    /// One thread works on what it is given in its order; more do so at the same time.
    explicit Worker(int mostThreads = 1, AtTheEnd atTheEnd = AtTheEnd::isAwaited);
    /// Waits until all is done.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Throws `std::system_error` when there is no thread and none can be made; then `work` is not done.
    void start(std::function<void()> work);
    /// Forgets what was not begun.
    void clear();
    void waitForDone();
    /// False when it is not so after the time.
    bool waitForDone(int milliseconds);

private:
    void run();
    bool isDone() const { return waiting.empty() && busy == 0; }

    const std::size_t most;
    const AtTheEnd end;
    std::mutex lock; ///< of all below
    std::condition_variable arrived;
    std::condition_variable done;
    std::deque<std::function<void()>> waiting;
    std::vector<std::thread> threads;
    std::size_t busy = 0;
    bool isClosing = false;
};

/// Threads for what need not follow in order, as many as there are processors.
Worker& sideWorker();

/// Runs `work` on a thread of the worker. The future always ends, and with nothing but a result or an
/// `Error`, also when no thread can be made for it; or without either when it is forgotten.
template <typename Work> auto runOn(Worker& worker, Work work)
{
    using Result = std::invoke_result_t<Work>;
    auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    auto future = promise->future();
    const auto fail = [promise] {
        promise->setException(std::make_exception_ptr(currentError()));
        promise->finish();
    };
    try {
        worker.start([promise, fail, work = std::move(work)]() mutable {
            try {
                promise->addResult(work());
                promise->finish();
            } catch (...) {
                fail();
            }
        });
    } catch (...) {
        fail();
    }
    return future;
}

/// Calls `handler` with the finished future on the thread of `context`, unless that is destroyed before. The
/// toolkit's own continuation with a context does not survive a future that finishes at the same moment.
template <typename T, typename Handler>
void whenFinished(const QFuture<T>& future, QObject* context, Handler handler)
{
    auto* watcher = new QFutureWatcher<T>(context);
    QObject::connect(
        watcher, &QFutureWatcherBase::finished, context, [watcher, handler = std::move(handler)]() mutable {
            watcher->deleteLater();
            handler(watcher->future());
        });
    watcher->setFuture(future);
}

} // namespace pintalux
