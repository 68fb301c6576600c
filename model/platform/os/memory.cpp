#include "platform/os/memory.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace os {

void releaseFreedMemory()
{
#if defined(__GLIBC__)
    // Blocks of this size and more are mapped on their own and go back when
    // freed; left to itself glibc raises the mark after each such free, and
    // later large lists then stay in the heap.
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    malloc_trim(0);
#endif
}

} // namespace os
