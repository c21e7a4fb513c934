// Time for applications: nanosecond time values, wall and monotonic clocks, NTP timestamps,
// calendar records parsed from and printed as text, compact durations, time ranges, and arrays of
// ranges on the caller's own allocator.
//
// Include this header for the prototypes, or ZemTimeInline.h for the prototypes and the bodies of
// the small operations; nothing else is needed. Plain C11 and C++17.
//
// I want to ...                               call
//   measure how long something takes          ZemTimeInitialize once, then
//                                             ZemTimeGetCurrentMonotonicTime and ZemTimeGetElapsed
//   wait until a deadline                     ZemTimeGetRelativeTimevalFromMonotonicTime
//   know what time it is                      ZemTimeGetCurrentWallTime
//   parse a timestamp to an instant           ZemTimeParse (ZemTimeText.h)
//   parse one and keep its fields and offset  ZemGregorianTimeConstructCStr, or with a length
//                                             ZemGregorianTimeParse (ZemTimeText.h)
//   get the instant of a record               ZemGregorianTimeGetTime
//   get year, month, day of an instant        ZemGregorianTimeConstructUTC, local:
//                                             ZemGregorianTimeConstruct, in a zone by name:
//                                             ZemGregorianTimeConstructInZone (ZemTimeZone.h)
//   print an instant as RFC 3339              ZemTimePrint (ZemTimeText.h)
//   print a record                            ZemGregorianTimeGetAsStringWithOffset
//   parse or print a duration                 ZemTimeParseDuration, ZemTimePrintDuration
//                                             (ZemTimeText.h); for people: ZemTimePrintCompact
//   compare two instants or subtract them     <, -: a ZemTime is an integer
//   talk to NTP                               ZemTimeConstructFromNtp, ZemTimeGetNtp
//   know whether times overlap                ZemTimeRangeIntersects, ZemTimeRangeIntersection
//   unite, subtract, search sets of times     ZemTimeRangeSetUnion and its kind
//                                             (ZemTimeRangeSet.h)
//   schedule across a change of the clock     ZemGregorianTimeResolve (ZemTimeZone.h)
//
// Records are plain values, owned by the caller and handled by functions that are named by the
// type followed by the operation. Failures are reported by the result alone: a null pointer, a
// ZemBool of 0, or ZEM_TIME_INFINITE. An operation that validates its input does so before it
// writes anything. No pointer is tested for null and no index against its array, unless the
// function says so. Nothing here takes a lock of its own (the C library does for local time),
// allocates (the range vector apart) or keeps state (the factor of the monotonic clock apart);
// functions on distinct records may run on any threads (vectors on one allocator: if that allows
// it).
//
// Seconds are POSIX seconds: every day has 86,400 of them. Where the process's zone counts leap
// seconds as well (TZ=right/Europe/Berlin and its kind), the platform's conversions count them and
// those to and from UTC here do not, so that ZemGregorianTimeGetTime of a local record is off by
// the leap seconds so far (27 s in 2024). A library built with ZEMTIME_LIBC_CALENDAR goes through
// the platform both ways and is right there.

#ifndef ZEM_OS_ZEMTIME_H
#define ZEM_OS_ZEMTIME_H

#include <sys/time.h>
#include <time.h>

#include "Zem/Utils/SysDep/ZemBaseTypes.h"
#include "Zem/Utils/ZemAllocator.h"

// The version of these headers.
#define ZEM_TIME_VERSION_MAJOR 1
#define ZEM_TIME_VERSION_MINOR 1
#define ZEM_TIME_VERSION_PATCH 0

