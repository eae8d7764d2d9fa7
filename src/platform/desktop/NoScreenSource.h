// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ScreenSource.h"

namespace pintalux {

/// Stands where no back end does: nothing is permitted, and everything that is asked of it says why.
class NoScreenSource : public ScreenSource {
public:
    bool hasPermission() const override { return false; }
    bool requestPermission() override { return false; }
    PermissionHelp permissionHelp() const override;
    QPointF pointerLocation() const override { return {}; }
    qint64 ownProcessId() const override;

    ShareableContent shareableContent(const QList<ToolkitScreen>& screens) override;
    std::unique_ptr<OwnWindowsHidden> hideOwnWindows() override { return nullptr; }
    Screenshot screenshot(const ScreenInfo& screen) override;
    Screenshot screenshot(const WindowInfo& window) override;
};

} // namespace pintalux
