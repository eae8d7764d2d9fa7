#pragma once

#include <QFuture>
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

} // namespace pintalux