#ifdef __cplusplus
extern "C" {
#endif

// ---------------------------------------------------------------------------------------------
// Time values
// ---------------------------------------------------------------------------------------------

// A signed count of nanoseconds. As an instant it counts from 1970-01-01 00:00:00 UTC (wall clock:
// 1677-09-21 00:12:43.145224192 to 2262-04-11 23:47:16.854775807) or from an origin of the host's
// (monotonic clock); as a duration it may be negative. Compare and subtract it as the integer it
// is.
typedef ZemInt64 ZemTime;

// The largest ZemTime. A deadline of this value never comes, and a calendar record that cannot be
// converted to a time value converts to it; elsewhere it is an ordinary value.
#define ZEM_TIME_INFINITE INT64_MAX

// Stores 0 at `obj_` and returns `obj_`.
ZEM_API ZemTime* ZemTimeConstruct(ZemTime* obj_);

// Does nothing: a ZemTime owns nothing.
ZEM_API void ZemTimeDestruct(ZemTime* obj_);

// Copies the value at `src_` to `dst_` and returns `dst_`.
ZEM_API ZemTime* ZemTimeConstructCopy(ZemTime* dst_, const ZemTime* src_);

// Copies the value at `src_` to `dst_` and returns `dst_`.
ZEM_API ZemTime* ZemTimeAssign(ZemTime* dst_, const ZemTime* src_);

// Exchanges the two values, which may be one object, and returns 1.
ZEM_API ZemBool ZemTimeSwap(ZemTime* a_, ZemTime* b_);

// 1 when the two values are equal, else 0.
ZEM_API ZemBool ZemTimeEqual(const ZemTime* a_, const ZemTime* b_);

// 1 when the value at `a_` is less than the value at `b_`, else 0.
ZEM_API ZemBool ZemTimeLess(const ZemTime* a_, const ZemTime* b_);

// `secs` seconds as a ZemTime. Exact for -9,223,372,036 to 9,223,372,036; outside, the product
// wraps modulo 2^64.
ZEM_API ZemTime ZemTimeSecs(ZemInt64 secs);

// `msecs` milliseconds as a ZemTime. Exact for -9,223,372,036,854 to 9,223,372,036,854; outside,
// the product wraps modulo 2^64.
ZEM_API ZemTime ZemTimeMsecs(ZemInt64 msecs);

// `usecs` microseconds as a ZemTime. Exact for -9,223,372,036,854,775 to 9,223,372,036,854,775;
// outside, the product wraps modulo 2^64.
ZEM_API ZemTime ZemTimeUsecs(ZemInt64 usecs);

// ---------------------------------------------------------------------------------------------
// Clocks and elapsed time
// ---------------------------------------------------------------------------------------------

// Nanoseconds a host tick: 0.0 from program load until ZemTimeInitialize succeeds. Written by
// ZemTimeInitialize alone; public because inlined clock readings multiply by it.
ZEM_API extern double ZemTimeMachMonotonicTimeClockInterval_;

// Sets up the monotonic clock from the host's timebase. Call it once at start-up, before any
// thread reads that clock; calling it again does the same again. Returns 1, or 0 when the host
// reports no timebase, and then the factor stays as it was. Nothing else needs initialisation.
ZEM_API ZemBool ZemTimeInitialize(void);

// Nanoseconds since 1970-01-01 00:00:00 UTC, at microsecond resolution; follows the system's wall
// clock when that is set or stepped. 0 when the host's clock fails and stores nothing.
ZEM_API ZemTime ZemTimeGetCurrentWallTime(void);

// Nanoseconds since an origin of the host's; never decreases, never negative. 0 until
// ZemTimeInitialize has succeeded. Exact up to 2^53 ticks of a nanosecond each; otherwise ticks,
// factor and product are rounded as doubles are, and the result is cut. ZEM_TIME_INFINITE when the
// count does not fit (after 292 years of ticks, or when the host's timebase has a denominator of
// 0).
ZEM_API ZemTime ZemTimeGetCurrentMonotonicTime(void);

// What the monotonic clock reads at a count of `ticks`: internal to the clock functions.
ZEM_API ZemTime ZemTimeFromTicks_(ZemUint64 ticks);

// Nanoseconds from `t` to `curTime`, two readings of one clock. 0 when `t` is the later one;
// ZEM_TIME_INFINITE when the difference does not fit.
ZEM_API ZemTime ZemTimeGetElapsedRelativeTo(ZemTime curTime, ZemTime t);

// The same in whole milliseconds, rounded down, modulo 2^32: wraps to 0 after about 49.7 days.
ZEM_API ZemUint ZemTimeGetElapsedMsecRelativeTo(ZemTime curTime, ZemTime t);

// Nanoseconds from the monotonic reading `t` to now; 0 when `t` lies in the future;
// ZEM_TIME_INFINITE when the difference does not fit.
ZEM_API ZemTime ZemTimeGetElapsed(ZemTime t);

// The same in whole milliseconds, rounded down, modulo 2^32: wraps to 0 after about 49.7 days.
ZEM_API ZemUint ZemTimeGetElapsedMsec(ZemTime t);

// Turns the monotonic deadline `timeout` into the time left until it, for select and its kind:
// fills `tv` with the microseconds left, rounded up (tv_usec 0 to 999,999), and returns `tv`. A
// deadline that has passed, or a `timeout` of 0, gives zeros. Returns null, with `tv` untouched,
// when no time-out can be expressed: `timeout` is ZEM_TIME_INFINITE, or 2,147,483,647 seconds or
// more away once rounded. (select takes a null pointer as "wait for ever".)
ZEM_API struct timeval* ZemTimeGetRelativeTimevalFromMonotonicTime(ZemTime timeout,
                                                                   struct timeval* tv);

// ---------------------------------------------------------------------------------------------
// NTP timestamps (RFC 5905): seconds since 1900 in the high 32 bits, fraction in the low 32 bits,
// as an integer in host byte order
// ---------------------------------------------------------------------------------------------

// Stores the wall-clock time that `ntp` names at `t`, rounded down to the nanosecond, and returns
// `t`. Every timestamp is read as era 0: 1900-01-01 to 2036-02-07 06:28:15.999999999 UTC.
ZEM_API ZemTime* ZemTimeConstructFromNtp(ZemTime* t, ZemUint64 ntp);

// The NTP timestamp of the wall-clock time `t`, rounded down to 2^-32 s. Times outside era 0 wrap
// into it, as NTP timestamps do.
ZEM_API ZemUint64 ZemTimeGetNtp(ZemTime t);

// ---------------------------------------------------------------------------------------------
// Calendar time
// ---------------------------------------------------------------------------------------------

// A date and time of day of the proleptic Gregorian calendar, with nanoseconds and a UTC offset.
// A plain value: copy it bytewise. The text at tm.tm_zone belongs to the platform in records of
// local time. In UTC records it is a constant of this library, there as long as the program or the
// shared object that the library is linked into; on Linux the shared library itself stays loaded
// after dlclose.
typedef struct ZemGregorianTime {
    struct tm tm;       // tm_gmtoff: the UTC offset in seconds east of UTC
    ZemInt64 nanosecs;  // added to the second that the fields name: 0 to 999,999,999, or negative
                        // (down to -999,999,999) in records built from times before 1970
} ZemGregorianTime;

// Fills `gt` with the local calendar time of the wall-clock time `systemTime`, the UTC offset
// included, and returns `gt`; null when localtime_r fails (the content of `gt` is then undefined).
// Before 1970 the fields and the offset are those of the second nearer to 1970, and the nanoseconds
// are negative: within the last second before a change of the offset, the record has the offset
// that follows it. ZemGregorianTimeGetTime gives the instant back all the same.
//
// The zone is the process's as localtime_r has it: glibc reads TZ at the first use and whenever
// tzset or mktime is called, so a program that changes TZ calls tzset.
ZEM_API ZemGregorianTime* ZemGregorianTimeConstruct(ZemGregorianTime* gt, ZemTime systemTime);

// The same in UTC, with an offset of 0. Takes no lock (but what the C library's gmtime_r takes,
// built with ZEMTIME_LIBC_CALENDAR) and cannot fail.
ZEM_API ZemGregorianTime* ZemGregorianTimeConstructUTC(ZemGregorianTime* gt, ZemTime systemTime);

// Fills `gt` from separate fields, with a UTC offset of 0, and returns `gt`; null, with `gt`
// untouched, when ZemGregorianTimeValidateFields_ refuses them. Any year goes in and comes back.
// tm_wday, tm_yday and tm_isdst are 0 and tm_zone is null.
ZEM_API ZemGregorianTime* ZemGregorianTimeConstructFields(ZemGregorianTime* gt, ZemInt year,
                                                          ZemInt month, ZemInt monthDay,
                                                          ZemInt hour, ZemInt minute, ZemInt second,
                                                          ZemTime nanosecond);

// 1 when the fields name a date and time: month 1 to 12, a day that the month has in that year
// (Gregorian rule for every year, 0 and negative ones included), hour 0 to 23, minute 0 to 59,
// second 0 to 60 (60 at any time of day), nanosecond 0 to 999,999,999. Else 0.
ZEM_API ZemBool ZemGregorianTimeValidateFields_(ZemInt year, ZemInt month, ZemInt monthDay,
                                                ZemInt hour, ZemInt minute, ZemInt second,
                                                ZemTime nanosecond);

// Fills `gt` from a text such as 2024-03-01T12:30:45.250+01:00 or 2024-03-01 12:30:45.250 +01:00
// and returns `gt`; null, with `gt` untouched, when the text is anything else:
//
//   YYYY-MM-DD, then T or one space, then hh:mm:ss
//   optionally . and any number of digits (those after the ninth are ignored, not rounded)
//   Z, or an optional space and a sign and one of hh, hh:mm, hh:mm:ss, hhmm, hhmmss
//
// The fields are kept as written, with the offset beside them; ZemGregorianTimeGetTime gives the
// instant. A second of 60 is accepted; an hour of 24 is not. An offset has no bound. Numbers are
// read as strtoul reads them: what it skips as white space (any number of characters, tabs and
// newlines among them) and one sign may stand for the leading digits of a field, whose width they
// count towards. `s` is a NUL-terminated text; it is not kept.
ZEM_API ZemGregorianTime* ZemGregorianTimeConstructCStr(ZemGregorianTime* gt, const char* s);

// Copies the whole record at `src` to `dst` and returns `dst`.
ZEM_API ZemGregorianTime* ZemGregorianTimeConstructCopy(ZemGregorianTime* dst,
                                                        const ZemGregorianTime* src);

// Copies the whole record at `src` to `dst` and returns `dst`.
ZEM_API ZemGregorianTime* ZemGregorianTimeAssign(ZemGregorianTime* dst,
                                                 const ZemGregorianTime* src);

// Does nothing: a record owns nothing.
ZEM_API void ZemGregorianTimeDestruct(ZemGregorianTime* gt);

// Exchanges the two records, which may be one, and returns 1.
ZEM_API ZemBool ZemGregorianTimeSwap(ZemGregorianTime* a, ZemGregorianTime* b);

// 1 when year, month, day, hour, minute, second, nanoseconds and offset are all equal, else 0. Two
// records of one instant at different offsets are not equal.
ZEM_API ZemBool ZemGregorianTimeEqual(const ZemGregorianTime* a, const ZemGregorianTime* b);

// 1 when `a` comes before `b` in the order of those eight values, the year first and the offset
// last, else 0. This orders what a wall calendar shows, not instants: compare
// ZemGregorianTimeGetTime for those. Years are compared as they are stored, less 1900: those below
// -2147481748 wrap and come last.
ZEM_API ZemBool ZemGregorianTimeLess(const ZemGregorianTime* a, const ZemGregorianTime* b);

// The calendar year; negative ones and 0 count backwards without a gap (0 is 1 BC).
ZEM_API ZemInt ZemGregorianTimeGetYear(const ZemGregorianTime* gt);

// The month, 1 to 12.
ZEM_API ZemInt ZemGregorianTimeGetMonth(const ZemGregorianTime* gt);

// The day of the month, 1 to 31.
ZEM_API ZemInt ZemGregorianTimeGetMonthDay(const ZemGregorianTime* gt);

// The hour, 0 to 23.
ZEM_API ZemInt ZemGregorianTimeGetHour(const ZemGregorianTime* gt);

// The minute, 0 to 59.
ZEM_API ZemInt ZemGregorianTimeGetMinute(const ZemGregorianTime* gt);

// The second, 0 to 60.
ZEM_API ZemInt ZemGregorianTimeGetSecond(const ZemGregorianTime* gt);

// The nanoseconds to add to the second: see the record.
ZEM_API ZemTime ZemGregorianTimeGetNanosecond(const ZemGregorianTime* gt);

// The UTC offset in seconds east of UTC: tm_gmtoff cut to 32 bits.
ZEM_API ZemInt ZemGregorianTimeGetUTCOffset(const ZemGregorianTime* gt);

// Sets the UTC offset, in seconds east of UTC, any value, and returns 1. No other field changes, so
// the instant that ZemGregorianTimeGetTime gives moves the other way.
ZEM_API ZemBool ZemGregorianTimeSetUTCOffset(ZemGregorianTime* gt, ZemInt offset);

// The wall-clock time of the fields, read as local time of the process's zone; the record's own
// offset plays no part. In an hour that repeats, mktime chooses, and in one that is skipped it
// moves the time on or back by the gap; glibc's choice depends on its earlier calls in the process,
// so one record may give either of two instants. ZEM_TIME_INFINITE when mktime fails or the result
// does not fit a ZemTime; also for 23:59:59 UTC on 1969-12-31, which mktime does not tell from a
// failure. The record is not changed. mktime reads TZ anew at every call.
ZEM_API ZemTime ZemGregorianTimeGetLocalTime(const ZemGregorianTime* gt);

// The wall-clock time of the fields, read as UTC; the record's own offset plays no part, so that
// this is not the instant that a text with an offset names: ZemGregorianTimeGetTime is. Fields
// outside their usual ranges carry over, as with timegm. ZEM_TIME_INFINITE when the result does
// not fit a ZemTime; also for 23:59:59 on 1969-12-31, whose seconds are those of a failure.
ZEM_API ZemTime ZemGregorianTimeGetUTCTime(const ZemGregorianTime* gt);

// The wall-clock time of the fields, read at the record's own UTC offset: the instant that the
// record denotes. ZEM_TIME_INFINITE when that does not fit a ZemTime; also for fields that name
// 23:59:59 on 1969-12-31, whatever the offset.
ZEM_API ZemTime ZemGregorianTimeGetTime(const ZemGregorianTime* gt);

// `secs` seconds and `nanosecs` nanoseconds (any values) as a ZemTime; ZEM_TIME_INFINITE when the
// sum does not fit. Internal to the conversions above.
ZEM_API ZemTime ZemTimeFromSecsAndNanosecs_(ZemInt64 secs, ZemInt64 nanosecs);

// Prints the record's fields, as in 2024-03-01 12:30:45.250, into `buf` of `buflen` bytes and
// returns `buf`; null, which is nothing for %s, when the text does not fit with its NUL, and `buf`
// then holds its beginning (nothing is written when `buflen` is 0). 24 bytes are enough for years 0
// to 9999. Milliseconds are cut, not rounded. Negative nanoseconds borrow a second, so the text is
// the instant rounded down: 1 ns before 1970 prints as 1969-12-31 23:59:59.999. Does not depend on
// the locale.
ZEM_API char* ZemGregorianTimeGetAsString(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen);
#define ZEM_GREGORIAN_TIME_STRING_SIZE 24

// The same, followed by the UTC offset: 2024-03-01 12:30:45.250 +01:00, or with seconds where the
// offset has them: +05:30:15. 31 and 34 bytes are enough for years 0 to 9999 and offsets under 100
// hours. ZemGregorianTimeConstructCStr reads the text of valid fields back, cut to milliseconds,
// for years -999 to 9999 and offsets under 100 hours.
ZEM_API char* ZemGregorianTimeGetAsStringWithOffset(const ZemGregorianTime* gt, char* buf,
                                                    ZemSizeT buflen);
#define ZEM_GREGORIAN_TIME_STRING_WITH_OFFSET_SIZE 34

// ---------------------------------------------------------------------------------------------
// Duration text
// ---------------------------------------------------------------------------------------------

// Prints the duration `t`, any value, for people: 999 ns, 1.23 µs, 12.3 ms, 1.00 s, 59 m 59 s,
// 2 h 5 m, 99 d 23 h, 106751 d, with a minus sign in front where it is negative. Digits are cut,
// not rounded. Writes at most `len` bytes into `buf`, the NUL included (nothing when `len` is 0),
// cutting a text that does not fit; 16 bytes are always enough. The text is ASCII but for the unit
// µs, which is UTF-8 (C2 B5 73) and may be cut in its middle. Returns `buf`.
ZEM_API const char* ZemTimePrintCompact(ZemTime t, char* buf, ZemSizeT len);
#define ZEM_TIME_COMPACT_SIZE 16

// ---------------------------------------------------------------------------------------------
// Time ranges
// ---------------------------------------------------------------------------------------------

// A closed range of instants. `end` is its LOWER bound and `begin` its UPPER bound:
//
//     past  -----------|==================|----------->  future
//                     end               begin
//                   (lower)            (upper)
//
// A range holds every t with end <= t <= begin; it is valid when begin >= end, and holds one
// instant when they are equal. Any pair of values can be stored; no function refuses one.
typedef struct ZemTimeRange {
    ZemTime begin;
    ZemTime end;
} ZemTimeRange;

// Sets the upper bound `begin` and the lower bound `end`, in any order of size, and returns `x`.
// The LATER one comes first: from 9 to 17 o'clock is ZemTimeRangeConstruct(&x, seventeen, nine).
ZEM_API ZemTimeRange* ZemTimeRangeConstruct(ZemTimeRange* x, ZemTime begin, ZemTime end);

// Does nothing: a range owns nothing.
ZEM_API void ZemTimeRangeDestruct(ZemTimeRange* x);

// Copies `y` to `x` and returns `x`.
ZEM_API ZemTimeRange* ZemTimeRangeConstructCopy(ZemTimeRange* x, const ZemTimeRange* y);

// Copies `y` to `x` and returns `x`.
ZEM_API ZemTimeRange* ZemTimeRangeAssign(ZemTimeRange* x, const ZemTimeRange* y);

// Exchanges the two ranges, which may be one.
ZEM_API void ZemTimeRangeSwap(ZemTimeRange* x, ZemTimeRange* y);

// 1 when both bounds are equal, else 0; invalid ranges are compared like any other.
ZEM_API ZemBool ZemTimeRangeEqual(const ZemTimeRange* x, const ZemTimeRange* y);

// 1 when `x` comes before `y`, else 0: by lower bound (`end`), then by upper bound (`begin`). A
// strict total order.
ZEM_API ZemBool ZemTimeRangeLess(const ZemTimeRange* x, const ZemTimeRange* y);

// The upper bound.
ZEM_API ZemTime ZemTimeRangeBegin(const ZemTimeRange* x);

// The lower bound.
ZEM_API ZemTime ZemTimeRangeEnd(const ZemTimeRange* x);

// 1 when the range holds at least one instant (begin >= end), else 0.
ZEM_API ZemBool ZemTimeRangeIsValid(const ZemTimeRange* x);

// 1 when the intersection of the two is valid, else 0; one shared instant is enough. Does not ask
// whether `x` and `y` themselves are valid.
ZEM_API ZemBool ZemTimeRangeIntersects(const ZemTimeRange* x, const ZemTimeRange* y);

// 1 when `x` contains `y` (x.begin >= y.begin and x.end <= y.end), else 0; every range contains
// itself.
ZEM_API ZemBool ZemTimeRangeSubsumes(const ZemTimeRange* x, const ZemTimeRange* y);

// Writes the instants that both ranges hold into `result`, which may be `x` or `y`. When there are
// none, the result is an invalid range.
ZEM_API void ZemTimeRangeIntersection(const ZemTimeRange* x, const ZemTimeRange* y,
                                      ZemTimeRange* result);

// Writes the smallest range that contains both into `result`, which may be `x` or `y`; it covers
// the gap between ranges that do not touch.
ZEM_API void ZemTimeRangeUnion(const ZemTimeRange* x, const ZemTimeRange* y, ZemTimeRange* result);

// ---------------------------------------------------------------------------------------------
// Arrays of time ranges
// ---------------------------------------------------------------------------------------------

// A growable array of ranges in one block of storage, which it obtains from and returns to its
// allocator, always with the block's exact size in bytes. The caller owns the record and the
// allocator; the allocator must outlive the vector.
//
// Limits that are the caller's to keep and are not tested: an index lies below the size; an
// iterator belongs to the vector; Erase needs an element at its position; `first` does not lie
// behind `last`; a count or a size is at most MaxSize; Front, Back and PopBack need an element; a
// value or source range that is added must not lie in the vector's own storage.
typedef struct ZemVector_ZemTimeRange {
    ZemAllocator* allocator;
    ZemTimeRange* begin;   // the first slot; null when the vector holds no storage
    ZemTimeRange* end;     // one past the last element
    ZemTimeRange* endBuf;  // one past the last slot
} ZemVector_ZemTimeRange;

typedef ZemSizeT ZemVector_ZemTimeRangeSizeType;
typedef ZemDistanceT ZemVector_ZemTimeRangeDifferenceType;

// Iterators are plain pointers. A forward iterator designates the element it points to, a reverse
// iterator the one before. They hold until the vector gets another block or their element moves.
// Null is the exceptional iterator, which Insert returns when it fails.
typedef ZemTimeRange* ZemVector_ZemTimeRangeIterator;
typedef const ZemTimeRange* ZemVector_ZemTimeRangeConstIterator;
typedef ZemTimeRange* ZemVector_ZemTimeRangeReverseIterator;
typedef const ZemTimeRange* ZemVector_ZemTimeRangeConstReverseIterator;

// Distances between iterators, in elements.
typedef ZemDistanceT ZemVector_ZemTimeRangeIteratorDifferenceType;
typedef ZemDistanceT ZemVector_ZemTimeRangeConstIteratorDifferenceType;
typedef ZemDistanceT ZemVector_ZemTimeRangeReverseIteratorDifferenceType;
typedef ZemDistanceT ZemVector_ZemTimeRangeConstReverseIteratorDifferenceType;

// Makes `x` an empty vector on `a`, without storage, and returns `x`.
ZEM_API ZemVector_ZemTimeRange* ZemVector_ZemTimeRangeConstructDefault(ZemVector_ZemTimeRange* x,
                                                                       ZemAllocator* a);

// Makes `x` a vector of `n` copies of `*t` on `a`, capacity exactly `n`, and returns `x`; null
// when the allocator fails, and `x` is then no vector.
ZEM_API ZemVector_ZemTimeRange* ZemVector_ZemTimeRangeConstructN(ZemVector_ZemTimeRange* x,
                                                                 ZemVector_ZemTimeRangeSizeType n,
                                                                 const ZemTimeRange* t,
                                                                 ZemAllocator* a);

// The same with copies of the elements from `first` up to `last`.
ZEM_API ZemVector_ZemTimeRange* ZemVector_ZemTimeRangeConstructRange(
    ZemVector_ZemTimeRange* x, ZemVector_ZemTimeRangeConstIterator first,
    ZemVector_ZemTimeRangeConstIterator last, ZemAllocator* a);

// The same with copies of the elements of `y`, on the allocator of `y`.
ZEM_API ZemVector_ZemTimeRange* ZemVector_ZemTimeRangeConstructCopy(
    ZemVector_ZemTimeRange* x, const ZemVector_ZemTimeRange* y);

// Hands the block, if any, back to the allocator; `x` is then no vector.
ZEM_API void ZemVector_ZemTimeRangeDestruct(ZemVector_ZemTimeRange* x);

// Makes `x`, on its own allocator, a copy of `y` (which may be `x`) and returns `x`. Allocates
// only when the capacity is too small, exactly what is needed, after handing the old block back;
// when the allocator then fails, returns null and leaves `x` empty without storage.
ZEM_API ZemVector_ZemTimeRange* ZemVector_ZemTimeRangeAssign(ZemVector_ZemTimeRange* x,
                                                             const ZemVector_ZemTimeRange* y);

// Exchanges the contents and returns 1. On one allocator the records change places; on two, the
// larger contents move to a new block of exactly their size and the smaller into the freed room,
// and 0 is returned, with nothing changed, when there is no memory for it. Two empty vectors keep
// what they have.
ZEM_API ZemBool ZemVector_ZemTimeRangeSwap(ZemVector_ZemTimeRange* x, ZemVector_ZemTimeRange* y);

// 1 when both hold equal elements in the same order, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeEqual(const ZemVector_ZemTimeRange* x,
                                            const ZemVector_ZemTimeRange* y);

