// Records of each kind for a debugger to show.
#include <Zem/Os/ZemTimeInline.h>
#include <Zem/Os/ZemTimeZone.h>

static volatile int stopped;

int main(void)
{
    ZemAllocator allocator;
    ZemGregorianTime late, early;
    ZemTimeRange range, inverted;
    ZemVector_ZemTimeRange ranges, none;
    ZemTimeZone zone;
    ZemLocalTime local;

    ZemAllocatorConstructMalloc(&allocator, SIZE_MAX);
    ZemGregorianTimeConstructCStr(&late, "2024-03-01T12:30:45.250-01:30");
    ZemGregorianTimeConstructUTC(&early, -1);
    ZemTimeRangeConstruct(&range, 1500000000, -1);
    ZemTimeRangeConstruct(&inverted, ZEM_TIME_INFINITE - 1, ZEM_TIME_INFINITE);
    ZemVector_ZemTimeRangeConstructDefault(&ranges, &allocator);
    ZemVector_ZemTimeRangeConstructDefault(&none, &allocator);
    if (!ZemVector_ZemTimeRangePushBack(&ranges, &range) ||
        ZemTimeZoneConstructRule(&zone, "CET-1CEST,M3.5.0,M10.5.0/3", &allocator) == NULL) {
        return 1;
    }
    ZemGregorianTimeResolve(&late, &zone, &local);
    stopped = 1;  // here
    ZemTimeZoneDestruct(&zone);
    ZemVector_ZemTimeRangeDestruct(&ranges);
    return 0;
}
