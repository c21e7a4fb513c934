// Bodies of the small operations of ZemTime.h, for callers who want them inlined. The comments on
// use stand there; those here say why a body is as it is.

#ifndef ZEM_OS_ZEMTIMEINLINE_H
#define ZEM_OS_ZEMTIMEINLINE_H

#include <string.h>

#include "Zem/Os/SysDep/ZemHostClock.h"
#include "Zem/Os/ZemTime.h"
#include "Zem/Utils/ZemAllocatorInline.h"
#include "Zem/Utils/ZemStdCLibInline.h"

#if defined(ZEM_INLINE)

ZEM_BODIES_BEGIN

// ---------------------------------------------------------------------------------------------
// Time values
// ---------------------------------------------------------------------------------------------

// Unsigned products wrap without undefined behaviour and hold the same low 64 bits.

ZEM_INLINE ZemTime ZemTimeSecs(ZemInt64 secs)
{
    return (ZemTime)((ZemUint64)secs * 1000000000);
}

ZEM_INLINE ZemTime ZemTimeMsecs(ZemInt64 msecs)
{
    return (ZemTime)((ZemUint64)msecs * 1000000);
}

ZEM_INLINE ZemTime ZemTimeUsecs(ZemInt64 usecs)
{
    return (ZemTime)((ZemUint64)usecs * 1000);
}

// ---------------------------------------------------------------------------------------------
// Clocks and elapsed time
// ---------------------------------------------------------------------------------------------

ZEM_INLINE ZemTime ZemTimeGetCurrentWallTime(void)
{
    // A host that fails writes nothing, which leaves 0.
    struct timeval tv = {0, 0};
    gettimeofday(&tv, NULL);
    return (ZemTime)((ZemUint64)tv.tv_sec * 1000000000 + (ZemUint64)tv.tv_usec * 1000);
}

ZEM_INLINE ZemTime ZemTimeFromTicks_(ZemUint64 ticks)
{
    double factor = ZemTimeMachMonotonicTimeClockInterval_;
    // One tick a nanosecond is the common host: the count is then the result, as long as a double
    // holds it exactly (up to 2^53).
    if (factor == 1.0 && ticks <= 9007199254740992) {
        return (ZemTime)ticks;
    }
    // Below 2^63 the product can be converted; the comparison also fails for what is not a number.
    double nanosecs = (double)ticks * factor;
    return nanosecs < 9223372036854775808.0 ? (ZemTime)nanosecs : ZEM_TIME_INFINITE;
}

ZEM_INLINE ZemTime ZemTimeGetCurrentMonotonicTime(void)
{
    return ZemTimeFromTicks_(mach_absolute_time());
}

ZEM_INLINE ZemTime ZemTimeGetElapsedRelativeTo(ZemTime curTime, ZemTime t)
{
    if (curTime <= t) {
        return 0;
    }
    // The difference of two 64-bit numbers in this order always fits an unsigned one.
    ZemUint64 elTime = (ZemUint64)curTime - (ZemUint64)t;
    return elTime <= (ZemUint64)ZEM_TIME_INFINITE ? (ZemTime)elTime : ZEM_TIME_INFINITE;
}

ZEM_INLINE ZemUint ZemTimeGetElapsedMsecRelativeTo(ZemTime curTime, ZemTime t)
{
    return (ZemUint)(ZemTimeGetElapsedRelativeTo(curTime, t) / 1000000 % 4294967296);
}

ZEM_INLINE ZemTime ZemTimeGetElapsed(ZemTime t)
{
    return ZemTimeGetElapsedRelativeTo(ZemTimeGetCurrentMonotonicTime(), t);
}

ZEM_INLINE ZemUint ZemTimeGetElapsedMsec(ZemTime t)
{
    return ZemTimeGetElapsedMsecRelativeTo(ZemTimeGetCurrentMonotonicTime(), t);
}