// The vector's allocator.
ZEM_API ZemAllocator* ZemVector_ZemTimeRangeGetAllocator(const ZemVector_ZemTimeRange* x);

// 1 when the vector holds no element, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeEmpty(const ZemVector_ZemTimeRange* x);

// The number of elements.
ZEM_API ZemVector_ZemTimeRangeSizeType ZemVector_ZemTimeRangeSize(const ZemVector_ZemTimeRange* x);

// The largest size that a vector may have: 268,435,455, for every vector.
ZEM_API ZemVector_ZemTimeRangeSizeType
ZemVector_ZemTimeRangeMaxSize(const ZemVector_ZemTimeRange* x);

// The number of slots in the block; 0 without storage.
ZEM_API ZemVector_ZemTimeRangeSizeType
ZemVector_ZemTimeRangeCapacity(const ZemVector_ZemTimeRange* x);

// The first element's position; null without storage, as for the seven that follow.
ZEM_API ZemVector_ZemTimeRangeIterator ZemVector_ZemTimeRangeBegin(ZemVector_ZemTimeRange* x);

// The first element's position.
ZEM_API ZemVector_ZemTimeRangeConstIterator
ZemVector_ZemTimeRangeBeginConst(const ZemVector_ZemTimeRange* x);

// The position past the last element.
ZEM_API ZemVector_ZemTimeRangeIterator ZemVector_ZemTimeRangeEnd(ZemVector_ZemTimeRange* x);

