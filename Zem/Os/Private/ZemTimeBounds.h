// The arithmetic of closed ranges at both ends of the 64-bit range: what lies next to a bound, how
// far apart two bounds are, what a cut leaves of a range. Nothing here forms a bound that does not
// fit.
//
// Not installed and not part of the interface. C rather than C++, as the provers read it.

#ifndef ZEM_OS_PRIVATE_ZEMTIMEBOUNDS_H
#define ZEM_OS_PRIVATE_ZEMTIMEBOUNDS_H

#include "Zem/Os/ZemTime.h"

// The instant before `t`. The first one has none: the result then wraps to the last.
static inline ZemTime ZemTimePrevious_(ZemTime t)
{
    return (ZemTime)((ZemUint64)t - 1);
}

// The instant after `t`. The last one has none: the result then wraps to the first.
static inline ZemTime ZemTimeNext_(ZemTime t)
{
    return (ZemTime)((ZemUint64)t + 1);
}

// `upper` - `lower`, which may need the 64th bit; modulo 2^64 where it is negative.
static inline ZemUint64 ZemTimeDistance_(ZemTime lower, ZemTime upper)
{
    return (ZemUint64)upper - (ZemUint64)lower;
}

// 1 when no instant lies between the upper bound of a range and the lower bound of another that
// begins no earlier: they overlap or touch.
static inline ZemBool ZemTimeTouches_(ZemTime upper, ZemTime lower)
{
    return lower <= upper + (upper < INT64_MAX);
}

// 1 when `lower` is at most `reach` after `upper`.
static inline ZemBool ZemTimeReaches_(ZemTime upper, ZemTime lower, ZemUint64 reach)
{
    return lower <= upper || ZemTimeDistance_(upper, lower) <= reach;
}

// Writes `x` and the instants right before and behind it, where there are such, to `wide`: what
// meets that overlaps or touches `x`.
static inline void ZemTimeRangeWiden_(const ZemTimeRange* x, ZemTimeRange* wide)
{
    wide->begin = x->begin < INT64_MAX ? x->begin + 1 : INT64_MAX;
    wide->end = x->end > INT64_MIN ? x->end - 1 : INT64_MIN;
}

// Writes what `x` holds before the first instant of `cut` to `rest`, which may be `x`; 0 when that
// is nothing, and nothing is written.
static inline ZemBool ZemTimeRangeCutBelow_(const ZemTimeRange* x, const ZemTimeRange* cut,
                                            ZemTimeRange* rest)
{
    if (x->end >= cut->end) {
        return 0;
    }
    rest->begin = x->begin < cut->end ? x->begin : cut->end - 1;
    rest->end = x->end;
    return 1;
}

// Writes what `x` holds after the last instant of `cut` to `rest`, which may be `x`; 0 when that
// is nothing, and nothing is written.
static inline ZemBool ZemTimeRangeCutAbove_(const ZemTimeRange* x, const ZemTimeRange* cut,
                                            ZemTimeRange* rest)
{
    if (x->begin <= cut->begin) {
        return 0;
    }
    rest->end = x->end > cut->begin ? x->end : cut->begin + 1;
    rest->begin = x->begin;
    return 1;
}

#endif
