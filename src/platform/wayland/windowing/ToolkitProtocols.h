// SPDX-License-Identifier: MIT
#pragma once

struct wl_shm;
struct wp_viewporter;
struct zwlr_layer_shell_v1;

namespace pintalux::wayland {

/// What the compositor offers for our windows, bound on the toolkit's connection, whose main thread takes
/// their events. They last as long as that. Null where the compositor lacks one.
struct ToolkitProtocols {
    zwlr_layer_shell_v1* layerShell = nullptr;
    wl_shm* shm = nullptr;
    wp_viewporter* viewporter = nullptr; ///< null also where the toolkit scales surfaces itself
    bool scalesSurfaces = false;         ///< by us or by the toolkit
};

/// Bound with the first call. All null on other display systems.
const ToolkitProtocols& toolkitProtocols();

} // namespace pintalux::wayland
