// SPDX-License-Identifier: MIT
#include "platform/wayland/Handle.h"

#include <wayland-client.h>

namespace pintalux::wayland {

void endBuffer(wl_buffer* buffer) { wl_buffer_destroy(buffer); }
void endOutput(wl_output* output) { wl_output_destroy(output); }
void endRegistry(wl_registry* registry) { wl_registry_destroy(registry); }

} // namespace pintalux::wayland
