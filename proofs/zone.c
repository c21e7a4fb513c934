// The table of a time zone: searches stay within it and find what they should, whatever the
// instant; filling it stays within the room that was counted, and overflows nowhere.

// The number of segments: any number that the library makes.
/*@ axiomatic Table {
  @   logic integer N;
  @   axiom some: 1 <= N <= 65535;
  @ }
  @*/

/*@ logic integer YearOf(integer second) = (second + 300 * 31556952) / 31556952 + 1670 - 3;
  @ logic integer FirstYear(integer second) =
  @   second > 9223372036 ? 2263 : YearOf(second < -9223372037 ? -9223372037 : second);
  @*/

#include "Zem/Os/Private/ZemTimeZoneTable.h"

// (That it is the right one is for tests: the provers know little of numbers that wrap.)
/*@ assigns \nothing;
  @ ensures \result < 2048;
  @*/
static inline ZemUint32 ZemTimeZoneBucketOf(ZemTime t);

/*@ requires \valid_read(segments + (0 .. N - 1)) && i < N;
  @ requires ends: segments[N - 1].last == 9223372036854775807;
  @ assigns \nothing;
  @ ensures within: i <= \result < N;
  @ ensures found: t <= segments[\result].last;
  @ ensures first: \forall integer j; i <= j < \result ==> segments[j].last < t;
  @*/
static inline ZemUint32 ZemTimeZoneSearch(const ZemTimeZoneSegment* segments, ZemUint32 i,
                                          ZemTime t);

/*@ requires \valid_read(table) && \valid_read(table->segments + (0 .. N - 1));
  @ requires table->segments[N - 1].last == 9223372036854775807;
  @ requires \forall integer b; 0 <= b < 2048 ==> table->buckets[b] < N;
  @ assigns \nothing;
  @ ensures \result < N;
  @ ensures t <= table->segments[\result].last;
  @*/
static inline ZemUint32 ZemTimeZoneFind(const ZemTimeZoneTable* table, ZemTime t);

/*@ requires \valid(offset) && \valid_read(table) && \valid_read(table->segments + (0 .. N));
  @ requires \separated(offset, table, table->segments + (0 .. N));
  @ requires table->segments[N - 1].last == 9223372036854775807;
  @ requires \forall integer b; 0 <= b < 2048 ==> table->buckets[b] < N;
  @ requires \forall integer i; 0 <= i <= N ==> -89999 <= table->segments[i].offset <= 93599;
  @ assigns *offset;
  @ ensures \exists integer i; 0 <= i < N && \result == table->segments + i;
  @ ensures t <= \result->last;
  @ ensures chosen: *offset == \result->offset;
  @*/
static inline const ZemTimeZoneSegment* ZemTimeZoneFindOffset(const ZemTimeZoneTable* table,
                                                              ZemTime t, ZemInt* offset);

/*@ requires \valid_read(localEnds + (0 .. N - 1)) && i < N;
  @ requires ends: localSecond < localEnds[N - 1];
  @ assigns \nothing;
  @ ensures within: i <= \result < N;
  @ ensures found: localSecond < localEnds[\result];
  @ ensures first: \forall integer j; i <= j < \result ==> localEnds[j] <= localSecond;
  @*/
static inline ZemUint32 ZemTimeZoneSearchLocal(const ZemInt64* localEnds, ZemUint32 i,
                                               ZemInt64 localSecond);

/*@ requires -1152921504606846976 <= localSecond <= 1152921504606846976;
  @ requires -89999 <= largestOffset <= 93599;
  @ assigns \nothing;
  @ ensures no_later: localSecond - largestOffset > -9223372037 ==>
  @   \result <= (localSecond - largestOffset) * 1000000000;
  @ ensures localSecond - largestOffset <= -9223372037 ==> \result == -9223372036000000000;
  @*/
static inline ZemTime ZemTimeZoneEarliest(ZemInt64 localSecond, ZemInt64 largestOffset);

/*@ requires \valid_read(table) && \valid_read(table->localEnds + (0 .. N - 1));
  @ requires -1152921504606846976 <= localSecond <= 1152921504606846976;
  @ requires -89999 <= table->largestOffset <= 93599;
  @ requires table->localEnds[N - 1] == 9223372036854775807;
  @ requires \forall integer b; 0 <= b < 2048 ==> table->buckets[b] < N;
  @ assigns \nothing;
  @ ensures \result < N;
  @ ensures localSecond < table->localEnds[\result];
  @*/
static inline ZemUint32 ZemTimeZoneFindLocal(const ZemTimeZoneTable* table, ZemInt64 localSecond);

/*@ requires \valid_read(a) && \valid_read(b);
  @ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @*/
static inline ZemBool ZemTimeZoneIsSameTime(const ZemTimeZoneSegment* a,
                                            const ZemTimeZoneSegment* b);

/*@ requires \valid(segments) && \valid_read(kind);
  @ requires 1 <= segments->count <= 65535;
  @ requires \valid(segments->all + (0 .. segments->count));
  @ requires \separated(segments, segments->all + (0 .. segments->count), kind);
  @ assigns segments->count, segments->all[0 .. segments->count];
  @ ensures one_more: 1 <= segments->count <= \old(segments->count) + 1;
  @*/
static inline void ZemTimeZoneAppend(ZemTimeZoneSegments* segments, ZemInt64 second,
                                     const ZemTimeZoneSegment* kind);

// Of the civil arithmetic: proved with it.

/*@ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @*/
static inline ZemBool ZemCivilIsLeapYear(ZemInt year);

