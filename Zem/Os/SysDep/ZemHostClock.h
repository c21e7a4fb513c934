// The host's tick counter, as the monotonic clock needs it:
//
//   mach_absolute_time()      an unsigned 64-bit count that never decreases, from an origin of the
//                             host's own
//   mach_timebase_info(tbi)   nanoseconds = ticks * numer / denom; returns 0 on success
//
// macOS has both. Elsewhere the library provides them over the POSIX monotonic clock, one tick a
// nanosecond. On Linux that clock stands still while the machine is suspended; it is slewed by
// time synchronisation but never stepped.
//
// The library keeps the two in an object of their own, so that a program which links the static
// library may bring its own host by defining both (one alone does not link). Their names have no
// prefix: a program that defines one of them while it runs with the shared library replaces that
// one for the library as well, without a word from the linker.

#ifndef ZEM_OS_SYSDEP_ZEMHOSTCLOCK_H
#define ZEM_OS_SYSDEP_ZEMHOSTCLOCK_H

#if defined(__APPLE__)

#include <mach/mach_time.h>

#else

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef int kern_return_t;

typedef struct mach_timebase_info_data {
    ZemUint32 numer;
    ZemUint32 denom;
} mach_timebase_info_data_t;

typedef mach_timebase_info_data_t* mach_timebase_info_t;

// The count of ticks (nanoseconds) since the host's origin. Cannot fail. Any thread.
ZEM_API ZemUint64 mach_absolute_time(void);

// Fills `info` with the length of a tick as a fraction of a nanosecond and returns 0. Any thread.
ZEM_API kern_return_t mach_timebase_info(mach_timebase_info_t info);

#ifdef __cplusplus
}
#endif

#endif

#endif
