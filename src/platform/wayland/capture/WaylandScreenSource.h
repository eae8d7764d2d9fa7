// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ScreenSource.h"
#include "platform/wayland/Outputs.h"

namespace pintalux {

/// Screens of a Wayland compositor. It tells nobody of other programs' windows, nor where the pointer is
/// outside of our own.
///
/// Each capture has a connection of its own, which costs less than a millisecond, so that nothing of an
/// output that went or of a compositor that was started anew stays behind.
class WaylandScreenSource : public ScreenSource {
public:
    /// Upright pixels of an output, RGB32 and opaque, tagged sRGB. On the worker thread; throws `Error`.
    using TakePicture = std::function<QImage(const wayland::Connection&, const wayland::Output&)>;

    explicit WaylandScreenSource(TakePicture takePicture);
    ~WaylandScreenSource() override;

    bool hasPermission() const override { return true; }
    bool requestPermission() override { return true; }
    /// The last that our own windows were told, else the main screen's corner.
    QPointF pointerLocation() const override;
    qint64 ownProcessId() const override;

    ShareableContent shareableContent(const QList<ToolkitScreen>& screens) override;
    /// Those that were taken away are gone then. The others are in the picture: the protocols have nothing to
    /// keep a window out of it.
    std::unique_ptr<OwnWindowsHidden> hideOwnWindows() override;
    Screenshot screenshot(const ScreenInfo& screen) override;
    Screenshot screenshot(const WindowInfo& window) override;

private:
    struct Session;

    Session& connect();

    TakePicture takePicture;
    std::unique_ptr<Session> session;
};

} // namespace pintalux
