// SPDX-License-Identifier: MIT
#include "platform/wayland/Session.h"

#include "platform/wayland/Connection.h"

namespace pintalux::wayland {

const Offered& offeredBySession()
{
    static const Offered offered = []() -> Offered {
        // Without a name the library would try a usual one, also where there is no session of that kind; a
        // connection that was handed to this process is for the toolkit, and can be used once only.
        if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_SOCKET"))
            return {};
        try {
            const Connection connection;
            const auto& registry = connection.offered();
            return {.isThere = true,
                .layerSurfaces = registry.offers("zwlr_layer_shell_v1"),
                .screencopy = registry.offers("zwlr_screencopy_manager_v1")};
        } catch (const Error&) {
            return {};
        }
    }();
    return offered;
}

} // namespace pintalux::wayland
