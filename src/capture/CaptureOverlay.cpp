// SPDX-License-Identifier: MIT
#include "capture/CaptureOverlay.h"

#include "app/messages/HUD.h"
#include "capture/OverlayWindow.h"
#include "platform/desktop/ToolkitScreens.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/graphics/Geometry.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace pintalux {

void DeleteLater::operator()(OverlayWindow* window) const { window->deleteLater(); }

CaptureOverlayController::CaptureOverlayController(
    OverlayMode mode, FrozenScreens frozen, Completion whenFinished)
    : currentMode(mode)
    , frozenScreens(std::move(frozen))
    , completion(std::move(whenFinished))
{
}

CaptureOverlayController::~CaptureOverlayController() { removeWindows(); }

void CaptureOverlayController::show()
{
    formerKeyboardOwner = WindowSystem::current().keyboardOwner();
    for (const auto& display : frozenScreens.displays)
        addWindow(display);
    if (overlayWindows.empty()) {
        finish(Outcome::Cancelled());
        return;
    }
    watchScreens();
    WindowSystem::current().giveKeyboard(windowUnderPointer());
    inputHold = WindowSystem::current().holdInput(windowUnderPointer(), [guard = QPointer(this)] {
        if (!guard)
            return;
        guard->finish(Outcome::Cancelled());
        HUD::show(u"Otro programa tiene el teclado"_s, u"exclamationmark.triangle"_s);
    });
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &CaptureOverlayController::keepKeyboard);
    refreshAll();
}

OverlayWindow& CaptureOverlayController::windowUnderPointer() const
{
    const auto* screen = screenUnderPointer();
    const auto found = std::ranges::find_if(overlayWindows,
        [&](const auto& window) { return screen && window->displayName() == screen->name(); });
    return found == overlayWindows.end() ? *overlayWindows.front() : **found;
}

// Not every display system lets the keyboard follow the pointer from one screen to the other.
OverlayView* CaptureOverlayController::keyView() const
{
    if (entered)
        return entered;
    const auto focused = std::ranges::find_if(
        overlayWindows, [](const auto& window) { return window->hasFocus() && window->isActiveWindow(); });
    return focused == overlayWindows.end() ? nullptr : focused->get();
}

// A window that opens or is activated meanwhile lies below the overlay: what is typed would reach it unseen,
// and Escape would not end the overlay.
void CaptureOverlayController::keepKeyboard(const QWindow* owner)
{
    const bool isOurs = std::ranges::any_of(
        overlayWindows, [&](const auto& window) { return window->windowHandle() == owner; });
    if (!isOurs && !overlayWindows.empty())
        WindowSystem::current().takeKeyboard(windowUnderPointer());
}

void CaptureOverlayController::addWindow(const FrozenDisplay& display)
{
    auto* screen = screenNamed(display.screen.name);
    if (!screen)
        return;
    // A window is gone a moment after the overlay, and what still reaches it then asks for nothing.
    const QPointer guard(this);
    const OverlayView::Actions actions{
        .windowAt
        = [guard](QPointF at, const ScreenInfo& on) { return guard ? guard->windowAt(at, on) : nullptr; },
        .entered =
            [guard](OverlayView& view) {
                if (guard)
                    guard->entered = &view;
            },
        .keyView = [guard] { return guard ? guard->keyView() : nullptr; },
        .refreshAll =
            [guard] {
                if (guard)
                    guard->refreshAll();
            },
        .toggleWindowMode =
            [guard] {
                if (guard)
                    guard->toggleWindowMode();
            },
        .finish =
            [guard](const OverlayOutcome& outcome) {
                if (guard)
                    guard->finish(outcome);
            },
    };
    OverlayWindowPointer window(
        new OverlayWindow(display, *screen, currentMode, frozenScreens.listsWindows, actions));
    window->show();
    window->raise();
    overlayWindows.push_back(std::move(window));
}

void CaptureOverlayController::watchScreens()
{
    const auto cancel = [this] { finish(Outcome::Cancelled()); };
    for (const auto& window : overlayWindows) {
        const auto* screen = screenNamed(window->displayName());
        connect(screen, &QScreen::geometryChanged, this, cancel);
        connect(screen, &QObject::destroyed, this, cancel);
    }
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this, cancel](const QScreen* removed) {
        if (std::ranges::any_of(
                overlayWindows, [&](const auto& window) { return window->displayName() == removed->name(); }))
            cancel();
    });
}

void CaptureOverlayController::refreshAll()
{
    for (const auto& window : overlayWindows)
        window->refresh();
}

void CaptureOverlayController::toggleWindowMode()
{
    if (currentMode == OverlayMode::area)
        currentMode = OverlayMode::window;
    else if (currentMode == OverlayMode::window)
        currentMode = OverlayMode::area;
    else
        return;
    for (const auto& window : overlayWindows)
        window->setMode(currentMode);
    refreshAll();
}

void CaptureOverlayController::finish(const OverlayOutcome& outcome)
{
    if (std::exchange(finished, true))
        return;
    removeWindows();
    // The completion may destroy this object, and with it what the outcome was made from.
    const auto report = std::exchange(completion, nullptr);
    const auto reported = outcome; // NOLINT(performance-unnecessary-copy-initialization)
    if (report)
        report(reported);
}

void CaptureOverlayController::removeWindows()
{
    inputHold.reset();
    entered = nullptr;
    const auto leaving = std::exchange(overlayWindows, {});
    for (const auto& window : leaving)
        window->hide();
    WindowSystem::current().returnKeyboard(std::exchange(formerKeyboardOwner, 0));
}

const WindowCandidate* CaptureOverlayController::windowAt(QPointF screenPoint, const ScreenInfo& screen) const
{
    const auto& windows = frozenScreens.windows;
    const auto found = std::ranges::find_if(windows,
        [&](const WindowCandidate& each) { return containsPoint(each.window.frameOn(screen), screenPoint); });
    const bool isHidden = found != windows.end()
        && std::ranges::any_of(found->inFront,
            [&](const WindowInfo& small) { return containsPoint(small.frameOn(screen), screenPoint); });
    return found == windows.end() || isHidden ? nullptr : &*found;
}

void CaptureOverlayController::debugSimulate(const std::optional<QRectF>& selection, QPointF mouse)
{
    for (const auto& window : overlayWindows)
        window->debugSimulate(selection, mouse);
}

} // namespace pintalux