ZEM_INLINE struct timeval* ZemTimeGetRelativeTimevalFromMonotonicTime(ZemTime timeout,
                                                                      struct timeval* tv)
{
    ZemTime cur;
    ZemTime micros;

    if (timeout == ZEM_TIME_INFINITE) {
        return NULL;
    }
    if (timeout == 0) {
        tv->tv_sec = 0;
        tv->tv_usec = 0;
        return tv;
    }
    cur = ZemTimeGetCurrentMonotonicTime();
    if (timeout <= cur) {
        tv->tv_sec = 0;
        tv->tv_usec = 0;
        return tv;
    }
    // A reading is never negative, so the difference fits.
    if (timeout - cur > 2147483646999999000) {
        return NULL;
    }
    micros = (timeout - cur + 999) / 1000;
    tv->tv_sec = micros / 1000000;
    tv->tv_usec = (ZemInt)(micros % 1000000);
    return tv;
}

// ---------------------------------------------------------------------------------------------
// NTP timestamps
// ---------------------------------------------------------------------------------------------

// From 1900-01-01 to 1970-01-01: 70 years with 17 leap days.
#define ZEM_NTP_EPOCH_SECS_ 2208988800

ZEM_INLINE ZemTime* ZemTimeConstructFromNtp(ZemTime* t, ZemUint64 ntp)
{
    ZemInt64 secs = (ZemInt64)(ntp / 4294967296);   // 0 .. 2^32 - 1
    ZemUint64 fraction = ntp % 4294967296;          // 0 .. 2^32 - 1
    *t = (secs - ZEM_NTP_EPOCH_SECS_) * 1000000000  // magnitude below 2^62
         + (ZemInt64)(fraction * 1000000000 / 4294967296);
    return t;
}

ZEM_INLINE ZemUint64 ZemTimeGetNtp(ZemTime t)
{
    ZemInt64 secs = t / 1000000000;
    ZemInt64 nanosecs = t % 1000000000;
    // Rounded down, without a branch: times on both sides of 1970 make it a misprediction.
    ZemInt64 before = nanosecs < 0;
    secs -= before;
    nanosecs += before * 1000000000;
    // The seconds wrap modulo 2^32 as the product does modulo 2^64.
    return ((ZemUint64)secs + ZEM_NTP_EPOCH_SECS_) * 4294967296 +
           (ZemUint64)nanosecs * 4294967296 / 1000000000;
}

// ---------------------------------------------------------------------------------------------
// Calendar time
// ---------------------------------------------------------------------------------------------

// The C library hides the member's name from strictly conforming programs: glibc by their mode,
// musl by a macro where it shows the plain one.
#if (defined(__GLIBC__) && !defined(__USE_MISC)) || \
    (defined(__linux__) && !defined(__GLIBC__) && !defined(__ANDROID__))
#define ZEM_TM_GMTOFF_ __tm_gmtoff
#else
#define ZEM_TM_GMTOFF_ tm_gmtoff
#endif

ZEM_INLINE ZemGregorianTime* ZemGregorianTimeConstruct(ZemGregorianTime* gt, ZemTime systemTime)
{
    time_t secs = systemTime / 1000000000;
    if (ZemLocalTimeR(&secs, &gt->tm) == NULL) {
        return NULL;
    }
    gt->nanosecs = systemTime % 1000000000;
    return gt;
}

ZEM_INLINE ZemGregorianTime* ZemGregorianTimeConstructUTC(ZemGregorianTime* gt, ZemTime systemTime)
{
    time_t secs = systemTime / 1000000000;
    if (ZemGmTimeR(&secs, &gt->tm) == NULL) {
        return NULL;
    }
    gt->nanosecs = systemTime % 1000000000;
    return gt;
}

