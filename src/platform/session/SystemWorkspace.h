// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Workspace.h"

namespace pintalux {

/// What the desktops have in common, whatever the display system: the person's programs for folders and
/// addresses. Other programs' windows are out of its reach.
class SystemWorkspace : public Workspace {
public:
    std::optional<WindowHandle> frontmostWindow() override { return std::nullopt; }
    void activate(const WindowHandle&) override { }

    bool openFolder(const QString& path) override;
    bool openUrl(const QUrl& url) override;
    void revealFile(const QString& path) override;
};

} // namespace pintalux
