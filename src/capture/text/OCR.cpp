// SPDX-License-Identifier: MIT
#include "capture/text/OCR.h"

#include "capture/text/OCRLayout.h"
#include "platform/base/ForeignCall.h"
#include "platform/base/Memory.h"
#include "platform/base/SkippableTimer.h"
#include "platform/base/Worker.h"

#include <QCoreApplication>
#include <QPointer>

#include <mutex>

using namespace Qt::StringLiterals;

namespace pintalux::OCR {

namespace {

/// How long the engine is kept warm for the next picture.
constexpr int quietMilliseconds = 30'000;

/// How long the program's end waits for a reading that was asked to stop. Looking for the lines of a large
/// page cannot be interrupted and may take seconds.
constexpr int patienceMilliseconds = 300;

/// Whoever reads, and the one thread on which it does.
class Reader {
public:
    QString read(const QImage& image)
    {
        const std::scoped_lock lock(oneAtATime);
        if (!recognizer)
            recognizer = makeTextRecognizer();
        return OCRLayout::textOf(recognizer->recognize(image, stopped));
    }

    void replace(std::shared_ptr<TextRecognizer> other)
    {
        const std::scoped_lock lock(oneAtATime);
        recognizer = std::move(other);
    }

    /// Lets the engine and its languages go, after what is still to be read. The next picture loads them
    /// anew.
    void rest()
    {
        thread.start([this] {
            replace(nullptr);
            returnFreeMemory();
        });
    }

    /// Ends what is being read and forgets what waits. True once the thread is idle; false when it is within
    /// the library and does not come back in time, and then it never will.
    bool stop()
    {
        constexpr int stepMilliseconds = 10;
        stopped = true;
        thread.clear();
        bool isIdle = thread.waitForDone(patienceMilliseconds);
        while (!isIdle && !ForeignCall::cutOff())
            isIdle = thread.waitForDone(stepMilliseconds);
        stopped = !isIdle;
        return isIdle;
    }

    Worker thread{1, Worker::AtTheEnd::isSeenToByOwner}; ///< one, as an engine is used on one

private:
    std::mutex oneAtATime;
    std::shared_ptr<TextRecognizer> recognizer;
    std::atomic<bool> stopped = false;
};

Reader& reader()
{
    // Never destroyed: the recognition library, loaded later, is torn down before it.
    static Reader* const only = new Reader;
    return *only;
}

bool stillReading = false;

/// Before the application object goes: what the thread uses of the toolkit would not outlive it.
void stopAtTheEnd()
{
    static bool promised = false;
    if (std::exchange(promised, true))
        return;
    qAddPostRoutine([] {
        stillReading = !reader().stop();
        promised = false;
    });
}

Presenter presenter;

/// Tells that reading goes on when it takes longer than a person would wait without a sign.
class Patience {
public:
    static void begin()
    {
        if (++underWay == 1)
            wait(signMilliseconds);
    }

    /// Before the result is told, whose message takes the sign's place.
    static void end()
    {
        if (presenter.ended)
            presenter.ended();
        if (--underWay > 0)
            wait(nextSignMilliseconds);
        else if (timer)
            timer->stop();
    }

private:
    static constexpr int signMilliseconds = 1000;
    static constexpr int nextSignMilliseconds = 3000; ///< after the message of a picture read before

    static void wait(int milliseconds)
    {
        if (!timer) {
            timer = new SkippableTimer(QCoreApplication::instance());
            QObject::connect(timer, &SkippableTimer::timeout, [] {
                if (presenter.takesLong)
                    presenter.takesLong();
            });
        }
        timer->start(milliseconds);
    }

    static inline int underWay = 0; ///< pictures that are read or wait for it
    static inline QPointer<SkippableTimer> timer;
};

/// From now on the engine has nothing to do. It holds some 70 MB, too much for a program that waits in the
/// tray.
void beginQuietTime()
{
    static QPointer<SkippableTimer> quiet;
    if (!quiet) {
        quiet = new SkippableTimer(QCoreApplication::instance());
        quiet->setInterval(quietMilliseconds);
        QObject::connect(quiet, &SkippableTimer::timeout, [] { reader().rest(); });
    }
    quiet->start();
}

} // namespace

void recognize(const QImage& image, std::function<void(const std::optional<QString>&)> completion)
{
    stopAtTheEnd();
    Patience::begin();
    const auto text = runOn(reader().thread, [image] { return reader().read(image); });
    whenFinished(text, QCoreApplication::instance(),
        [completion = std::move(completion)](const QFuture<QString>& read) {
            beginQuietTime();
            Patience::end();
            try {
                completion(read.result());
            } catch (const Error& error) {
                completion(std::nullopt);
                if (presenter.failed)
                    presenter.failed(error);
            }
        });
}

std::optional<QString> recognizeSync(const QImage& image)
{
    try {
        return reader().read(image);
    } catch (const Error&) {
        return std::nullopt;
    }
}

void setPresenter(Presenter handedIn) { presenter = std::move(handedIn); }

bool isStillReading() { return stillReading; }

void setRecognizer(std::shared_ptr<TextRecognizer> recognizer) { reader().replace(std::move(recognizer)); }

} // namespace pintalux::OCR
