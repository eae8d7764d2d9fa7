// SPDX-License-Identifier: MIT
#include "platform/wayland/windowing/ToolkitProtocols.h"

#include "platform/wayland/Registry.h"
#include "platform/wayland/ToolkitObjects.h"
#include "platform/wayland/windowing/LayerShell.h"

#include <viewporter-client-protocol.h>

namespace pintalux::wayland {

namespace {

// Until it is told otherwise an object's events go where those of the registry went.
template <typename T> T* onToolkitsQueue(T* object)
{
    if (object)
        wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(object), nullptr);
    return object;
}

ToolkitProtocols bindAll(wl_display* display)
{
    // Of its own, so that waiting for the answer does not run the toolkit's event handlers.
    const EventQueue queue(wl_display_create_queue(display));
    const Registry offered(display, queue.get());
    ToolkitProtocols bound;
    bound.layerShell = onToolkitsQueue(offered.bind<zwlr_layer_shell_v1>(
        zwlr_layer_shell_v1_interface, ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION));
    bound.shm = onToolkitsQueue(offered.bind<wl_shm>(wl_shm_interface, 1));
    if (!toolkitHasViewports(offered.offers("wp_fractional_scale_manager_v1")))
        bound.viewporter = onToolkitsQueue(offered.bind<wp_viewporter>(wp_viewporter_interface, 1));
    bound.scalesSurfaces = offered.offers(wp_viewporter_interface);
    return bound;
}

} // namespace

const ToolkitProtocols& toolkitProtocols()
{
    static const ToolkitProtocols bound = [] {
        auto* display = toolkitDisplay();
        return display ? bindAll(display) : ToolkitProtocols();
    }();
    return bound;
}

} // namespace pintalux::wayland
