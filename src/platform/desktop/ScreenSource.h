// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/Error.h"
#include "platform/desktop/ToolkitScreens.h"

#include <QImage>
#include <QList>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QString>
#include <QUrl>

#include <memory>
#include <optional>

namespace pintalux {

/// One display that can be captured.
struct ScreenInfo {
    QString name;          ///< of the output
    QRectF frame;          ///< points, origin top-left of the desktop
    QRect nativeRect;      ///< device pixels, origin top-left of the display server's desktop
    double pixelScale = 1; ///< device pixels per point
    bool attached = true;  ///< false when the toolkit has no screen of this name to show windows on
};

/// A rectangle of device pixels in the points of a screen, not rounded.
inline QRectF toPoints(const QRect& nativeRect, const ScreenInfo& screen)
{
    const QPointF offset = QPointF(nativeRect.topLeft() - screen.nativeRect.topLeft()) / screen.pixelScale;
    return {screen.frame.topLeft() + offset, QSizeF(nativeRect.size()) / screen.pixelScale};
}

/// One window on the desktop.
struct WindowInfo {
    quint64 id = 0;          ///< the display server's own name for it
    QRectF frame;            ///< points, decoration included, shadow not
    int layer = 0;           ///< 0 for normal windows, above 0 for raised ones, below 0 for the desktop
    qint64 processId = 0;    ///< 0 when unknown
    QString applicationName; ///< empty when unknown
    QString title;           ///< empty when it has none
    bool onScreen = true;    ///< false when minimised, rolled up or on another desktop
    double pixelScale = 1;   ///< of the screen that holds most of it
    QRect nativeRect = {};   ///< `frame` in device pixels of the server's desktop; empty when unknown

    /// Part of a decoration, in device pixels from the corner of `nativeRect`.
    struct DecorationPart {
        QPoint at;
        QImage picture;
    };
    /// The part of `nativeRect` that can be read from the window when its manager paints the decoration
    /// elsewhere; none when all of it can.
    std::optional<QRect> readableRect = {};
    /// Such a decoration as it was on the screen; empty when something covered it.
    QList<DecorationPart> decoration = {};

    /// Where it is seen on a screen, in points. Dense screens do not adjoin in points, so a window that spans
    /// two of them lies at another place on each.
    QRectF frameOn(const ScreenInfo& screen) const
    {
        return nativeRect.isEmpty() ? frame : toPoints(nativeRect, screen);
    }
};

/// What can be captured now.
struct ShareableContent {
    QList<ScreenInfo> screens; ///< the primary one first
    QList<WindowInfo> windows; ///< front to back
    bool listsWindows = true;  ///< false where the session tells no program of other programs' windows
};

/// Pixels as they were on the screen, never resampled, tagged sRGB.
struct Screenshot {
    QImage image;
    double pixelScale = 1; ///< image pixels per point
};

/// What to tell a person who has not allowed the program to take pictures of the screen.
struct PermissionHelp {
    QString message;
    QString details;
    QString settingsButton; ///< empty: there is nothing to open
    QUrl settings;          ///< what that button opens
    QString dismissButton;
};

/// Where pictures of the screen come from: one back end per display system, one in memory for tests.
///
/// The operations that may wait are meant for a worker thread, one at a time; each of them ends, with a
/// result or by throwing an `Error`, within some seconds. A display server that is missing or dies is such
/// an error and leaves the source usable once there is a server again.
class ScreenSource {
public:
    /// The domain of every error of a source.
    static inline const QString errorDomain = QStringLiteral("ScreenSource");
    /// Codes that callers tell apart; all others only differ in their text.
    static constexpr int temporaryFailure = -3811; ///< worth a second try a moment later
    static constexpr int userDeclined = -3801;     ///< the person or their desktop said no

    /// Keeps the program's own windows out of pictures for as long as it lives.
    class OwnWindowsHidden {
    public:
        virtual ~OwnWindowsHidden() = default;
    };

    virtual ~ScreenSource() = default;

    /// Whether pictures may be taken; never asks. Any thread, at once.
    virtual bool hasPermission() const = 0;
    /// Asks the desktop for the permission where it has such a thing; true when it is granted. Main thread.
    virtual bool requestPermission() = 0;
    /// What to do where the permission is missing.
    virtual PermissionHelp permissionHelp() const { return {}; }
    /// In points. Main thread, at once.
    virtual QPointF pointerLocation() const = 0;
    /// The process whose windows are the program's own.
    virtual qint64 ownProcessId() const = 0;

    /// Worker thread. `screens` gives each display its place in points.
    virtual ShareableContent shareableContent(const QList<ToolkitScreen>& screens) = 0;
    /// Worker thread. Waits until the windows are gone from the screen, not at all when there are none.
    virtual std::unique_ptr<OwnWindowsHidden> hideOwnWindows() = 0;
    /// The whole display at its native size. Worker thread.
    virtual Screenshot screenshot(const ScreenInfo& screen) = 0;
    /// One window with its decoration and without its shadow, whole even where others cover it. Worker
    /// thread.
    virtual Screenshot screenshot(const WindowInfo& window) = 0;
};

} // namespace pintalux
