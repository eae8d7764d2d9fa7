// SPDX-License-Identifier: MIT
#include "platform/wayland/SharedMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <limits>

namespace pintalux::wayland {

std::unique_ptr<SharedMemory> SharedMemory::create(wl_shm* shm, QSize size, int stride, uint32_t format)
{
    const auto length = std::size_t(std::max(0, stride)) * std::size_t(std::max(0, size.height()));
    if (length == 0 || length > std::size_t(std::numeric_limits<int32_t>::max()))
        return nullptr;
    const int file = memfd_create("pintalux", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (file < 0)
        return nullptr;
    std::unique_ptr<SharedMemory> made(new SharedMemory(length));
    // The pages are taken at once: running out of them later would kill whoever touches one.
    if (posix_fallocate(file, 0, off_t(length)) == 0) {
        fcntl(file, F_ADD_SEALS, F_SEAL_SHRINK); // so the compositor need not fear that they go
        void* const mapped = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        if (mapped != MAP_FAILED) { // NOLINT(performance-no-int-to-ptr)
            made->memory = static_cast<uchar*>(mapped);
            const Handle<wl_shm_pool, wl_shm_pool_destroy> pool(
                wl_shm_create_pool(shm, file, int32_t(length)));
            made->shared.reset(
                wl_shm_pool_create_buffer(pool.get(), 0, size.width(), size.height(), stride, format));
        }
    }
    ::close(file); // both sides have it mapped
    return made->shared ? std::move(made) : nullptr;
}

SharedMemory::~SharedMemory()
{
    if (memory)
        munmap(memory, length);
}

} // namespace pintalux::wayland