// The position past the last element.
ZEM_API ZemVector_ZemTimeRangeConstIterator
ZemVector_ZemTimeRangeEndConst(const ZemVector_ZemTimeRange* x);

// The position that designates the last element in reverse.
ZEM_API ZemVector_ZemTimeRangeReverseIterator
ZemVector_ZemTimeRangeRBegin(ZemVector_ZemTimeRange* x);

// The position that designates the last element in reverse.
ZEM_API ZemVector_ZemTimeRangeConstReverseIterator
ZemVector_ZemTimeRangeRBeginConst(const ZemVector_ZemTimeRange* x);

// The position past the first element in reverse.
ZEM_API ZemVector_ZemTimeRangeReverseIterator ZemVector_ZemTimeRangeREnd(ZemVector_ZemTimeRange* x);

// The position past the first element in reverse.
ZEM_API ZemVector_ZemTimeRangeConstReverseIterator
ZemVector_ZemTimeRangeREndConst(const ZemVector_ZemTimeRange* x);

// The element at index `n`, counted from 0.
ZEM_API ZemTimeRange* ZemVector_ZemTimeRangeAt(ZemVector_ZemTimeRange* x,
                                               ZemVector_ZemTimeRangeSizeType n);

// The element at index `n`, counted from 0.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeAtConst(const ZemVector_ZemTimeRange* x,
                                                          ZemVector_ZemTimeRangeSizeType n);

