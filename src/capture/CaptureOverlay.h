// SPDX-License-Identifier: MIT
#pragma once

#include "capture/OverlayOutcome.h"
#include "capture/ScreenCapture.h"
#include "model/OverlayMode.h"

#include <QObject>
#include <QPointF>
#include <QRectF>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QWindow;

namespace pintalux {

class InputHold;
class OverlayView;
class OverlayWindow;

/// Ends the window once nothing of it is running any more: it is its own events that end the overlay.
struct DeleteLater {
    void operator()(OverlayWindow* window) const;
};
using OverlayWindowPointer = std::unique_ptr<OverlayWindow, DeleteLater>;

/// Lets a person select on the frozen screens, once.
///
/// One borderless window lies above everything on each screen and shows that screen's still picture, so what
/// is selected is what was there when the capture began. Main thread only.
class CaptureOverlayController : public QObject {
public:
    /// Called exactly once, as the last thing that the overlay does: it may destroy the controller.
    using Completion = std::function<void(const OverlayOutcome&)>;

    CaptureOverlayController(OverlayMode mode, FrozenScreens frozen, Completion completion);
    /// Takes the windows away without calling the completion.
    ~CaptureOverlayController() override;

    /// Shows the windows and takes the keyboard. Ends as cancelled, before it returns, when none of the
    /// frozen displays has a screen any more, and later when one of the screens goes away or changes.
    void show();

    OverlayMode mode() const { return currentMode; }
    const FrozenScreens& frozen() const { return frozenScreens; }
    /// One for each frozen display that has a screen, in their order; empty before `show` and at the end.
    const std::vector<OverlayWindowPointer>& windows() const { return overlayWindows; }

    /// Brings every screen up to date with the state of its view; repaints only what looks different.
    void refreshAll();
    /// Goes from area to window mode and back; does nothing in the others.
    void toggleWindowMode();
    /// Takes the windows away and reports. Only the first call counts.
    void finish(const OverlayOutcome& outcome);

    /// The window seen at a point of the desktop (points) on a screen; null where there is none. Lives as
    /// long as the controller.
    const WindowCandidate* windowAt(QPointF screenPoint, const ScreenInfo& screen) const;

    /// For the self-test: shows a selection (view points) and the pointer on every screen.
    void debugSimulate(const std::optional<QRectF>& selection, QPointF mouse);

private:
    void addWindow(const FrozenDisplay& display);
    void watchScreens();
    OverlayWindow& windowUnderPointer() const;
    OverlayView* keyView() const;
    void keepKeyboard(const QWindow* owner);
    void removeWindows();

    OverlayMode currentMode;
    FrozenScreens frozenScreens;
    std::vector<OverlayWindowPointer> overlayWindows;
    OverlayView* entered = nullptr;  ///< one of these, where the pointer was seen last
    quint64 formerKeyboardOwner = 0; ///< as the window system names it
    std::unique_ptr<InputHold> inputHold;
    Completion completion;
    bool finished = false;
};

} // namespace pintalux
