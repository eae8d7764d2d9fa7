// SPDX-License-Identifier: MIT
#include "platform/base/Worker.h"

#include "platform/base/Parallel.h"

#include <pthread.h>

namespace {

/// While it lives no thread can be made: the system has no room for its stack.
class WithoutThreads {
public:
    WithoutThreads()
    {
        pthread_getattr_default_np(&before);
        pthread_attr_t impossible;
        pthread_attr_init(&impossible);
        pthread_attr_setstacksize(&impossible, std::size_t(1) << 46);
        pthread_setattr_default_np(&impossible);
        pthread_attr_destroy(&impossible);
    }
    WithoutThreads(const WithoutThreads&) = delete;
    WithoutThreads& operator=(const WithoutThreads&) = delete;
    ~WithoutThreads()
    {
        pthread_setattr_default_np(&before);
        pthread_attr_destroy(&before);
    }

private:
    pthread_attr_t before;
};

template <typename T> QString failureOf(QFuture<T> future)
{
    try {
        future.takeResult();
    } catch (const Error& error) {
        return error.localizedDescription;
    }
    return {};
}

} // namespace

TEST(Workers, AThreadThatCannotBeMadeIsAnErrorAndTheNextTimeItWorks)
{
    Worker worker;
    {
        const WithoutThreads none;
        const auto future = runOn(worker, [] { return 1; });
        ASSERT_TRUE(future.isFinished()) << "it would never end";
        EXPECT_EQ(failureOf(future), u"El sistema no tiene recursos para hacerlo ahora.");
    }
    EXPECT_EQ(runOn(worker, [] { return 2; }).takeResult(), 2);
    const WithoutThreads none;
    EXPECT_EQ(runOn(worker, [] { return 3; }).takeResult(), 3) << "its thread is there already";
}

TEST(Workers, WhateverIsThrownCanBeTold)
{
    Worker worker;
    const auto memory = runOn(worker, []() -> int { throw std::bad_alloc(); });
    EXPECT_EQ(failureOf(memory), u"No hay memoria suficiente.");
    const auto own = runOn(worker, []() -> int { throw Error(QString(), 7, QStringLiteral("Así.")); });
    EXPECT_EQ(failureOf(own), u"Así.");
}

TEST(Workers, OneThreadKeepsTheOrderAndManyWorkAtTheSameTime)
{
    Worker one;
    std::vector<int> order;
    for (int number = 0; number < 50; ++number)
        runOn(one, [&order, number] { return order.emplace_back(number); });
    one.waitForDone();
    for (int number = 0; number < 50; ++number)
        EXPECT_EQ(order.at(std::size_t(number)), number);

    Worker two(2);
    QSemaphore first, second;
    const auto a = runOn(two, [&] {
        first.release();
        return second.tryAcquire(1, 10'000);
    });
    const auto b = runOn(two, [&] {
        second.release();
        return first.tryAcquire(1, 10'000);
    });
    EXPECT_TRUE(a.result() && b.result());
}

TEST(Workers, WaitingEndsWithTheWorkAndForgottenWorkIsCancelled)
{
    auto worker = std::make_unique<Worker>();
    QSemaphore begun, go;
    std::atomic<int> done = 0;
    runOn(*worker, [&] {
        begun.release();
        go.acquire();
        return ++done;
    });
    const auto forgotten = runOn(*worker, [&] { return done = 100; });
    begun.acquire();
    EXPECT_FALSE(worker->waitForDone(1));
    worker->clear();
    EXPECT_TRUE(forgotten.isCanceled());
    go.release();
    worker.reset();
    EXPECT_EQ(done, 1);
}

TEST(Workers, SharedWorkIsDoneByTheThreadsThatThereAre)
{
    const WithoutThreads none;
    std::atomic<int> items = 0;
    parallelItems(100, 4, [&] { return [&](int) { ++items; }; });
    EXPECT_EQ(items, 100);
}
