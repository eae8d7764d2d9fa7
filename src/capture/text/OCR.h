// SPDX-License-Identifier: MIT
#pragma once

#include "capture/text/TextRecognizer.h"
#include "platform/base/Error.h"

#include <functional>
#include <optional>

namespace pintalux {

/// Reads the text in a picture, in reading order: one line of the result per visual line.
namespace OCR {

/// Recognises on a worker thread; `completion` runs later on the main thread with the text, empty when the
/// picture has none, or with nothing when recognising failed. Never calls back once the program ends.
void recognize(const QImage& image, std::function<void(const std::optional<QString>&)> completion);

/// The same, blocking the calling thread; never call it on the main thread with a window up.
std::optional<QString> recognizeSync(const QImage& image);

/// What a person is shown of a reading, handed in by the program. Called on the main thread.
struct Presenter {
    /// One has gone on for a second: longer than a person waits without a sign.
    std::function<void()> takesLong;
    /// One has ended, before its result is told.
    std::function<void()> ended;
    /// One has failed, as where this machine lacks what it takes; after its completion, so that the reason
    /// stands in place of whatever that has shown.
    std::function<void(const Error&)> failed;
};
void setPresenter(Presenter presenter);

/// True after the application's end when a reading goes on that could not be stopped in a moment. Whoever
/// ends the process then leaves without waiting for its threads.
bool isStillReading();

/// Uses `recognizer` from now on; none stands for the machine's own. For tests.
void setRecognizer(std::shared_ptr<TextRecognizer> recognizer);

} // namespace OCR

} // namespace pintalux
