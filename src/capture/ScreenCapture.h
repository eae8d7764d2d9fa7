// SPDX-License-Identifier: MIT
#pragma once

#include "model/CaptureResult.h"
#include "platform/desktop/ScreenSource.h"

#include <QFuture>

#include <functional>
#include <memory>
#include <optional>

namespace pintalux {

/// What the capture service itself can find wrong.
enum class CaptureError { noDisplay, permissionDenied };

/// The sentence to tell.
QString errorDescription(CaptureError error);
/// The form in which it is thrown.
Error toError(CaptureError error);
/// The way back; none for an error of somebody else.
std::optional<CaptureError> asCaptureError(const Error& error);

/// One display as it was when a capture started.
struct FrozenDisplay {
    ScreenInfo screen;     ///< an overlay belongs on the toolkit's screen of the same name
    QImage image;          ///< the whole display at native size, without the program's own windows
    double pixelScale = 1; ///< image pixels per point
};

/// A window that may be offered for capturing with one click.
struct WindowCandidate {
    WindowInfo window;
    QRectF frame; ///< points, origin top-left of the desktop
    QString
        title; ///< the application's name and the window's title joined by " — ", or what there is of them
    QList<WindowInfo> inFront = {}; ///< too small to be offered, but what is behind them is not seen there
};

/// All displays at one moment, and the windows that were on them.
struct FrozenScreens {
    QList<FrozenDisplay> displays;
    QList<WindowCandidate> windows; ///< front to back: the first that contains a point is the one seen there
    bool listsWindows = true;       ///< false where the session tells no program of other programs' windows
};

/// The one place where pixels are taken from the screen.
///
/// Called on the main thread. The waiting is done on a thread of the service, one capture after another; a
/// future is ended either by its result or by an `Error`, which reading the result throws. The main thread
/// continues with `whenFinished(…)`; waiting for a future there would make the windows stand still.
class ScreenCapture {
public:
    ScreenCapture() = delete;

    /// Never asks.
    static bool hasPermission();
    /// What a person is shown, handed in by the program. Without it nobody is told.
    struct Presenter {
        /// Says what the person can do where the desktop has no question of its own.
        std::function<void(const PermissionHelp&)> showPermissionHelp;
        std::function<void(const QString& message, const QString& symbol)> showMessage;
    };
    static void setPresenter(Presenter presenter);

    /// Asks the desktop for the permission, and where it has no such question shows what the person can do.
    /// Main thread.
    static void requestPermissionInteractive();
    /// Tells the person about a failed capture: how to give the permission where that is what is missing,
    /// else a message. Main thread.
    static void report(const Error& error);
    /// Asks the desktop when the permission is missing; what it was before asking, so false whenever it
    /// had to be asked for.
    static bool ensurePermission();

    /// Freezes every display, one after another; a failing one ends it all. `noDisplay` when there is none.
    static QFuture<FrozenScreens> freezeAllDisplays();
    /// The whole display under the pointer, the first one when it is over none. `noDisplay` when there is
    /// none.
    static QFuture<CaptureResult> captureDisplayUnderMouse();
    /// The whole display of that output, the one under the pointer for an empty name; fails, naming those
    /// that there are, when there is none.
    static QFuture<CaptureResult> captureDisplay(const QString& name);
    /// One window as it is now, without its shadow. The result carries no suggested name.
    static QFuture<CaptureResult> capture(const WindowInfo& window);

    /// The windows worth offering, in the order given: normal ones of other programs, on screen, wider and
    /// higher than 40 points.
    static QList<WindowCandidate> windowCandidates(const ShareableContent& content, qint64 ownProcessId);

    /// Where the pictures come from; without one, or with null, there are none.
    static void setSource(std::shared_ptr<ScreenSource> source);

private:
    static std::shared_ptr<ScreenSource> source();
};

} // namespace pintalux
