// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Workspace.h"

#include <QStringList>

namespace pintalux {

/// A desktop in memory for tests.
class FakeWorkspace : public Workspace {
public:
    std::optional<WindowHandle> front; ///< of another process

    /// What was asked, in order: "activate ID", "folder PATH", "url URL" and "reveal PATH".
    QStringList log;

    std::optional<WindowHandle> frontmostWindow() override { return front; }
    void activate(const WindowHandle& window) override
    {
        log.append(QStringLiteral("activate %1").arg(window.id));
    }
    bool openFolder(const QString& path) override
    {
        log.append(QStringLiteral("folder ") + path);
        return true;
    }
    bool openUrl(const QUrl& url) override
    {
        log.append(QStringLiteral("url ") + url.toString());
        return true;
    }
    void revealFile(const QString& path) override { log.append(QStringLiteral("reveal ") + path); }
};

} // namespace pintalux
