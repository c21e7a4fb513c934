// The table that a time zone is looked up in: how it is searched, and how it is filled.
//
// Time falls into segments, each with one UTC offset, abbreviation and daylight flag. A segment
// ends with its last nanosecond, so that the last one ends with the largest ZemTime and stops any
// search. A bucket for every 104 days says at which segment to begin.
//
// Not installed and exports nothing. Plain C, as the provers read it; what they have to know about
// loops stands before those (N is the number of segments).

#ifndef ZEM_OS_PRIVATE_ZEMTIMEZONETABLE_H
#define ZEM_OS_PRIVATE_ZEMTIMEZONETABLE_H

#include "Zem/Os/ZemTime.h"
#include "Zem/Utils/Private/ZemCivil.h"

#define ZEM_TIME_ZONE_NANOS_PER_SEC ((ZemInt64)1000000000)

// The seconds that hold the smallest and the largest ZemTime.
#define ZEM_TIME_ZONE_MIN_SEC ((ZemInt64)-9223372037)
#define ZEM_TIME_ZONE_MAX_SEC ((ZemInt64)9223372036)

// All that a look-up needs of one stretch of time, in 16 bytes: with the offset in a table of its
// own it takes 14 % longer.
typedef struct ZemTimeZoneSegment {
    ZemTime last;   // its last nanosecond; ZEM_TIME_INFINITE in the last segment
    ZemInt offset;  // seconds east of UTC
    uint16_t text;  // where the abbreviation begins in the texts; one place for equal ones
    ZemBool isDaylight;
} ZemTimeZoneSegment;

#define ZEM_TIME_ZONE_MIN_OFFSET (-89999)
#define ZEM_TIME_ZONE_MAX_OFFSET 93599

// 2^53 ns, 104 days: zones have a transition or two in this time. A quarter of the buckets makes a
// look-up half as long again.
#define ZEM_TIME_ZONE_BUCKET_NANOS ((ZemInt64)9007199254740992)
#define ZEM_TIME_ZONE_BUCKETS 2048

// The head of a zone's block. What it points to lies behind it.
typedef struct ZemTimeZoneTable {
    const ZemTimeZoneSegment* segments;  // the last one twice: a search reads one further
    // For each segment the first local second that is past it: the transition's, by the larger of
    // the offsets before and after it. Never smaller than the one before it, and INT64_MAX in the
    // end.
    const ZemInt64* localEnds;
    const char* texts;  // abbreviations, each with its NUL
    ZemInt64 largestOffset;
    uint16_t buckets[ZEM_TIME_ZONE_BUCKETS];  // the segment of each bucket's first nanosecond
} ZemTimeZoneTable;

// ---------------------------------------------------------------------------------------------
// Searching
// ---------------------------------------------------------------------------------------------

static inline ZemUint32 ZemTimeZoneBucketOf(ZemTime t)
{
    // Half of the buckets lie before 1970, which are the upper half of the unsigned numbers.
    ZemUint64 bucket = (ZemUint64)t / (ZemUint64)ZEM_TIME_ZONE_BUCKET_NANOS;  // 0 .. 2047
    return (ZemUint32)(bucket + ZEM_TIME_ZONE_BUCKETS / 2) % ZEM_TIME_ZONE_BUCKETS;
}

// Both searches take their first step as a number. Whether it is taken cannot be predicted, and as
// a branch it makes conversions within a decade take 16.7 ns, not 13.6, and 15.3 back, not 8.0.

// The first segment at or after `i` that does not end before `t`.
static inline ZemUint32 ZemTimeZoneSearch(const ZemTimeZoneSegment* segments, ZemUint32 i,
                                          ZemTime t)
{
    i += t > segments[i].last ? 1 : 0;
    /*@ loop invariant \at(i, Pre) <= i < N;
      @ loop invariant \forall integer j; \at(i, Pre) <= j < i ==> segments[j].last < t;
      @ loop assigns i;
      @ loop variant N - i;
      @*/
    while (t > segments[i].last) {
        ++i;
    }
    return i;
}

// The segment of an instant.
static inline ZemUint32 ZemTimeZoneFind(const ZemTimeZoneTable* table, ZemTime t)
{
    return ZemTimeZoneSearch(table->segments, table->buckets[ZemTimeZoneBucketOf(t)], t);
}

