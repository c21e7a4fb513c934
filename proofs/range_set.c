// The arithmetic under sets of ranges, up to both ends of the 64-bit range.

#include "Zem/Os/ZemTime.h"

// What a conversion to a 64-bit type is; see time_value.c.
/*@ axiomatic Conversions {
  @   axiom to_unsigned: \forall integer x; ((ZemUint64)x - x) % 18446744073709551616 == 0;
  @   axiom to_signed: \forall integer x; ((ZemInt64)x - x) % 18446744073709551616 == 0;
  @ } */

/*@ predicate Holds(ZemTimeRange r, integer t) = r.end <= t <= r.begin;
  @ predicate Valid(ZemTimeRange r) = r.end <= r.begin;
  @ predicate Apart{L}(ZemTimeRange* a, ZemTimeRange* b) = a == b || \separated(a, b);
  @*/

/*@ assigns \nothing;
  @ ensures before: t > INT64_MIN ==> \result == t - 1;
  @ ensures first: t == INT64_MIN ==> \result == INT64_MAX;
  @*/
static inline ZemTime ZemTimePrevious_(ZemTime t);

/*@ assigns \nothing;
  @ ensures behind: t < INT64_MAX ==> \result == t + 1;
  @ ensures last: t == INT64_MAX ==> \result == INT64_MIN;
  @*/
static inline ZemTime ZemTimeNext_(ZemTime t);

/*@ assigns \nothing;
  @ ensures exact: lower <= upper ==> \result == upper - lower;
  @ ensures wraps: lower > upper ==> \result == upper - lower + 18446744073709551616;
  @*/
static inline ZemUint64 ZemTimeDistance_(ZemTime lower, ZemTime upper);

/*@ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures none_between: \result == 1 <==> !(\exists integer t; upper < t < lower);
  @*/
static inline ZemBool ZemTimeTouches_(ZemTime upper, ZemTime lower);

/*@ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures reaches: \result == 1 <==> lower - upper <= reach;
  @*/
static inline ZemBool ZemTimeReaches_(ZemTime upper, ZemTime lower, ZemUint64 reach);

/*@ requires \valid_read(x) && \valid(wide) && Apart(x, wide);
  @ assigns *wide;
  @ ensures touches: \let a = \old(*x); \forall ZemTime t; Valid(a) ==>
  @   (Holds(*wide, t) <==> Holds(a, t) || Holds(a, t + 1) || Holds(a, t - 1));
  @*/
static inline void ZemTimeRangeWiden_(const ZemTimeRange* x, ZemTimeRange* wide);

/*@ requires \valid_read(x) && \valid_read(cut) && \valid(rest);
  @ requires Apart(x, rest) && Apart(cut, rest) && Valid(*x);
  @ assigns *rest;
  @ ensures \result == 0 || \result == 1;
  @ ensures below: \let a = \old(*x); \let c = \old(*cut); \result == 1 ==> Valid(*rest) &&
  @   \forall integer t; Holds(*rest, t) <==> Holds(a, t) && t < c.end;
  @ ensures none: \let a = \old(*x); \let c = \old(*cut); \result == 0 ==>
  @   *rest == \old(*rest) && \forall integer t; !(Holds(a, t) && t < c.end);
  @*/
static inline ZemBool ZemTimeRangeCutBelow_(const ZemTimeRange* x, const ZemTimeRange* cut,
                                            ZemTimeRange* rest);

/*@ requires \valid_read(x) && \valid_read(cut) && \valid(rest);
  @ requires Apart(x, rest) && Apart(cut, rest) && Valid(*x);
  @ assigns *rest;
  @ ensures \result == 0 || \result == 1;
  @ ensures above: \let a = \old(*x); \let c = \old(*cut); \result == 1 ==> Valid(*rest) &&
  @   \forall integer t; Holds(*rest, t) <==> Holds(a, t) && t > c.begin;
  @ ensures none: \let a = \old(*x); \let c = \old(*cut); \result == 0 ==>
  @   *rest == \old(*rest) && \forall integer t; !(Holds(a, t) && t > c.begin);
  @*/
static inline ZemBool ZemTimeRangeCutAbove_(const ZemTimeRange* x, const ZemTimeRange* cut,
                                            ZemTimeRange* rest);

#include "Zem/Os/Private/ZemTimeBounds.h"
