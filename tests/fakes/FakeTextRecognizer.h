// SPDX-License-Identifier: MIT
#pragma once

#include "capture/text/TextRecognizer.h"
#include "platform/base/Error.h"

#include <QThread>

#include <optional>

namespace pintalux {

/// A recogniser in memory for tests: finds in every picture what it was given.
class FakeTextRecognizer : public TextRecognizer {
public:
    QList<TextObservation> found;
    std::optional<Error> failure;
    bool untilCancelled = false;  ///< reads on until it is told to stop
    std::atomic<int> started = 0; ///< pictures begun

    QList<TextObservation> recognize(const QImage&, const std::atomic<bool>& cancelled) override
    {
        ++started;
        while (untilCancelled && !cancelled)
            QThread::msleep(1);
        if (failure)
            throw Error(*failure);
        return found;
    }
};

} // namespace pintalux