ZEM_INLINE ZemGregorianTime* ZemGregorianTimeConstructFields(ZemGregorianTime* gt, ZemInt year,
                                                             ZemInt month, ZemInt monthDay,
                                                             ZemInt hour, ZemInt minute,
                                                             ZemInt second, ZemTime nanosecond)
{
    if (!ZemGregorianTimeValidateFields_(year, month, monthDay, hour, minute, second, nanosecond)) {
        return NULL;
    }
    ZemMemSet(&gt->tm, 0, sizeof gt->tm);
    // Wraps for the 1,900 smallest years, and back again in ZemGregorianTimeGetYear.
    gt->tm.tm_year = (ZemInt)((ZemUint)year - 1900);
    gt->tm.tm_mon = month - 1;
    gt->tm.tm_mday = monthDay;
    gt->tm.tm_hour = hour;
    gt->tm.tm_min = minute;
    gt->tm.tm_sec = second;
    gt->nanosecs = nanosecond;
    return gt;
}

// Records are copied as bytes: compilers may keep an assigned record field by field, without its
// padding. The two may be one record.

ZEM_INLINE ZemGregorianTime* ZemGregorianTimeConstructCopy(ZemGregorianTime* dst,
                                                           const ZemGregorianTime* src)
{
    memmove(dst, src, sizeof *dst);
    return dst;
}

ZEM_INLINE ZemGregorianTime* ZemGregorianTimeAssign(ZemGregorianTime* dst,
                                                    const ZemGregorianTime* src)
{
    memmove(dst, src, sizeof *dst);
    return dst;
}

ZEM_INLINE void ZemGregorianTimeDestruct(ZemGregorianTime* gt)
{
    (void)gt;
}

ZEM_INLINE ZemBool ZemGregorianTimeSwap(ZemGregorianTime* a, ZemGregorianTime* b)
{
    unsigned char oldA[sizeof *a];
    memcpy(oldA, a, sizeof oldA);
    memmove(a, b, sizeof *a);
    memcpy(b, oldA, sizeof oldA);
    return 1;
}

ZEM_INLINE ZemInt ZemGregorianTimeGetYear(const ZemGregorianTime* gt)
{
    return (ZemInt)((ZemUint)gt->tm.tm_year + 1900);
}

ZEM_INLINE ZemInt ZemGregorianTimeGetMonth(const ZemGregorianTime* gt)
{
    return (ZemInt)((ZemUint)gt->tm.tm_mon + 1);
}

ZEM_INLINE ZemInt ZemGregorianTimeGetMonthDay(const ZemGregorianTime* gt)
{
    return gt->tm.tm_mday;
}

ZEM_INLINE ZemInt ZemGregorianTimeGetHour(const ZemGregorianTime* gt)
{
    return gt->tm.tm_hour;
}

ZEM_INLINE ZemInt ZemGregorianTimeGetMinute(const ZemGregorianTime* gt)
{
    return gt->tm.tm_min;
}

ZEM_INLINE ZemInt ZemGregorianTimeGetSecond(const ZemGregorianTime* gt)
{
    return gt->tm.tm_sec;
}

ZEM_INLINE ZemTime ZemGregorianTimeGetNanosecond(const ZemGregorianTime* gt)
{
    return gt->nanosecs;
}

ZEM_INLINE ZemInt ZemGregorianTimeGetUTCOffset(const ZemGregorianTime* gt)
{
    return (ZemInt)gt->tm.ZEM_TM_GMTOFF_;
}

ZEM_INLINE ZemBool ZemGregorianTimeSetUTCOffset(ZemGregorianTime* gt, ZemInt offset)
{
    gt->tm.ZEM_TM_GMTOFF_ = offset;
    return 1;
}

