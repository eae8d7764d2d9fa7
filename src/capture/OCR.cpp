#include "capture/OCR.h"

#include "app/HUD.h"
#include "platform/Error.h"
#include "platform/Worker.h"

#include <QCoreApplication>

#include <mutex>

namespace pintalux::OCR {

namespace {

/// Whoever reads, and the one thread on which it does.
class Reader {
public:
    Reader()
    {
        pool.setMaxThreadCount(1);
        pool.setExpiryTimeout(-1); // the engine is kept warm
    }
    ~Reader() { stop(); }

    QString read(const QImage& image)
    {
        const std::scoped_lock lock(oneAtATime);
        if (!recognizer)
            recognizer = makeTextRecognizer();
        return textOf(recognizer->recognize(image, stopped));
    }

    void replace(std::shared_ptr<TextRecognizer> other)
    {
        const std::scoped_lock lock(oneAtATime);
        recognizer = std::move(other);
    }

    /// Ends what is being read, forgets what waits and returns when the thread is idle.
    void stop()
    {
        stopped = true;
        pool.clear();
        pool.waitForDone();
        stopped = false;
    }

    QThreadPool pool;

private:
    std::mutex oneAtATime;
    std::shared_ptr<TextRecognizer> recognizer;
    std::atomic<bool> stopped = false;
};

Reader& reader()
{
    static Reader only;
    return only;
}

/// The thread must be idle before the application object goes, whose end its results would outlive.
void stopAtTheEnd()
{
    static bool promised = false;
    if (std::exchange(promised, true))
        return;
    qAddPostRoutine([] {
        reader().stop();
        promised = false;
    });
}

} // namespace

void recognize(const QImage& image, std::function<void(const std::optional<QString>&)> completion)
{
    stopAtTheEnd();
    const auto text = runOn(reader().pool, [image] { return reader().read(image); });
    whenFinished(text, QCoreApplication::instance(),
        [completion = std::move(completion)](const QFuture<QString>& read) {
            try {
                completion(read.result());
            } catch (const Error& error) {
                completion(std::nullopt);
                HUD::show(error.localizedDescription, u"exclamationmark.triangle"_qs);
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

void setRecognizer(std::shared_ptr<TextRecognizer> recognizer) { reader().replace(std::move(recognizer)); }

} // namespace pintalux::OCR