// The first element.
ZEM_API ZemTimeRange* ZemVector_ZemTimeRangeFront(ZemVector_ZemTimeRange* x);

// The first element.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeFrontConst(const ZemVector_ZemTimeRange* x);

// The last element.
ZEM_API ZemTimeRange* ZemVector_ZemTimeRangeBack(ZemVector_ZemTimeRange* x);

// The last element.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeBackConst(const ZemVector_ZemTimeRange* x);

// Appends a copy of `*t` and returns 1. A full vector grows first, to twice its size, or to 2 from
// no storage; 0, with `x` unchanged, when there is no memory for it.
ZEM_API ZemBool ZemVector_ZemTimeRangePushBack(ZemVector_ZemTimeRange* x, const ZemTimeRange* t);

// Makes room in a full vector as PushBack does, and returns 1; 0, with `x` unchanged, when there is
// no memory for it. Internal to PushBack.
ZEM_API ZemBool ZemVector_ZemTimeRangeGrow_(ZemVector_ZemTimeRange* x);

// Removes the last element.
ZEM_API void ZemVector_ZemTimeRangePopBack(ZemVector_ZemTimeRange* x);

// Makes the capacity at least `capacity` (exactly that when it grows; it never shrinks) and
// returns 1; 0, with `x` unchanged, when there is no memory for it.
ZEM_API ZemBool ZemVector_ZemTimeRangeReserve(ZemVector_ZemTimeRange* x,
                                              ZemVector_ZemTimeRangeSizeType capacity);

// Makes the size `n`, new slots filled with copies of `*t`, and returns 1. To grow it reserves the
// old size plus `n`; 0, with `x` unchanged, when there is no memory for it.
ZEM_API ZemBool ZemVector_ZemTimeRangeResize(ZemVector_ZemTimeRange* x,
                                             ZemVector_ZemTimeRangeSizeType n,
                                             const ZemTimeRange* t);

