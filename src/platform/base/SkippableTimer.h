// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>

#include <chrono>
#include <optional>

namespace pintalux {

/// A single-shot timer for what lasts seconds by design, as a message on the screen: tests let its time pass
/// at once. Main thread only.
class SkippableTimer : public QTimer {
public:
    explicit SkippableTimer(QObject* parent = nullptr);
    ~SkippableTimer() override;

    /// Ends the running one that would end first, as if its time were over, and tells how long it was to
    /// last; none when no one runs. For tests.
    static std::optional<std::chrono::milliseconds> skipNext();
};

} // namespace pintalux
