#include "platform/os/memory.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

void giveLargeBlocksBack()
{
#ifdef __GLIBC__
    constexpr int large = 1 << 20;
    ::mallopt(M_MMAP_THRESHOLD, large);
#endif
}
