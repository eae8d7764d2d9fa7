// SPDX-License-Identifier: MIT
#pragma once

#include "app/CaptureJob.h"

#include <functional>
#include <memory>
#include <optional>

namespace pintalux {

/// Captures for another process, over the session bus.
///
/// The caller hands in an open file, into which the picture (a PNG) or the text is written before the call
/// returns what it is: "image/png" or "text/plain". A person who cancels and whatever goes wrong are errors
/// of the bus, `…Error.Cancelled` and `…Error.Failed`, the latter with a Spanish sentence. When the caller
/// leaves the bus meanwhile, its selection leaves the screen.
class CaptureBus {
public:
    /// Starts a capture for somebody; what it returns cancels it, and is empty where nothing can be started
    /// now.
    using Start = std::function<std::function<void()>(
        CaptureAction action, const QString& screen, const CaptureJob::Done& done)>;

    /// Answers at the path of the program's object, as long as it lives. Without a bus nobody can ask.
    explicit CaptureBus(Start start);
    ~CaptureBus();

    /// Asks the running program and waits for the person as long as it takes; none when no program runs.
    static std::optional<CaptureAnswer> ask(CaptureAction action, const QString& screen);

private:
    std::unique_ptr<QObject> object;
};

} // namespace pintalux