// Removes all elements and keeps the storage.
ZEM_API void ZemVector_ZemTimeRangeClear(ZemVector_ZemTimeRange* x);

// Diagnostic hook; does nothing for this element type.
ZEM_API void ZemVector_ZemTimeRangeDump(const ZemVector_ZemTimeRange* x, const char* name,
                                        ZemUint32 tabStop);

// Inserts a copy of `*t` before `pos` and returns its position. A full vector grows to twice its
// capacity, or to 2 from no storage; the exceptional iterator, with `x` unchanged, when there is
// no memory for it.
ZEM_API ZemVector_ZemTimeRangeIterator ZemVector_ZemTimeRangeInsert(
    ZemVector_ZemTimeRange* x, ZemVector_ZemTimeRangeIterator pos, const ZemTimeRange* t);

// Inserts `n` copies of `*t` before `pos` and returns 1. When they do not fit, grows to the larger
// of twice the capacity (2 * `n` from no storage) and the new size; 0, with `x` unchanged, when
// there is no memory for it.
ZEM_API ZemBool ZemVector_ZemTimeRangeInsertN(ZemVector_ZemTimeRange* x,
                                              ZemVector_ZemTimeRangeIterator pos,
                                              ZemVector_ZemTimeRangeSizeType n,
                                              const ZemTimeRange* t);

// The same with copies of the elements from `first` up to `last`.
ZEM_API ZemBool ZemVector_ZemTimeRangeInsertRange(ZemVector_ZemTimeRange* x,
                                                  ZemVector_ZemTimeRangeIterator pos,
                                                  ZemVector_ZemTimeRangeConstIterator first,
                                                  ZemVector_ZemTimeRangeConstIterator last);

// Removes the element at `pos` and returns `pos`, which then designates the one that followed.
ZEM_API ZemVector_ZemTimeRangeIterator
ZemVector_ZemTimeRangeErase(ZemVector_ZemTimeRange* x, ZemVector_ZemTimeRangeIterator pos);

// Removes the elements from `first` up to `last` and returns `first`, which then designates the
// one that followed.
ZEM_API ZemVector_ZemTimeRangeIterator
ZemVector_ZemTimeRangeEraseRange(ZemVector_ZemTimeRange* x, ZemVector_ZemTimeRangeIterator first,
                                 ZemVector_ZemTimeRangeIterator last);

// Forward iterators: none of these tests for null, bounds or membership.

// Does nothing.
ZEM_API void ZemVector_ZemTimeRangeIteratorDestruct(ZemVector_ZemTimeRangeIterator* x);

// Gives `x` the position of `y` and returns `x`.
ZEM_API ZemVector_ZemTimeRangeIterator* ZemVector_ZemTimeRangeIteratorConstructCopy(
    ZemVector_ZemTimeRangeIterator* x, const ZemVector_ZemTimeRangeIterator* y);

// Gives `x` the position of `y` and returns `x`.
ZEM_API ZemVector_ZemTimeRangeIterator* ZemVector_ZemTimeRangeIteratorAssign(
    ZemVector_ZemTimeRangeIterator* x, const ZemVector_ZemTimeRangeIterator* y);

// Exchanges the positions and returns 1.
ZEM_API ZemBool ZemVector_ZemTimeRangeIteratorSwap(ZemVector_ZemTimeRangeIterator* x,
                                                   ZemVector_ZemTimeRangeIterator* y);

// 1 when both hold the same position, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeIteratorEqual(const ZemVector_ZemTimeRangeIterator* x,
                                                    const ZemVector_ZemTimeRangeIterator* y);

// The element that `x` designates.
ZEM_API ZemTimeRange* ZemVector_ZemTimeRangeIteratorContentOf(ZemVector_ZemTimeRangeIterator* x);

// The element that `x` designates.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeIteratorContentOfConst(
    const ZemVector_ZemTimeRangeIterator* x);

// Makes `x` the exceptional iterator and returns `x`.
ZEM_API ZemVector_ZemTimeRangeIterator* ZemVector_ZemTimeRangeIteratorConstructExceptional(
    ZemVector_ZemTimeRangeIterator* x);

// 1 when `x` is the exceptional iterator, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeIteratorIsExceptional(ZemVector_ZemTimeRangeIterator x);

// Moves `x` to the next element and returns `x`.
ZEM_API ZemVector_ZemTimeRangeIterator* ZemVector_ZemTimeRangeIteratorIncrement(
    ZemVector_ZemTimeRangeIterator* x);

// Moves `x` to the element before and returns `x`.
ZEM_API ZemVector_ZemTimeRangeIterator* ZemVector_ZemTimeRangeIteratorDecrement(
    ZemVector_ZemTimeRangeIterator* x);

// 1 when `x` comes before `y` in the vector, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeIteratorLess(const ZemVector_ZemTimeRangeIterator* x,
                                                   const ZemVector_ZemTimeRangeIterator* y);

// The element `n` steps on from the one that `x` designates.
ZEM_API ZemTimeRange* ZemVector_ZemTimeRangeIteratorAt(
    ZemVector_ZemTimeRangeIterator* x, ZemVector_ZemTimeRangeIteratorDifferenceType n);

// Moves `x` on by `n` elements and returns `x`.
ZEM_API ZemVector_ZemTimeRangeIterator* ZemVector_ZemTimeRangeIteratorIncrementN(
    ZemVector_ZemTimeRangeIterator* x, ZemVector_ZemTimeRangeIteratorDifferenceType n);

// Moves `x` back by `n` elements and returns `x`.
ZEM_API ZemVector_ZemTimeRangeIterator* ZemVector_ZemTimeRangeIteratorDecrementN(
    ZemVector_ZemTimeRangeIterator* x, ZemVector_ZemTimeRangeIteratorDifferenceType n);

// The iterator `n` elements on from `x`.
ZEM_API ZemVector_ZemTimeRangeIterator ZemVector_ZemTimeRangeIteratorAdd(
    ZemVector_ZemTimeRangeIterator* x, ZemVector_ZemTimeRangeIteratorDifferenceType n);

// The number of steps from `y` to `x`.
ZEM_API ZemVector_ZemTimeRangeIteratorDifferenceType ZemVector_ZemTimeRangeIteratorSubtract(
    ZemVector_ZemTimeRangeIterator* x, ZemVector_ZemTimeRangeIterator* y);

// Forward iterators over constant elements: none of these tests for null, bounds or membership.

// Does nothing.
ZEM_API void ZemVector_ZemTimeRangeConstIteratorDestruct(ZemVector_ZemTimeRangeConstIterator* x);

