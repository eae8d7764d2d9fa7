// SPDX-License-Identifier: MIT

// Preloaded into a program: what it writes below the folder $SLOW_DISK takes two seconds to reach the disk.

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

extern "C" int fsync(int descriptor)
{
    constexpr unsigned seconds = 2;
    char link[64];
    char path[4096];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const auto length = ::readlink(link, path, sizeof path);
    const char* folder = std::getenv("SLOW_DISK");
    if (folder && length > 0 && std::string_view(path, std::size_t(length)).starts_with(folder))
        ::sleep(seconds);
    return int(::syscall(SYS_fsync, descriptor));
}
