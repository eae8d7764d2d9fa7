// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wayland/Handle.h"

#include <QByteArray>
#include <QList>

#include <wayland-client.h>

#include <functional>

namespace pintalux::wayland {

using EventQueue = Handle<wl_event_queue, wl_event_queue_destroy>;

/// What a compositor offers to a program, and binding it. For the thread that dispatches the queue.
class Registry {
public:
    /// Asks on that connection and waits for the answer; objects bound here tell their events to `queue`,
    /// those of the connection's own queue for null. Offers nothing once the connection is broken.
    explicit Registry(wl_display* display, wl_event_queue* queue = nullptr);
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    bool offers(QByteArrayView interfaceName) const { return find(interfaceName) != nullptr; }
    bool offers(const wl_interface& interface) const { return offers(interface.name); }
    /// At most that version of it; null when it is not offered.
    template <typename T> T* bind(const wl_interface& interface, uint32_t version) const
    {
        const auto* global = find(interface.name);
        return global ? static_cast<T*>(bind(*global, interface, version)) : nullptr;
    }
    /// All that are offered, in the order in which they came.
    template <typename T> QList<T*> bindAll(const wl_interface& interface, uint32_t version) const
    {
        QList<T*> objects;
        for (const auto& global : globals)
            if (global.name == interface.name)
                objects.append(static_cast<T*>(bind(global, interface, version)));
        return objects;
    }

private:
    struct Global {
        QByteArray name; ///< of its interface
        uint32_t number = 0;
        uint32_t version = 0;
    };

    const Global* find(QByteArrayView interfaceName) const;
    void* bind(const Global& global, const wl_interface& interface, uint32_t version) const;

    Handle<wl_registry, endRegistry> registry;
    QList<Global> globals;
};

} // namespace pintalux::wayland
