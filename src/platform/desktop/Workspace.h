// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <memory>
#include <optional>

namespace pintalux {

/// A window on the desktop that can be given the focus.
struct WindowHandle {
    quint64 id = 0;       ///< the display server's own name for it; `QWidget::winId` of an own window
    qint64 processId = 0; ///< 0 when unknown

    bool operator==(const WindowHandle&) const = default;
};

/// The desktop around the program: whose window has the focus, and who shows folders and addresses.
///
/// For the main thread; nothing here waits for another program.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// The window that has the focus now; none when it is one of this process, when there is none, or when
    /// the display system does not say.
    virtual std::optional<WindowHandle> frontmostWindow() = 0;
    /// Gives a window the focus and raises it, as if the person had chosen it now; also an own one. A window
    /// that has gone is no error. Does nothing where the display system keeps that to itself.
    virtual void activate(const WindowHandle& window) = 0;

    /// Shows the folder in the person's file manager. False when there is nothing that could.
    virtual bool openFolder(const QString& path) = 0;
    /// False when there is no program for it.
    virtual bool openUrl(const QUrl& url) = 0;
    /// Shows the file, selected, in the person's file manager; its folder where that cannot be had in time.
    virtual void revealFile(const QString& path) = 0;
};

} // namespace pintalux
