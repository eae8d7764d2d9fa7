// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ScreenSource.h"

#include <QStringList>

#include <atomic>
#include <deque>

namespace pintalux {

/// A desktop in memory for tests: a display at 1×, one at 2× to the right of it, and windows on both.
///
/// Everything may be changed before a capture starts. The pictures tell where they come from: see `colorAt`.
class FakeScreenSource : public ScreenSource {
public:
    FakeScreenSource();

    ShareableContent content;       ///< what is there
    std::deque<Error> failures;     ///< thrown by the next screenshots, one each, before they succeed
    std::deque<Error> listFailures; ///< thrown by the next requests for the content
    QPointF pointer{10, 10};
    std::atomic<bool> permission = true;
    bool grantsWhenAsked = false; ///< what `requestPermission` answers while there is none
    qint64 ownProcess = 1000;

    /// What was asked, in order: "content", "hide", "show", "screen NAME" and "window ID".
    QStringList log;
    int permissionRequests = 0;

    /// The colour of a native pixel of a display or window: differs from pixel to pixel and, in its blue
    /// component, from one display or window to the next.
    static QRgb colorAt(QPoint nativePixel, int blue);

    bool hasPermission() const override { return permission; }
    bool requestPermission() override;
    QPointF pointerLocation() const override { return pointer; }
    qint64 ownProcessId() const override { return ownProcess; }
    ShareableContent shareableContent(const QList<ToolkitScreen>& screens) override;
    std::unique_ptr<OwnWindowsHidden> hideOwnWindows() override;
    Screenshot screenshot(const ScreenInfo& screen) override;
    Screenshot screenshot(const WindowInfo& window) override;

private:
    void failAsScripted(std::deque<Error>& script);
};

} // namespace pintalux
