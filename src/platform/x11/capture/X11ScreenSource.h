// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ScreenSource.h"

#include <QByteArray>

namespace pintalux {

namespace x11 {
class XcbConnection;
}

/// Screens and windows of an X server, over a connection of its own that is made when first needed and
/// made anew after it broke. X asks nobody for permission.
class X11ScreenSource : public ScreenSource {
public:
    /// An empty name means the display of the environment.
    explicit X11ScreenSource(QByteArray displayName = {});
    ~X11ScreenSource() override;

    bool hasPermission() const override { return true; }
    bool requestPermission() override { return true; }
    QPointF pointerLocation() const override;
    qint64 ownProcessId() const override;

    ShareableContent shareableContent(const QList<ToolkitScreen>& screens) override;
    std::unique_ptr<OwnWindowsHidden> hideOwnWindows() override;
    Screenshot screenshot(const ScreenInfo& screen) override;
    Screenshot screenshot(const WindowInfo& window) override;

private:
    const x11::XcbConnection& connect();

    QByteArray displayName;
    std::shared_ptr<const x11::XcbConnection> connection;
};

} // namespace pintalux
