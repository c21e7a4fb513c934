// Named time zones: local time of any zone, in any thread, without the process's TZ and without the
// C library's lock.
//
// A ZemTimeZone is made once, from the zone data of the platform, from a rule or from data in
// memory, and is read only from then on: any number of threads may use one at the same time. It is
// one block from the caller's allocator: 4 to 21 KiB for the zones there are, 32 KiB for a rule
// with daylight time. Nothing here keeps state of its own, takes a lock or reads a file after
// construction; a zone does not follow later changes of the files or of TZ.
//
// A zone covers every instant of a ZemTime. Where its data end, their rule goes on to 2262; before
// their first transition the first type of time in the data holds (usually local mean time). Two
// times are one type when UTC offset, daylight flag and abbreviation are the same, and a transition
// is an instant at which the type changes; data with "transitions" that change nothing lose those.
// Plain C11 and C++17.

#ifndef ZEM_OS_ZEMTIMEZONE_H
#define ZEM_OS_ZEMTIMEZONE_H

#include "Zem/Os/ZemTime.h"

#ifdef __cplusplus
extern "C" {
#endif

// ---------------------------------------------------------------------------------------------
// Zones
// ---------------------------------------------------------------------------------------------

// A zone. A plain record: copies share the block, and one of them is destructed. The members are
// for the functions below alone.
typedef struct ZemTimeZone {
    ZemAllocator* allocator;
    const struct ZemTimeZoneTable* table;  // the block
    ZemSizeT size;                         // its size in bytes
} ZemTimeZone;

// Makes `z` the zone that the platform knows by the NUL-terminated `name`, such as Europe/Berlin,
// and returns `z`; null, with `z` untouched, when there is none, its file is not what it should be
// (see ZemTimeZoneConstructData; at most 32 KiB), or the allocator fails. Nothing is kept of
// `name`.
//
// The file is looked for below the folder that the environment's TZDIR names (not in a process with
// more rights than its user has, such as a set-user-ID program), or else below /usr/share/zoneinfo,
// /usr/lib/zoneinfo, /usr/share/lib/zoneinfo and /etc/zoneinfo, in this order. A name cannot leave
// that folder: one that begins or ends with a slash, or that has an empty part, `.` or `..` between
// slashes, names no zone. UTC is known even where no file says so.
//
// Takes up to 48 KiB of stack, most of it for the file. The allocator must outlive the zone.
ZEM_API ZemTimeZone* ZemTimeZoneConstruct(ZemTimeZone* z, const char* name, ZemAllocator* a);

// Makes `z` the zone of the process as it is now, and returns `z`; null as above. What TZ says
// holds, one leading colon taken off:
//
//   not set             the file /etc/localtime; UTC when there is no such file
//   empty               UTC
//   an absolute path    that file (in a process with more rights than its user has: only
//                       /etc/localtime)
//   anything else       the zone of that name; if there is none, the rule that the text is
//
// A TZ that is none of these gives null, where the C library would quietly take UTC. Reads the
// environment as getenv does: no other thread may change it at that moment.
ZEM_API ZemTimeZone* ZemTimeZoneConstructLocal(ZemTimeZone* z, ZemAllocator* a);

// Makes `z` the zone of a rule as POSIX writes them in TZ, and returns `z`; null, with `z`
// untouched, when the NUL-terminated `rule` is anything else or the allocator fails.
// A rule such as CET-1CEST,M3.5.0,M10.5.0/3 is:
//
//   name      of standard time: three letters or more; or <letters, digits, + and ->
//   offset    what to add to standard time to get UTC, so negative east of Greenwich: an optional
//             sign and h, h:mm or h:mm:ss, at most 24:59:59
//   name      of daylight time, if there is any
//   offset    optional; if it is not there, daylight time is an hour ahead of standard time
//   ,date     on which daylight time begins: Mm.w.d, weekday d (0 is Sunday) of week w (5 is the
//             last) of month m; Jn, day n of the year (1 to 365, February 29 is not counted); or n
//             (0 to 365, it is counted)
//   /time     optional, of the clock until then: -167:59:59 to 167:59:59; otherwise 2:00
//   ,date     and perhaps /time, at which daylight time ends
//
// Without dates they are those of the USA since 2007, M3.2.0,M11.1.0. The rule holds for every
// year, past ones too. Daylight time is in force from each beginning up to the next end; where that
// is no earlier than the next beginning it does not end at all (all-year daylight time).
ZEM_API ZemTimeZone* ZemTimeZoneConstructRule(ZemTimeZone* z, const char* rule, ZemAllocator* a);

// Makes `z` the zone of the `size` bytes of TZif data at `tzif` (RFC 9636, version 1 and up, slim
// and fat), and returns `z`; null, with `z` untouched, when they are not that or the allocator
// fails. Nothing is kept of the data. They are taken or refused whole. Refused are also: data that
// count leap seconds, as a ZemTime does not; offsets outside -24:59:59 to 25:59:59; transitions
// that are not in order; abbreviations of more than 1,024 bytes in all; more than some 60,000
// transitions. After the last transition the rule in the data's footer holds, or the last type
// where there is none. Bytes after the footer are not looked at. The time of a look-up grows with
// the number of transitions within 104 days, of which real zones have three at most.
ZEM_API ZemTimeZone* ZemTimeZoneConstructData(ZemTimeZone* z, const void* tzif, ZemSizeT size,
                                              ZemAllocator* a);

// Hands the block back to the allocator; `z` is then no zone. No record may use its abbreviations
// any more (tm_zone).
ZEM_API void ZemTimeZoneDestruct(ZemTimeZone* z);

// Stores the first transition after the instant `t` at `at` and returns 1, or returns 0, with `at`
// untouched, when there is none up to the largest ZemTime.
ZEM_API ZemBool ZemTimeZoneNextTransition(const ZemTimeZone* z, ZemTime t, ZemTime* at);

// The same with the last transition before `t`.
ZEM_API ZemBool ZemTimeZonePreviousTransition(const ZemTimeZone* z, ZemTime t, ZemTime* at);

// ---------------------------------------------------------------------------------------------
// Calendar records in a zone
// ---------------------------------------------------------------------------------------------

// Fills `gt` with the zone's calendar time of the wall-clock time `t`, any value, and returns `gt`:
// every field of ZemGregorianTimeConstruct. Before 1970 the fields name the second nearer to 1970
// and the nanoseconds are negative; the instant itself decides on the offset. tm_zone points into
// the zone, which must outlive it.
ZEM_API ZemGregorianTime* ZemGregorianTimeConstructInZone(ZemGregorianTime* gt, ZemTime t,
                                                          const ZemTimeZone* z);

// The wall-clock time of the fields, read as time of the zone; the record's own offset and daylight
// flag play no part. Fields outside their usual ranges carry over, nanoseconds too. A time that
// occurs twice is the earlier of the two; one that is skipped is moved on by as much as the clock
// was: in both cases the offset before the transition holds. ZEM_TIME_INFINITE when the result does
// not fit a ZemTime. (23:59:59 on 1969-12-31 is a time like any other.)
ZEM_API ZemTime ZemGregorianTimeGetTimeInZone(const ZemGregorianTime* gt, const ZemTimeZone* z);

// What a time of a zone comes to. Instants that do not fit a ZemTime are ZEM_TIME_INFINITE.
typedef struct ZemLocalTime {
    ZemTime earlier;  // the instant; the first of two; skipped: by the offset after the transition
    ZemTime later;    // the instant; the second of two; skipped: by the offset before it
    ZemTime transition;  // what skips or repeats the time; the instant itself where it is unique
    ZemInt kind;         // 0 the time occurs once, 1 it is skipped, 2 it occurs twice
} ZemLocalTime;

// Fills `result` with what the fields come to, read as ZemGregorianTimeGetTimeInZone reads them
// (which gives `later` of a skipped time and `earlier` of any other), and returns `result`. A
// skipped time lies between what the clock showed before the transition and what it showed after
// it: `earlier` is before the transition, `later` is not. Only transitions within the span of a
// ZemTime count.
ZEM_API ZemLocalTime* ZemGregorianTimeResolve(const ZemGregorianTime* gt, const ZemTimeZone* z,
                                              ZemLocalTime* result);

// The layouts that compiled callers rely on.
static_assert(sizeof(ZemTimeZone) == 24, "layout");
static_assert(offsetof(ZemTimeZone, table) == 8, "layout");
static_assert(offsetof(ZemTimeZone, size) == 16, "layout");
static_assert(sizeof(ZemLocalTime) == 32, "layout");
static_assert(offsetof(ZemLocalTime, later) == 8, "layout");
static_assert(offsetof(ZemLocalTime, transition) == 16, "layout");
static_assert(offsetof(ZemLocalTime, kind) == 24, "layout");

#ifdef __cplusplus
}
#endif

#endif
