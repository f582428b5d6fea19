#include "processMemory.h"

#include <QPixmapCache>

#include <malloc.h>

void processMemory::keepLow()
{
    // Left to itself the allocator learns from the first large block that is freed, and keeps the next ones.
    constexpr int largeBlock = 128 * 1024;
    mallopt(M_MMAP_THRESHOLD, largeBlock);
    mallopt(M_TRIM_THRESHOLD, largeBlock);
    mallopt(M_ARENA_MAX, 1);
}

void processMemory::returnUnused()
{
    QPixmapCache::clear();
    // Its answer, whether there was anything to give back, doesn't matter.
    (void)malloc_trim(0);
}
