// The host's tick counter over the POSIX monotonic clock. Nothing else may stand in this file: a
// program that defines the two functions itself must not pull this object out of the library.

#include <ctime>

#include "Zem/Os/SysDep/ZemHostClock.h"

ZemUint64 mach_absolute_time()
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<ZemUint64>(now.tv_sec) * 1000000000 + static_cast<ZemUint64>(now.tv_nsec);
}

kern_return_t mach_timebase_info(mach_timebase_info_t info)
{
    info->numer = 1;
    info->denom = 1;
    return 0;
}