ZEM_INLINE ZemTime ZemTimeFromSecsAndNanosecs_(ZemInt64 secs, ZemInt64 nanosecs)
{
    if (secs >= -9223372036 && secs <= 9223372035 && nanosecs >= 0 && nanosecs <= 999999999) {
        return secs * 1000000000 + nanosecs;
    }
    // Seconds this large are outside whatever the nanoseconds add (at most 9,223,372,037 s).
    if (secs < -20000000000 || secs > 20000000000) {
        return ZEM_TIME_INFINITE;
    }
    secs += nanosecs / 1000000000;
    nanosecs %= 1000000000;
    if (nanosecs < 0) {
        secs -= 1;
        nanosecs += 1000000000;
    }
    if (secs >= -9223372036 && secs <= 9223372035) {
        return secs * 1000000000 + nanosecs;
    }
    // The first and the last second that a ZemTime reaches, each in part.
    if (secs == -9223372037 && nanosecs >= 145224192) {
        return -9223372036000000000 + (nanosecs - 1000000000);
    }
    if (secs == 9223372036 && nanosecs <= 854775807) {
        return 9223372036000000000 + nanosecs;
    }
    return ZEM_TIME_INFINITE;
}

ZEM_INLINE ZemTime ZemGregorianTimeGetLocalTime(const ZemGregorianTime* gt)
{
    struct tm tm = gt->tm;
    time_t val;
    tm.tm_isdst = -1;
    val = mktime(&tm);
    return val == -1 ? ZEM_TIME_INFINITE : ZemTimeFromSecsAndNanosecs_(val, gt->nanosecs);
}

ZEM_INLINE ZemTime ZemGregorianTimeGetUTCTime(const ZemGregorianTime* gt)
{
    time_t val = ZemTimeGm(&gt->tm);
    return val == -1 ? ZEM_TIME_INFINITE : ZemTimeFromSecsAndNanosecs_(val, gt->nanosecs);
}

ZEM_INLINE ZemTime ZemGregorianTimeGetTime(const ZemGregorianTime* gt)
{
    time_t val = ZemTimeGm(&gt->tm);
    ZemInt64 offset = gt->tm.ZEM_TM_GMTOFF_;
    // The seconds of a year that fits an int stay below 2^57, so a difference that wraps is not a
    // small one.
    ZemInt64 secs = (ZemInt64)((ZemUint64)val - (ZemUint64)offset);
    if (val == -1) {
        return ZEM_TIME_INFINITE;
    }
    if (secs >= -9223372036 && secs <= 9223372035 && (ZemUint64)gt->nanosecs <= 999999999) {
        return secs * 1000000000 + gt->nanosecs;
    }
    // An offset that is too large to be subtracted safely takes the instant out of a ZemTime's
    // span, whatever the fields say.
    if (offset < -4611686018427387904 || offset > 4611686018427387904) {
        return ZEM_TIME_INFINITE;
    }
    return ZemTimeFromSecsAndNanosecs_(secs, gt->nanosecs);
}

// ---------------------------------------------------------------------------------------------
// Time ranges: `end` is the lower bound, `begin` the upper
// ---------------------------------------------------------------------------------------------

ZEM_INLINE ZemTimeRange* ZemTimeRangeConstruct(ZemTimeRange* x, ZemTime begin, ZemTime end)
{
    x->begin = begin;
    x->end = end;
    return x;
}

ZEM_INLINE void ZemTimeRangeDestruct(ZemTimeRange* x)
{
    (void)x;
}

ZEM_INLINE ZemTimeRange* ZemTimeRangeConstructCopy(ZemTimeRange* x, const ZemTimeRange* y)
{
    *x = *y;
    return x;
}

ZEM_INLINE ZemTimeRange* ZemTimeRangeAssign(ZemTimeRange* x, const ZemTimeRange* y)
{
    *x = *y;
    return x;
}

ZEM_INLINE void ZemTimeRangeSwap(ZemTimeRange* x, ZemTimeRange* y)
{
    ZemTimeRange oldX = *x;
    *x = *y;
    *y = oldX;
}

ZEM_INLINE ZemBool ZemTimeRangeEqual(const ZemTimeRange* x, const ZemTimeRange* y)
{
    return x->begin == y->begin && x->end == y->end;
}

ZEM_INLINE ZemBool ZemTimeRangeLess(const ZemTimeRange* x, const ZemTimeRange* y)
{
    return x->end < y->end || (x->end == y->end && x->begin < y->begin);
}

