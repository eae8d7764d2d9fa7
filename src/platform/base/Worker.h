// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>
#include <QPromise>
#include <QThreadPool>

#include <exception>
#include <memory>
#include <type_traits>
#include <utility>

namespace pintalux {

/// Runs `work` on a thread of the pool; whatever it throws reaches the future's reader with its own type.
template <typename Work> auto runOn(QThreadPool& pool, Work work)
{
    using Result = std::invoke_result_t<Work>;
    auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    auto future = promise->future();
    pool.start([promise, work = std::move(work)]() mutable {
        try {
            promise->addResult(work());
        } catch (...) {
            promise->setException(std::current_exception());
        }
        promise->finish();
    });
    return future;
}

/// A future that has its result already.
template <typename T> QFuture<T> readyFuture(T value)
{
    QPromise<T> promise;
    promise.start();
    promise.addResult(std::move(value));
    promise.finish();
    return promise.future();
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
