// SPDX-License-Identifier: MIT
#include "platform/wayland/Registry.h"

namespace pintalux::wayland {

namespace {

// The connection, whose objects made through it belong to the queue from the start.
class OnQueue {
public:
    OnQueue(wl_display* display, wl_event_queue* queue)
        : wrapper(static_cast<wl_display*>(wl_proxy_create_wrapper(display)))
    {
        if (wrapper)
            wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper), queue);
    }
    ~OnQueue()
    {
        if (wrapper)
            wl_proxy_wrapper_destroy(wrapper);
    }
    OnQueue(const OnQueue&) = delete;
    OnQueue& operator=(const OnQueue&) = delete;

    wl_registry* registry() const { return wrapper ? wl_display_get_registry(wrapper) : nullptr; }

private:
    wl_display* wrapper;
};

} // namespace

Registry::Registry(wl_display* display, wl_event_queue* queue)
    : registry(OnQueue(display, queue).registry())
{
    if (!registry)
        return;
    static constexpr wl_registry_listener listener{
        .global =
            [](void* self, wl_registry*, uint32_t number, const char* name, uint32_t version) {
                static_cast<Registry*>(self)->globals.append({name, number, version});
            },
        .global_remove =
            [](void* self, wl_registry*, uint32_t number) {
                static_cast<Registry*>(self)->globals.removeIf(
                    [number](const Global& global) { return global.number == number; });
            },
    };
    wl_registry_add_listener(registry.get(), &listener, this);
    if (queue)
        wl_display_roundtrip_queue(display, queue);
    else
        wl_display_roundtrip(display);
}

const Registry::Global* Registry::find(QByteArrayView interfaceName) const
{
    const auto found = std::ranges::find_if(
        globals, [&](const Global& global) { return QByteArrayView(global.name) == interfaceName; });
    return found == globals.end() ? nullptr : &*found;
}

void* Registry::bind(const Global& global, const wl_interface& interface, uint32_t version) const
{
    return wl_registry_bind(registry.get(), global.number, &interface, std::min(version, global.version));
}

} // namespace pintalux::wayland