/*@ requires 1 <= month <= 12;
  @ assigns \nothing;
  @ ensures 28 <= \result <= 31;
  @*/
static inline ZemInt ZemCivilDaysInMonth(ZemInt year, ZemInt month);

/*@ requires century <= 99 && yearOfCentury <= 99 && month <= 15;
  @ assigns \nothing;
  @ ensures \exists integer i; 0 <= i < 32 && \result == &kZemCivilMonths[i];
  @ ensures -719529 <= \result->daysBefore <= 0;
  @*/
static inline const ZemCivilMonth* ZemCivilMonthIn(ZemUint32 century, ZemUint32 yearOfCentury,
                                                   ZemUint32 month);

/*@ requires century <= 99 && yearOfCentury <= 99 && day <= 16777216;
  @ requires \valid_read(month) && -719529 <= month->daysBefore <= 0;
  @ assigns \nothing;
  @ ensures -800000 <= \result <= 20500000;
  @*/
static inline ZemInt ZemCivilDayOfDate(ZemUint32 century, ZemUint32 yearOfCentury,
                                       const ZemCivilMonth* month, ZemUint32 day);

/*@ requires 1674 <= year <= 2263 && 1 <= month <= 12;
  @ assigns \nothing;
  @ ensures -800000 <= \result <= 20500000;
  @*/
static inline ZemInt ZemTimeZoneFirstOfMonth(ZemInt year, ZemInt month);

/*@ requires -800000 <= first <= 20500000 && 28 <= length <= 31;
  @ requires 1 <= week <= 5 && 0 <= weekday <= 6;
  @ assigns \nothing;
  @ ensures in_month: 0 <= \result < length;
  @*/
static inline ZemInt ZemTimeZoneDayInMonth(ZemInt first, ZemInt length, ZemInt week,
                                           ZemInt weekday);

/*@ predicate IsDay(ZemTimeZoneRuleDay* d) =
  @   -604799 <= d->time <= 604799 && 0 <= d->day <= 365 &&
  @   (d->form == ZEM_TIME_ZONE_WEEKDAY ==>
  @     1 <= d->month <= 12 && 1 <= d->week <= 5 && d->day <= 6);
  @*/

/*@ requires \valid_read(rule) && IsDay(rule) && 1674 <= year <= 2263;
  @ assigns \nothing;
  @ ensures -100000000000 <= \result <= 2000000000000;
  @*/
static inline ZemInt64 ZemTimeZoneRuleSecond(const ZemTimeZoneRuleDay* rule, ZemInt year);

/*@ assigns \nothing;
  @ ensures \result == FirstYear(second);
  @ ensures 1674 <= \result <= 2263;
  @*/
static inline ZemInt ZemTimeZoneFirstYear(ZemInt64 second);

/*@ requires \valid_read(rule);
  @ assigns \nothing;
  @ ensures \result == (rule->hasDaylight == 0 ? 1 : 1 + 2 * (2263 - FirstYear(second)));
  @*/
static inline ZemUint32 ZemTimeZoneRuleCapacity(const ZemTimeZoneRule* rule, ZemInt64 second);

/*@ requires \valid(segments) && \valid_read(rule) && 1 <= segments->count <= 60000;
  @ requires IsDay(&rule->begin) && IsDay(&rule->end);
  @ requires -89999 <= rule->standard.offset <= 93599 && -89999 <= rule->daylight.offset <= 93599;
  @ requires \valid(segments->all + (0 .. segments->count + 2 * (2263 - FirstYear(second))));
  @ requires \separated(segments, rule,
  @   segments->all + (0 .. segments->count + 2 * (2263 - FirstYear(second))));
  @ assigns segments->count,
  @   segments->all[0 .. segments->count + 2 * (2263 - FirstYear(second))];
  @ ensures within_capacity: 1 <= segments->count <= \old(segments->count) + 1 +
  @   (rule->hasDaylight == 0 ? 0 : 2 * (2263 - FirstYear(second)));
  @*/
static inline void ZemTimeZoneExpand(ZemTimeZoneSegments* segments, const ZemTimeZoneRule* rule,
                                     ZemInt64 second);

/*@ requires 1 <= count <= 65535;
  @ requires \valid(localEnds + (0 .. count - 1)) && \valid_read(segments + (0 .. count - 1));
  @ requires \separated(localEnds + (0 .. count - 1), segments + (0 .. count - 1));
  @ requires \forall integer j; 0 <= j < count ==> -89999 <= segments[j].offset <= 93599;
  @ requires \forall integer j; 0 <= j < count - 1 ==> segments[j].last < 9223372036854775807;
  @ assigns localEnds[0 .. count - 1];
  @ ensures -89999 <= \result <= 93599;
  @ ensures largest: \forall integer j; 0 <= j < count ==> segments[j].offset <= \result;
  @ ensures ends: localEnds[count - 1] == 9223372036854775807;
  @*/
static inline ZemInt64 ZemTimeZoneFillLocalEnds(ZemInt64* localEnds,
                                                const ZemTimeZoneSegment* segments,
                                                ZemUint32 count);

/*@ requires \valid(buckets + (0 .. 2047)) && \valid_read(segments + (0 .. N - 1));
  @ requires \separated(buckets + (0 .. 2047), segments + (0 .. N - 1));
  @ requires segments[N - 1].last == 9223372036854775807;
  @ assigns buckets[0 .. 2047];
  @ ensures within: \forall integer b; 0 <= b < 2048 ==> buckets[b] < N;
  @*/
static inline void ZemTimeZoneFillBuckets(uint16_t* buckets, const ZemTimeZoneSegment* segments);
