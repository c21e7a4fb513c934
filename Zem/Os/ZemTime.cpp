// Time values and the start-up of the monotonic clock.

#include "Zem/Os/ZemTime.h"

#include "Zem/Os/SysDep/ZemHostClock.h"

double ZemTimeMachMonotonicTimeClockInterval_;

ZemBool ZemTimeInitialize()
{
    mach_timebase_info_data_t tbi = {};
    if (mach_timebase_info(&tbi) != 0) {
        return 0;
    }
    // A denominator of 0 gives an infinity or what is not a number, which every reading turns into
    // ZEM_TIME_INFINITE (or 0 ticks of infinity, which is not a number either).
    ZemTimeMachMonotonicTimeClockInterval_ =
        static_cast<double>(tbi.numer) / static_cast<double>(tbi.denom);
    return 1;
}

ZemTime* ZemTimeConstruct(ZemTime* obj_)
{
    *obj_ = 0;
    return obj_;
}

void ZemTimeDestruct(ZemTime* /*obj_*/) {}

ZemTime* ZemTimeConstructCopy(ZemTime* dst_, const ZemTime* src_)
{
    *dst_ = *src_;
    return dst_;
}

ZemTime* ZemTimeAssign(ZemTime* dst_, const ZemTime* src_)
{
    *dst_ = *src_;
    return dst_;
}

ZemBool ZemTimeSwap(ZemTime* a_, ZemTime* b_)
{
    ZemTime oldA = *a_;
    *a_ = *b_;
    *b_ = oldA;
    return 1;
}

ZemBool ZemTimeEqual(const ZemTime* a_, const ZemTime* b_)
{
    return *a_ == *b_;
}

ZemBool ZemTimeLess(const ZemTime* a_, const ZemTime* b_)
{
    return *a_ < *b_;
}
