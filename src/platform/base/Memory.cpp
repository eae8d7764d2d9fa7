// SPDX-License-Identifier: MIT
#include "platform/base/Memory.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace pintalux {

void returnFreeMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace pintalux
