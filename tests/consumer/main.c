/* A user's program: succeeds when what it calls gives the right results. */
#include <Zem/Os/ZemTimeInline.h>

int main(void)
{
    ZemGregorianTime gt;
    ZemAllocator allocator;
    ZemTimeRange range = {2, 1};
    ZemVector_ZemTimeRange ranges;
    ZemAllocatorConstructMalloc(&allocator, SIZE_MAX);
    ZemVector_ZemTimeRangeConstructDefault(&ranges, &allocator);
    int ok = ZemVector_ZemTimeRangePushBack(&ranges, &range) &&
             ZemTimeRangeEqual(ZemVector_ZemTimeRangeBack(&ranges), &range) &&
             ZemTimeInitialize() && ZemTimeGetElapsed(0) > 0 &&
             ZemGregorianTimeConstructCStr(&gt, "2024-03-01T12:30:45.250+01:00") == &gt &&
             ZemGregorianTimeGetTime(&gt) == ZemTimeMsecs(1709292645250);
    ZemVector_ZemTimeRangeDestruct(&ranges);
    return ok ? 0 : 1;
}