// The segment of an instant, and its offset. The offset is chosen from two that are loaded while
// the comparison waits for its own load, and as a number, as compilers make branches of conditions.
static inline const ZemTimeZoneSegment* ZemTimeZoneFindOffset(const ZemTimeZoneTable* table,
                                                              ZemTime t, ZemInt* offset)
{
    const ZemTimeZoneSegment* segment = &table->segments[table->buckets[ZemTimeZoneBucketOf(t)]];
    ZemInt here = segment[0].offset;
    ZemInt next = segment[1].offset;
    ZemInt step = t > segment->last ? 1 : 0;
    *offset = here + step * (next - here);
    segment += step;
    if (t > segment->last) {
        ZemUint32 i = (ZemUint32)(segment - table->segments);
        segment = &table->segments[ZemTimeZoneSearch(table->segments, i, t)];
        *offset = segment->offset;
    }
    return segment;
}

// The first place at or after `i` whose local end is past `localSecond`.
static inline ZemUint32 ZemTimeZoneSearchLocal(const ZemInt64* localEnds, ZemUint32 i,
                                               ZemInt64 localSecond)
{
    i += localSecond >= localEnds[i] ? 1 : 0;
    /*@ loop invariant \at(i, Pre) <= i < N;
      @ loop invariant \forall integer j; \at(i, Pre) <= j < i ==> localEnds[j] <= localSecond;
      @ loop assigns i;
      @ loop variant N - i;
      @*/
    while (localSecond >= localEnds[i]) {
        ++i;
    }
    return i;
}

// An instant that is no later than any that `localSecond` may name: at which the search can begin.
// `localSecond` is within 2^60 of 1970.
static inline ZemTime ZemTimeZoneEarliest(ZemInt64 localSecond, ZemInt64 largestOffset)
{
    ZemInt64 second = localSecond - largestOffset;
    // What is earlier than a ZemTime begins in the first bucket, as the first whole second does.
    if (second <= ZEM_TIME_ZONE_MIN_SEC) {
        second = ZEM_TIME_ZONE_MIN_SEC + 1;
    }
    if (second > ZEM_TIME_ZONE_MAX_SEC) {
        second = ZEM_TIME_ZONE_MAX_SEC;
    }
    return second * ZEM_TIME_ZONE_NANOS_PER_SEC;
}

// The segment whose offset holds for a local second: that before the transition where the second is
// skipped or repeated.
static inline ZemUint32 ZemTimeZoneFindLocal(const ZemTimeZoneTable* table, ZemInt64 localSecond)
{
    ZemTime earliest = ZemTimeZoneEarliest(localSecond, table->largestOffset);
    return ZemTimeZoneSearchLocal(table->localEnds, table->buckets[ZemTimeZoneBucketOf(earliest)],
                                  localSecond);
}

// ---------------------------------------------------------------------------------------------
// Filling
// ---------------------------------------------------------------------------------------------

// Segments under construction, at least one.
typedef struct ZemTimeZoneSegments {
    ZemTimeZoneSegment* all;
    ZemUint32 count;
} ZemTimeZoneSegments;

static inline ZemBool ZemTimeZoneIsSameTime(const ZemTimeZoneSegment* a,
                                            const ZemTimeZoneSegment* b)
{
    return a->offset == b->offset && a->text == b->text && a->isDaylight == b->isDaylight;
}

// Lets the time of `*kind` begin at a second, no earlier than the last one before: at most one
// segment more. What lies before the first ZemTime makes way, what lies after the last is left out,
// and what changes nothing is no transition.
static inline void ZemTimeZoneAppend(ZemTimeZoneSegments* segments, ZemInt64 second,
                                     const ZemTimeZoneSegment* kind)
{
    ZemTimeZoneSegment* all = segments->all;
    ZemUint32 count = segments->count;
    ZemTime last;

    if (second > ZEM_TIME_ZONE_MAX_SEC) {
        return;
    }
    if (second <= ZEM_TIME_ZONE_MIN_SEC) {
        all[0] = *kind;
        all[0].last = ZEM_TIME_INFINITE;
        segments->count = 1;
        return;
    }
    last = second * ZEM_TIME_ZONE_NANOS_PER_SEC - 1;
    // Of two changes at one instant the second counts.
    if (count > 1 && all[count - 2].last == last) {
        count -= 1;
        all[count - 1].last = ZEM_TIME_INFINITE;
    }
    if (!ZemTimeZoneIsSameTime(&all[count - 1], kind)) {
        all[count - 1].last = last;
        all[count] = *kind;
        all[count].last = ZEM_TIME_INFINITE;
        count += 1;
    }
    segments->count = count;
}