ZEM_INLINE ZemTime ZemTimeRangeBegin(const ZemTimeRange* x)
{
    return x->begin;
}

ZEM_INLINE ZemTime ZemTimeRangeEnd(const ZemTimeRange* x)
{
    return x->end;
}

ZEM_INLINE ZemBool ZemTimeRangeIsValid(const ZemTimeRange* x)
{
    return x->begin >= x->end;
}

ZEM_INLINE void ZemTimeRangeIntersection(const ZemTimeRange* x, const ZemTimeRange* y,
                                         ZemTimeRange* result)
{
    result->begin = x->begin < y->begin ? x->begin : y->begin;
    result->end = x->end > y->end ? x->end : y->end;
}

ZEM_INLINE void ZemTimeRangeUnion(const ZemTimeRange* x, const ZemTimeRange* y,
                                  ZemTimeRange* result)
{
    result->begin = x->begin > y->begin ? x->begin : y->begin;
    result->end = x->end < y->end ? x->end : y->end;
}

ZEM_INLINE ZemBool ZemTimeRangeIntersects(const ZemTimeRange* x, const ZemTimeRange* y)
{
    ZemTimeRange common;
    ZemTimeRangeIntersection(x, y, &common);
    return ZemTimeRangeIsValid(&common);
}

ZEM_INLINE ZemBool ZemTimeRangeSubsumes(const ZemTimeRange* x, const ZemTimeRange* y)
{
    // Both compared at once: a branch between the two cannot be predicted.
    return (x->begin >= y->begin) & (x->end <= y->end);
}

// ---------------------------------------------------------------------------------------------
// Arrays of time ranges
// ---------------------------------------------------------------------------------------------

ZEM_INLINE ZemAllocator* ZemVector_ZemTimeRangeGetAllocator(const ZemVector_ZemTimeRange* x)
{
    return x->allocator;
}

ZEM_INLINE ZemBool ZemVector_ZemTimeRangeEmpty(const ZemVector_ZemTimeRange* x)
{
    return x->begin == x->end;
}

ZEM_INLINE ZemVector_ZemTimeRangeSizeType
ZemVector_ZemTimeRangeSize(const ZemVector_ZemTimeRange* x)
{
    return (ZemVector_ZemTimeRangeSizeType)(x->end - x->begin);
}

ZEM_INLINE ZemVector_ZemTimeRangeSizeType
ZemVector_ZemTimeRangeMaxSize(const ZemVector_ZemTimeRange* x)
{
    (void)x;
    return 268435455;
}

ZEM_INLINE ZemVector_ZemTimeRangeSizeType
ZemVector_ZemTimeRangeCapacity(const ZemVector_ZemTimeRange* x)
{
    return (ZemVector_ZemTimeRangeSizeType)(x->endBuf - x->begin);
}

ZEM_INLINE ZemVector_ZemTimeRangeIterator ZemVector_ZemTimeRangeBegin(ZemVector_ZemTimeRange* x)
{
    return x->begin;
}

ZEM_INLINE ZemVector_ZemTimeRangeConstIterator
ZemVector_ZemTimeRangeBeginConst(const ZemVector_ZemTimeRange* x)
{
    return x->begin;
}

ZEM_INLINE ZemVector_ZemTimeRangeIterator ZemVector_ZemTimeRangeEnd(ZemVector_ZemTimeRange* x)
{
    return x->end;
}

ZEM_INLINE ZemVector_ZemTimeRangeConstIterator
ZemVector_ZemTimeRangeEndConst(const ZemVector_ZemTimeRange* x)
{
    return x->end;
}

ZEM_INLINE ZemVector_ZemTimeRangeReverseIterator
ZemVector_ZemTimeRangeRBegin(ZemVector_ZemTimeRange* x)
{
    return x->end;
}