// Gives `x` the position of `y` and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstIterator* ZemVector_ZemTimeRangeConstIteratorConstructCopy(
    ZemVector_ZemTimeRangeConstIterator* x, const ZemVector_ZemTimeRangeConstIterator* y);

// Gives `x` the position of `y` and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstIterator* ZemVector_ZemTimeRangeConstIteratorAssign(
    ZemVector_ZemTimeRangeConstIterator* x, const ZemVector_ZemTimeRangeConstIterator* y);

// Exchanges the positions and returns 1.
ZEM_API ZemBool ZemVector_ZemTimeRangeConstIteratorSwap(ZemVector_ZemTimeRangeConstIterator* x,
                                                        ZemVector_ZemTimeRangeConstIterator* y);

// 1 when both hold the same position, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeConstIteratorEqual(
    const ZemVector_ZemTimeRangeConstIterator* x, const ZemVector_ZemTimeRangeConstIterator* y);

// The element that `x` designates.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeConstIteratorContentOf(
    ZemVector_ZemTimeRangeConstIterator* x);

// The element that `x` designates.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeConstIteratorContentOfConst(
    const ZemVector_ZemTimeRangeConstIterator* x);

// Makes `x` the exceptional iterator and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstIterator*
ZemVector_ZemTimeRangeConstIteratorConstructExceptional(ZemVector_ZemTimeRangeConstIterator* x);

// 1 when `x` is the exceptional iterator, else 0.
ZEM_API ZemBool
ZemVector_ZemTimeRangeConstIteratorIsExceptional(ZemVector_ZemTimeRangeConstIterator x);

// Moves `x` to the next element and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstIterator* ZemVector_ZemTimeRangeConstIteratorIncrement(
    ZemVector_ZemTimeRangeConstIterator* x);

// Moves `x` to the element before and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstIterator* ZemVector_ZemTimeRangeConstIteratorDecrement(
    ZemVector_ZemTimeRangeConstIterator* x);

// 1 when `x` comes before `y` in the vector, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeConstIteratorLess(
    const ZemVector_ZemTimeRangeConstIterator* x, const ZemVector_ZemTimeRangeConstIterator* y);

// The element `n` steps on from the one that `x` designates.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeConstIteratorAt(
    ZemVector_ZemTimeRangeConstIterator* x, ZemVector_ZemTimeRangeConstIteratorDifferenceType n);

// Moves `x` on by `n` elements and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstIterator* ZemVector_ZemTimeRangeConstIteratorIncrementN(
    ZemVector_ZemTimeRangeConstIterator* x, ZemVector_ZemTimeRangeConstIteratorDifferenceType n);

// Moves `x` back by `n` elements and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstIterator* ZemVector_ZemTimeRangeConstIteratorDecrementN(
    ZemVector_ZemTimeRangeConstIterator* x, ZemVector_ZemTimeRangeConstIteratorDifferenceType n);

// The iterator `n` elements on from `x`.
ZEM_API ZemVector_ZemTimeRangeConstIterator ZemVector_ZemTimeRangeConstIteratorAdd(
    ZemVector_ZemTimeRangeConstIterator* x, ZemVector_ZemTimeRangeConstIteratorDifferenceType n);

// The number of steps from `y` to `x`.
ZEM_API ZemVector_ZemTimeRangeConstIteratorDifferenceType
ZemVector_ZemTimeRangeConstIteratorSubtract(ZemVector_ZemTimeRangeConstIterator* x,
                                            ZemVector_ZemTimeRangeConstIterator* y);

// Reverse iterators: none of these tests for null, bounds or membership.

// Does nothing.
ZEM_API void ZemVector_ZemTimeRangeReverseIteratorDestruct(
    ZemVector_ZemTimeRangeReverseIterator* x);

// Gives `x` the position of `y` and returns `x`.
ZEM_API ZemVector_ZemTimeRangeReverseIterator* ZemVector_ZemTimeRangeReverseIteratorConstructCopy(
    ZemVector_ZemTimeRangeReverseIterator* x, const ZemVector_ZemTimeRangeReverseIterator* y);

// Gives `x` the position of `y` and returns `x`.
ZEM_API ZemVector_ZemTimeRangeReverseIterator* ZemVector_ZemTimeRangeReverseIteratorAssign(
    ZemVector_ZemTimeRangeReverseIterator* x, const ZemVector_ZemTimeRangeReverseIterator* y);

// Exchanges the positions and returns 1.
ZEM_API ZemBool ZemVector_ZemTimeRangeReverseIteratorSwap(ZemVector_ZemTimeRangeReverseIterator* x,
                                                          ZemVector_ZemTimeRangeReverseIterator* y);

// 1 when both hold the same position, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeReverseIteratorEqual(
    const ZemVector_ZemTimeRangeReverseIterator* x, const ZemVector_ZemTimeRangeReverseIterator* y);

// The element that `x` designates.
ZEM_API ZemTimeRange* ZemVector_ZemTimeRangeReverseIteratorContentOf(
    ZemVector_ZemTimeRangeReverseIterator* x);

// The element that `x` designates.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeReverseIteratorContentOfConst(
    const ZemVector_ZemTimeRangeReverseIterator* x);

// Makes `x` the exceptional iterator and returns `x`.
ZEM_API ZemVector_ZemTimeRangeReverseIterator*
ZemVector_ZemTimeRangeReverseIteratorConstructExceptional(ZemVector_ZemTimeRangeReverseIterator* x);

// 1 when `x` is the exceptional iterator, else 0.
ZEM_API ZemBool
ZemVector_ZemTimeRangeReverseIteratorIsExceptional(ZemVector_ZemTimeRangeReverseIterator x);

// Moves `x` to the next element toward the front and returns `x`.
ZEM_API ZemVector_ZemTimeRangeReverseIterator* ZemVector_ZemTimeRangeReverseIteratorIncrement(
    ZemVector_ZemTimeRangeReverseIterator* x);

// Moves `x` to the element before, toward the back, and returns `x`.
ZEM_API ZemVector_ZemTimeRangeReverseIterator* ZemVector_ZemTimeRangeReverseIteratorDecrement(
    ZemVector_ZemTimeRangeReverseIterator* x);

// 1 when `x` comes before `y` in reverse order, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeReverseIteratorLess(
    const ZemVector_ZemTimeRangeReverseIterator* x, const ZemVector_ZemTimeRangeReverseIterator* y);

// The element `n` steps on from the one that `x` designates.
ZEM_API ZemTimeRange* ZemVector_ZemTimeRangeReverseIteratorAt(
    ZemVector_ZemTimeRangeReverseIterator* x,
    ZemVector_ZemTimeRangeReverseIteratorDifferenceType n);

