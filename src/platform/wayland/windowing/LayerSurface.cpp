// SPDX-License-Identifier: MIT
#include "platform/wayland/windowing/LayerSurface.h"

#include "platform/wayland/Registry.h"
#include "platform/wayland/ToolkitObjects.h"
#include "platform/wayland/windowing/LayerShell.h"
#include "platform/wayland/windowing/ToolkitProtocols.h"

#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace pintalux::wayland {

namespace {

constexpr uint32_t topLeft = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT;
constexpr uint32_t allEdges
    = topLeft | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
constexpr int32_t overPanels = -1;

uint32_t layerOf(LayerSurface::Place::Layer layer)
{
    switch (layer) {
    case LayerSurface::Place::Layer::top:
        return ZWLR_LAYER_SHELL_V1_LAYER_TOP;
    case LayerSurface::Place::Layer::overlay:
        break;
    }
    return ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY;
}

} // namespace

void endLayerSurface(zwlr_layer_surface_v1* surface) { zwlr_layer_surface_v1_destroy(surface); }

void LayerSurface::leaveRolesToUs() { qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1"); }

LayerSurface* LayerSurface::give(QWidget& window, QScreen& screen, const Place& place)
{
    window.winId();
    auto* surface = window.windowHandle() ? wayland::toolkitSurface(*window.windowHandle()) : nullptr;
    if (!surface || !toolkitOutput(screen) || !toolkitProtocols().layerShell)
        return nullptr;
    delete of(window); // of a former time
    auto* layer = new LayerSurface(window, surface);
    layer->ask(screen, place);
    return layer;
}

LayerSurface* LayerSurface::of(const QWidget& window)
{
    return window.findChild<LayerSurface*>(QString(), Qt::FindDirectChildrenOnly);
}

LayerSurface::LayerSurface(QWidget& owner, wl_surface* surface)
    : QObject(&owner)
    , window(owner)
    , toolkitSurface(surface)
{
    // The toolkit destroys the surface when the window is hidden, and a surface must not go before its role.
    // This is told before.
    connect(window.windowHandle(), &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible)
            end();
    });
}

void LayerSurface::ask(QScreen& screen, const Place& place)
{
    role.reset(zwlr_layer_shell_v1_get_layer_surface(toolkitProtocols().layerShell, toolkitSurface,
        toolkitOutput(screen), layerOf(place.layer), "pintalux"));
    static constexpr zwlr_layer_surface_v1_listener listener{
        .configure =
            [](void* self, zwlr_layer_surface_v1*, uint32_t serial, uint32_t width, uint32_t height) {
                static_cast<LayerSurface*>(self)->configure(serial, {int(width), int(height)});
            },
        // Its output went, or the compositor wants it away.
        .closed
        = [](void* self, zwlr_layer_surface_v1*) { static_cast<LayerSurface*>(self)->window.close(); },
    };
    zwlr_layer_surface_v1_add_listener(role.get(), &listener, this);
    set(place);

    // Nothing may be shown before the compositor has said the size, which it does at once. Waited for on a
    // queue of our own: the toolkit's handlers must not run within this call.
    auto* display = toolkitDisplay();
    auto* proxy = reinterpret_cast<wl_proxy*>(role.get());
    const EventQueue queue(wl_display_create_queue(display));
    wl_proxy_set_queue(proxy, queue.get());
    wl_surface_commit(toolkitSurface);
    wl_display_roundtrip_queue(display, queue.get());
    wl_proxy_set_queue(proxy, nullptr);
    wl_display_dispatch_queue_pending(display, queue.get()); // what came in between
}

void LayerSurface::set(const Place& place)
{
    zwlr_layer_surface_v1_set_anchor(role.get(), place.coversScreen ? allEdges : topLeft);
    if (place.coversScreen) {
        zwlr_layer_surface_v1_set_exclusive_zone(role.get(), overPanels);
    } else {
        zwlr_layer_surface_v1_set_size(
            role.get(), uint32_t(place.size.width()), uint32_t(place.size.height()));
        zwlr_layer_surface_v1_set_margin(role.get(), place.margins.top(), place.margins.right(),
            place.margins.bottom(), place.margins.left());
    }
    zwlr_layer_surface_v1_set_keyboard_interactivity(role.get(),
        place.takesKeyboard ? ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE
                            : ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
}

void LayerSurface::place(const Place& place)
{
    if (!role)
        return;
    set(place);
    wl_surface_commit(toolkitSurface);
}

void LayerSurface::configure(uint32_t serial, QSize size)
{
    zwlr_layer_surface_v1_ack_configure(role.get(), serial);
    isConfigured = true;
    if (!size.isEmpty() && size != window.size())
        window.resize(size);
    Q_EMIT configured();
}

void LayerSurface::end()
{
    isConfigured = false;
    role.reset();
    toolkitSurface = nullptr;
}

} // namespace pintalux::wayland
