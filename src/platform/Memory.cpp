#include "platform/Memory.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace pintalux {

#ifdef __GLIBC__

void keepFreeMemory()
{
    constexpr int aFewScreens = 256 * 1024 * 1024;
    constexpr int largestKept = 32 * 1024 * 1024; // the allocator allows no more
    mallopt(M_MMAP_THRESHOLD, largestKept);
    mallopt(M_TRIM_THRESHOLD, aFewScreens);
}

void returnFreeMemory()
{
    constexpr int usual = 128 * 1024;
    mallopt(M_TRIM_THRESHOLD, usual);
    malloc_trim(0);
    // The end of another thread's arena is only trimmed by that thread, when it frees something large.
    constexpr std::size_t large = 1 << 18;
    void* volatile block = std::malloc(large); // NOLINT(cppcoreguidelines-no-malloc): the allocator itself
    std::free(block);                          // NOLINT(cppcoreguidelines-no-malloc)
}

#else

void keepFreeMemory() { }
void returnFreeMemory() { }

#endif

} // namespace pintalux