// Moves `x` on by `n` elements and returns `x`.
ZEM_API ZemVector_ZemTimeRangeReverseIterator* ZemVector_ZemTimeRangeReverseIteratorIncrementN(
    ZemVector_ZemTimeRangeReverseIterator* x,
    ZemVector_ZemTimeRangeReverseIteratorDifferenceType n);

// Moves `x` back by `n` elements and returns `x`.
ZEM_API ZemVector_ZemTimeRangeReverseIterator* ZemVector_ZemTimeRangeReverseIteratorDecrementN(
    ZemVector_ZemTimeRangeReverseIterator* x,
    ZemVector_ZemTimeRangeReverseIteratorDifferenceType n);

// The iterator `n` elements on from `x`.
ZEM_API ZemVector_ZemTimeRangeReverseIterator
ZemVector_ZemTimeRangeReverseIteratorAdd(ZemVector_ZemTimeRangeReverseIterator* x,
                                         ZemVector_ZemTimeRangeReverseIteratorDifferenceType n);

// The number of steps from `y` to `x`.
ZEM_API ZemVector_ZemTimeRangeReverseIteratorDifferenceType
ZemVector_ZemTimeRangeReverseIteratorSubtract(ZemVector_ZemTimeRangeReverseIterator* x,
                                              ZemVector_ZemTimeRangeReverseIterator* y);

// Reverse iterators over constant elements: none of these tests for null, bounds or membership.

// Does nothing.
ZEM_API void ZemVector_ZemTimeRangeConstReverseIteratorDestruct(
    ZemVector_ZemTimeRangeConstReverseIterator* x);

// Gives `x` the position of `y` and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstReverseIterator*
ZemVector_ZemTimeRangeConstReverseIteratorConstructCopy(
    ZemVector_ZemTimeRangeConstReverseIterator* x,
    const ZemVector_ZemTimeRangeConstReverseIterator* y);

// Gives `x` the position of `y` and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstReverseIterator*
ZemVector_ZemTimeRangeConstReverseIteratorAssign(
    ZemVector_ZemTimeRangeConstReverseIterator* x,
    const ZemVector_ZemTimeRangeConstReverseIterator* y);

// Exchanges the positions and returns 1.
ZEM_API ZemBool ZemVector_ZemTimeRangeConstReverseIteratorSwap(
    ZemVector_ZemTimeRangeConstReverseIterator* x, ZemVector_ZemTimeRangeConstReverseIterator* y);

// 1 when both hold the same position, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeConstReverseIteratorEqual(
    const ZemVector_ZemTimeRangeConstReverseIterator* x,
    const ZemVector_ZemTimeRangeConstReverseIterator* y);

// The element that `x` designates.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeConstReverseIteratorContentOf(
    ZemVector_ZemTimeRangeConstReverseIterator* x);

// The element that `x` designates.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeConstReverseIteratorContentOfConst(
    const ZemVector_ZemTimeRangeConstReverseIterator* x);

// Makes `x` the exceptional iterator and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstReverseIterator*
ZemVector_ZemTimeRangeConstReverseIteratorConstructExceptional(
    ZemVector_ZemTimeRangeConstReverseIterator* x);

// 1 when `x` is the exceptional iterator, else 0.
ZEM_API ZemBool ZemVector_ZemTimeRangeConstReverseIteratorIsExceptional(
    ZemVector_ZemTimeRangeConstReverseIterator x);

// Moves `x` to the next element toward the front and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstReverseIterator*
ZemVector_ZemTimeRangeConstReverseIteratorIncrement(ZemVector_ZemTimeRangeConstReverseIterator* x);

// Moves `x` to the element before, toward the back, and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstReverseIterator*
ZemVector_ZemTimeRangeConstReverseIteratorDecrement(ZemVector_ZemTimeRangeConstReverseIterator* x);

// 1 when `x` comes before `y` in reverse order, else 0.
ZEM_API ZemBool
ZemVector_ZemTimeRangeConstReverseIteratorLess(const ZemVector_ZemTimeRangeConstReverseIterator* x,
                                               const ZemVector_ZemTimeRangeConstReverseIterator* y);

// The element `n` steps on from the one that `x` designates.
ZEM_API const ZemTimeRange* ZemVector_ZemTimeRangeConstReverseIteratorAt(
    ZemVector_ZemTimeRangeConstReverseIterator* x,
    ZemVector_ZemTimeRangeConstReverseIteratorDifferenceType n);

// Moves `x` on by `n` elements and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstReverseIterator*
ZemVector_ZemTimeRangeConstReverseIteratorIncrementN(
    ZemVector_ZemTimeRangeConstReverseIterator* x,
    ZemVector_ZemTimeRangeConstReverseIteratorDifferenceType n);

// Moves `x` back by `n` elements and returns `x`.
ZEM_API ZemVector_ZemTimeRangeConstReverseIterator*
ZemVector_ZemTimeRangeConstReverseIteratorDecrementN(
    ZemVector_ZemTimeRangeConstReverseIterator* x,
    ZemVector_ZemTimeRangeConstReverseIteratorDifferenceType n);

// The iterator `n` elements on from `x`.
ZEM_API ZemVector_ZemTimeRangeConstReverseIterator ZemVector_ZemTimeRangeConstReverseIteratorAdd(
    ZemVector_ZemTimeRangeConstReverseIterator* x,
    ZemVector_ZemTimeRangeConstReverseIteratorDifferenceType n);

// The number of steps from `y` to `x`.
ZEM_API ZemVector_ZemTimeRangeConstReverseIteratorDifferenceType
ZemVector_ZemTimeRangeConstReverseIteratorSubtract(ZemVector_ZemTimeRangeConstReverseIterator* x,
                                                   ZemVector_ZemTimeRangeConstReverseIterator* y);

// The layouts that compiled callers rely on.
static_assert(sizeof(ZemTimeRange) == 16 && offsetof(ZemTimeRange, end) == 8, "layout");
static_assert(offsetof(ZemGregorianTime, nanosecs) == sizeof(struct tm), "layout");
static_assert(sizeof(ZemGregorianTime) == sizeof(struct tm) + 8, "layout");
static_assert(sizeof(ZemVector_ZemTimeRange) == 32, "layout");
static_assert(offsetof(ZemVector_ZemTimeRange, begin) == 8, "layout");
static_assert(offsetof(ZemVector_ZemTimeRange, end) == 16, "layout");
static_assert(offsetof(ZemVector_ZemTimeRange, endBuf) == 24, "layout");
static_assert(sizeof(time_t) == 8, "time_t has 64 bits");

#ifdef __cplusplus
}
#endif

#endif
