// SPDX-License-Identifier: MIT
#include "platform/wayland/windowing/WaylandWindowSystem.h"

#include "platform/desktop/DirectSurface.h"
#include "platform/wayland/clipboard/DataControl.h"
#include "platform/wayland/windowing/LayerSurface.h"
#include "platform/wayland/windowing/ToolkitProtocols.h"
#include "platform/wayland/windowing/ViewportSurface.h"

#include <QGuiApplication>
#include <QMimeData>
#include <QScreen>
#include <QShowEvent>
#include <QWidget>
#include <QWindow>

namespace pintalux {

namespace {

/// Puts a window that floats on the desktop where its geometry says.
class FloatingPlace : public QObject {
public:
    explicit FloatingPlace(QWidget& window)
        : QObject(&window)
        , window(window)
    {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        auto* layer = wayland::LayerSurface::of(window);
        if (event->type() == QEvent::Show && !event->spontaneous() && (!layer || !layer->surface()))
            begin();
        else if (layer && (event->type() == QEvent::Move || event->type() == QEvent::Resize))
            layer->place(place());
        return false;
    }

private:
    QScreen& screen() const
    {
        auto* under = QGuiApplication::screenAt(window.geometry().center());
        return under ? *under : *window.screen();
    }

    wayland::LayerSurface::Place place() const
    {
        const auto at = window.pos() - screen().geometry().topLeft();
        return {.size = window.size(), .margins = {at.x(), at.y(), 0, 0}};
    }

    void begin() { wayland::LayerSurface::give(window, screen(), place()); }

    QWidget& window;
};

} // namespace

WaylandWindowSystem::WaylandWindowSystem() = default;

WaylandWindowSystem::~WaylandWindowSystem() = default;

void WaylandWindowSystem::coverScreen(QWidget& window, QScreen& screen, const QRect& frame) const
{
    if (wayland::toolkitProtocols().layerShell) {
        WindowSystem::coverScreen(window, screen, frame);
        if (wayland::LayerSurface::give(window, screen, {.coversScreen = true, .takesKeyboard = true}))
            return;
    }
    window.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    window.setScreen(&screen);
    window.setGeometry(frame);
    window.setWindowState(Qt::WindowFullScreen);
    window.winId();
}

std::unique_ptr<DirectSurface> WaylandWindowSystem::makeDirectSurface(QWidget& window, QSize nativeSize) const
{
    return wayland::makeViewportSurface(window, nativeSize);
}

void WaylandWindowSystem::prepare(QWidget& window, WindowRole role) const
{
    WindowSystem::prepare(window, role);
    const bool floats = role == WindowRole::message || role == WindowRole::panel;
    if (floats && wayland::toolkitProtocols().layerShell)
        new FloatingPlace(window);
    else // Without a role of the toolkit's it would not be shown.
        window.setWindowFlag(Qt::BypassWindowManagerHint, false);
}

void WaylandWindowSystem::describe(QWidget& window, WindowRole role, const QRect& sheet) const
{
    // On Wayland a mask cuts nothing off: it is where clicks are taken.
    if (role == WindowRole::panel && window.windowHandle())
        window.windowHandle()->setMask(sheet);
}

void WaylandWindowSystem::setClipboard(std::unique_ptr<QMimeData> data) const
{
    if (!clipboard)
        clipboard = wayland::DataControl::create();
    if (clipboard)
        clipboard->offer(std::move(data));
    else
        WindowSystem::setClipboard(std::move(data));
}

// A surface that takes the keyboard has it from the compositor, which nobody can ask for it.
void WaylandWindowSystem::giveKeyboard(QWidget& window) const
{
    if (wayland::LayerSurface::of(window))
        window.setFocus(Qt::ActiveWindowFocusReason);
    else
        WindowSystem::giveKeyboard(window);
}

} // namespace pintalux