// A day of every year, and a time on it.
typedef enum ZemTimeZoneRuleForm {
    ZEM_TIME_ZONE_JULIAN_DAY,  // `day` 1 .. 365, February 29 is not counted
    ZEM_TIME_ZONE_YEAR_DAY,    // `day` 0 .. 365
    ZEM_TIME_ZONE_WEEKDAY  // weekday `day` 0 .. 6 of week `week` 1 .. 5 of month `month` 1 .. 12
} ZemTimeZoneRuleForm;

typedef struct ZemTimeZoneRuleDay {
    ZemTimeZoneRuleForm form;
    ZemInt month;
    ZemInt week;
    ZemInt day;
    ZemInt time;  // seconds after midnight: within 167:59:59 of it
} ZemTimeZoneRuleDay;

// The day since 1970 of January 1 or another month's first, for years that a rule is asked for.
static inline ZemInt ZemTimeZoneFirstOfMonth(ZemInt year, ZemInt month)
{
    ZemUint32 century = (ZemUint32)year / 100;
    ZemUint32 yearOfCentury = (ZemUint32)year % 100;
    return ZemCivilDayOfDate(century, yearOfCentury,
                             ZemCivilMonthIn(century, yearOfCentury, (ZemUint32)month), 1);
}

// How many days after the first of a month that begins on day `first` since 1970 and has `length`
// days the rule's weekday is.
static inline ZemInt ZemTimeZoneDayInMonth(ZemInt first, ZemInt length, ZemInt week, ZemInt weekday)
{
    // 1970 began on a Thursday.
    ZemInt firstWeekday = (first + 4) % 7;  // -6 .. 6, negative where its like is seven more
    ZemInt day = (weekday + 7 - firstWeekday) % 7 + 7 * (week - 1);  // 0 .. 34
    return day >= length ? day - 7 : day;
}

// The local second of a rule's day in a year.
static inline ZemInt64 ZemTimeZoneRuleSecond(const ZemTimeZoneRuleDay* rule, ZemInt year)
{
    ZemInt day;
    if (rule->form == ZEM_TIME_ZONE_WEEKDAY) {
        day = ZemTimeZoneFirstOfMonth(year, rule->month);
        day += ZemTimeZoneDayInMonth(day, ZemCivilDaysInMonth(year, rule->month), rule->week,
                                     rule->day);
    } else {
        day = ZemTimeZoneFirstOfMonth(year, 1) + rule->day;
        if (rule->form == ZEM_TIME_ZONE_JULIAN_DAY &&
            !(ZemCivilIsLeapYear(year) && rule->day >= 60)) {
            day -= 1;
        }
    }
    return (ZemInt64)day * ZEM_CIVIL_SECS_PER_DAY + rule->time;
}

// A rule, once its texts have their places.
typedef struct ZemTimeZoneRule {
    ZemTimeZoneSegment standard;  // `last` is not used
    ZemTimeZoneSegment daylight;
    ZemBool hasDaylight;  // or else the rest is not used
    ZemTimeZoneRuleDay begin;
    ZemTimeZoneRuleDay end;
} ZemTimeZoneRule;

#define ZEM_TIME_ZONE_LAST_YEAR 2262

#define ZEM_TIME_ZONE_SECS_PER_YEAR ((ZemInt64)31556952)  // on average

// The first year whose daylight time can still be in force at a second. It may begin days before
// that year and last for more than another; and a second's year, by average years, is one too high
// at most.
static inline ZemInt ZemTimeZoneFirstYear(ZemInt64 second)
{
    if (second > ZEM_TIME_ZONE_MAX_SEC) {
        return ZEM_TIME_ZONE_LAST_YEAR + 1;
    }
    if (second < ZEM_TIME_ZONE_MIN_SEC) {
        second = ZEM_TIME_ZONE_MIN_SEC;
    }
    // Since 1670, so that the quotient is the floor.
    second += 300 * ZEM_TIME_ZONE_SECS_PER_YEAR;
    return (ZemInt)(second / ZEM_TIME_ZONE_SECS_PER_YEAR) + 1670 - 3;
}

// The most segments that a rule adds from a second on: standard time, and in every year the begin
// and the end of daylight time.
static inline ZemUint32 ZemTimeZoneRuleCapacity(const ZemTimeZoneRule* rule, ZemInt64 second)
{
    if (!rule->hasDaylight) {
        return 1;
    }
    return 1 + 2 * (ZemUint32)(ZEM_TIME_ZONE_LAST_YEAR + 1 - ZemTimeZoneFirstYear(second));
}