ZEM_INLINE ZemVector_ZemTimeRangeConstReverseIterator
ZemVector_ZemTimeRangeRBeginConst(const ZemVector_ZemTimeRange* x)
{
    return x->end;
}

ZEM_INLINE ZemVector_ZemTimeRangeReverseIterator
ZemVector_ZemTimeRangeREnd(ZemVector_ZemTimeRange* x)
{
    return x->begin;
}

ZEM_INLINE ZemVector_ZemTimeRangeConstReverseIterator
ZemVector_ZemTimeRangeREndConst(const ZemVector_ZemTimeRange* x)
{
    return x->begin;
}

ZEM_INLINE ZemTimeRange* ZemVector_ZemTimeRangeAt(ZemVector_ZemTimeRange* x,
                                                  ZemVector_ZemTimeRangeSizeType n)
{
    return x->begin + n;
}

ZEM_INLINE const ZemTimeRange* ZemVector_ZemTimeRangeAtConst(const ZemVector_ZemTimeRange* x,
                                                             ZemVector_ZemTimeRangeSizeType n)
{
    return x->begin + n;
}

ZEM_INLINE ZemTimeRange* ZemVector_ZemTimeRangeFront(ZemVector_ZemTimeRange* x)
{
    return x->begin;
}

ZEM_INLINE const ZemTimeRange* ZemVector_ZemTimeRangeFrontConst(const ZemVector_ZemTimeRange* x)
{
    return x->begin;
}

ZEM_INLINE ZemTimeRange* ZemVector_ZemTimeRangeBack(ZemVector_ZemTimeRange* x)
{
    return x->end - 1;
}

ZEM_INLINE const ZemTimeRange* ZemVector_ZemTimeRangeBackConst(const ZemVector_ZemTimeRange* x)
{
    return x->end - 1;
}

ZEM_INLINE ZemBool ZemVector_ZemTimeRangePushBack(ZemVector_ZemTimeRange* x, const ZemTimeRange* t)
{
    // Growing takes no part in the copy, so `*t` need not be in memory.
    if (x->end == x->endBuf && !ZemVector_ZemTimeRangeGrow_(x)) {
        return 0;
    }
    ZemTimeRangeConstructCopy(x->end, t);
    x->end += 1;
    return 1;
}

ZEM_INLINE void ZemVector_ZemTimeRangePopBack(ZemVector_ZemTimeRange* x)
{
    x->end -= 1;
}

ZEM_INLINE void ZemVector_ZemTimeRangeClear(ZemVector_ZemTimeRange* x)
{
    x->end = x->begin;
}

#define ZEM_ITERATOR ZemVector_ZemTimeRangeIterator
#define ZEM_ITERATOR_ELEMENT ZemTimeRange
#define ZEM_ITERATOR_CONST const ZemTimeRange
#define ZEM_ITERATOR_STEP 1
#include "Zem/Containers/ZemVectorIteratorInline.h"

#define ZEM_ITERATOR ZemVector_ZemTimeRangeConstIterator
#define ZEM_ITERATOR_ELEMENT const ZemTimeRange
#define ZEM_ITERATOR_CONST const ZemTimeRange
#define ZEM_ITERATOR_STEP 1
#include "Zem/Containers/ZemVectorIteratorInline.h"

#define ZEM_ITERATOR ZemVector_ZemTimeRangeReverseIterator
#define ZEM_ITERATOR_ELEMENT ZemTimeRange
#define ZEM_ITERATOR_CONST const ZemTimeRange
#define ZEM_ITERATOR_STEP (-1)
#include "Zem/Containers/ZemVectorIteratorInline.h"

#define ZEM_ITERATOR ZemVector_ZemTimeRangeConstReverseIterator
#define ZEM_ITERATOR_ELEMENT const ZemTimeRange
#define ZEM_ITERATOR_CONST const ZemTimeRange
#define ZEM_ITERATOR_STEP (-1)
#include "Zem/Containers/ZemVectorIteratorInline.h"

ZEM_BODIES_END

#endif

#endif
