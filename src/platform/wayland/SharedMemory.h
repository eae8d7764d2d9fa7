// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wayland/Handle.h"

#include <QSize>

#include <wayland-client.h>

#include <memory>

namespace pintalux::wayland {

/// Memory of one picture that is shared with the compositor; it starts as zeros.
class SharedMemory {
public:
    /// Null when there is no memory for it. `stride` is the bytes of a row, `format` one of `wl_shm_format`.
    static std::unique_ptr<SharedMemory> create(wl_shm* shm, QSize size, int stride, uint32_t format);

    ~SharedMemory();
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;

    wl_buffer* buffer() const { return shared.get(); }
    uchar* bytes() const { return memory; }
    /// Ends the compositor's part in it, without which it may outlive the connection.
    void unshare() { shared.reset(); }

private:
    explicit SharedMemory(std::size_t size)
        : length(size)
    {
    }

    std::size_t length;
    uchar* memory = nullptr;
    Handle<wl_buffer, endBuffer> shared;
};

} // namespace pintalux::wayland