// Lets the rule hold from a second on: at most ZemTimeZoneRuleCapacity(rule, second) segments more.
static inline void ZemTimeZoneExpand(ZemTimeZoneSegments* segments, const ZemTimeZoneRule* rule,
                                     ZemInt64 second)
{
    ZemInt year = ZemTimeZoneFirstYear(second);
    ZemInt64 begin = ZemTimeZoneRuleSecond(&rule->begin, year) - rule->standard.offset;

    ZemTimeZoneAppend(segments, second, &rule->standard);
    /*@ loop invariant FirstYear(second) <= year <= 2263;
      @ loop invariant rule->hasDaylight == 0 ==> year == FirstYear(second);
      @ loop invariant -200000000000 <= begin <= 3000000000000;
      @ loop invariant 1 <= segments->count <=
      @   \at(segments->count, Pre) + 1 + 2 * (year - FirstYear(second));
      @ loop invariant segments->all == \at(segments->all, Pre);
      @ loop assigns year, begin, segments->count, segments->all[0 ..
      @   \at(segments->count, Pre) + 2 * (2263 - FirstYear(second))];
      @ loop variant 2263 - year;
      @*/
    for (; rule->hasDaylight && year <= ZEM_TIME_ZONE_LAST_YEAR; ++year) {
        ZemInt64 nextBegin = ZemTimeZoneRuleSecond(&rule->begin, year + 1) - rule->standard.offset;
        ZemInt64 end = ZemTimeZoneRuleSecond(&rule->end, year) - rule->daylight.offset;
        // South of the equator daylight time ends in the next year.
        if (end <= begin) {
            end = ZemTimeZoneRuleSecond(&rule->end, year + 1) - rule->daylight.offset;
        }
        if (end > begin && end > second) {
            ZemTimeZoneAppend(segments, begin > second ? begin : second, &rule->daylight);
            // All-year daylight time ends when the next one begins, or even later.
            if (end < nextBegin) {
                ZemTimeZoneAppend(segments, end, &rule->standard);
            }
        }
        begin = nextBegin;
    }
}

// The local ends of the segments, and the largest offset as the result.
static inline ZemInt64 ZemTimeZoneFillLocalEnds(ZemInt64* localEnds,
                                                const ZemTimeZoneSegment* segments, ZemUint32 count)
{
    ZemInt64 largest = segments[0].offset;
    ZemInt64 end = INT64_MIN;
    ZemUint32 i;
    /*@ loop invariant 0 <= i < count;
      @ loop invariant -89999 <= largest <= 93599;
      @ loop invariant \forall integer j; 0 <= j <= i ==> segments[j].offset <= largest;
      @ loop assigns i, end, largest, localEnds[0 .. count - 1];
      @ loop variant count - i;
      @*/
    for (i = 0; i + 1 < count; ++i) {
        ZemInt64 before = segments[i].offset;
        ZemInt64 after = segments[i + 1].offset;
        ZemInt64 localEnd = (segments[i].last + 1) / ZEM_TIME_ZONE_NANOS_PER_SEC +
                            (before > after ? before : after);
        // Transitions that follow each other sooner than they move the clock have no order of
        // their own.
        end = localEnd > end ? localEnd : end;
        localEnds[i] = end;
        largest = after > largest ? after : largest;
    }
    localEnds[i] = INT64_MAX;
    return largest;
}

static inline void ZemTimeZoneFillBuckets(uint16_t* buckets, const ZemTimeZoneSegment* segments)
{
    ZemUint32 segment = 0;
    ZemInt bucket;
    /*@ loop invariant 0 <= bucket <= 2048 && segment < N;
      @ loop invariant \forall integer b; 0 <= b < bucket ==> buckets[b] < N;
      @ loop assigns bucket, segment, buckets[0 .. 2047];
      @ loop variant 2048 - bucket;
      @*/
    for (bucket = 0; bucket < ZEM_TIME_ZONE_BUCKETS; ++bucket) {
        ZemTime first = (bucket - ZEM_TIME_ZONE_BUCKETS / 2) * ZEM_TIME_ZONE_BUCKET_NANOS;
        segment = ZemTimeZoneSearch(segments, segment, first);
        buckets[bucket] = (uint16_t)segment;
    }
}

#endif
