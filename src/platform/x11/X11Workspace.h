// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/SystemWorkspace.h"

#include <QByteArray>

namespace pintalux {

namespace x11 {
class XcbConnection;
}

/// Other programs' windows by the hints of the window manager; without one that gives hints, by the server's
/// own focus. Over a connection of its own that is made when first needed and made anew after it broke.
class X11Workspace : public SystemWorkspace {
public:
    /// An empty name means the display of the environment.
    explicit X11Workspace(QByteArray displayName = {});
    ~X11Workspace() override;

    std::optional<WindowHandle> frontmostWindow() override;
    void activate(const WindowHandle& window) override;

private:
    const x11::XcbConnection& connect();

    QByteArray displayName;
    std::unique_ptr<const x11::XcbConnection> connection;
};

} // namespace pintalux
