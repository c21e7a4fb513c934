// Time ranges as closed sets of instants, and their order. Two of the records may be one.

#include "Zem/Os/ZemTime.h"

/*@ predicate Holds(ZemTimeRange r, integer t) = r.end <= t <= r.begin;
  @ predicate Same(ZemTimeRange a, ZemTimeRange b) = a.begin == b.begin && a.end == b.end;
  @ predicate Before(ZemTimeRange a, ZemTimeRange b) =
  @   a.end < b.end || (a.end == b.end && a.begin < b.begin);
  @
  @ predicate Apart{L}(ZemTimeRange* a, ZemTimeRange* b) = a == b || \separated(a, b);
  @
  @ lemma irreflexive: \forall ZemTimeRange a; !Before(a, a);
  @ lemma transitive: \forall ZemTimeRange a, b, c; Before(a, b) && Before(b, c) ==> Before(a, c);
  @ lemma total: \forall ZemTimeRange a, b; Before(a, b) || Before(b, a) || Same(a, b);
  @ lemma exclusive: \forall ZemTimeRange a, b; Same(a, b) ==> !Before(a, b) && !Before(b, a);
  @*/

/*@ requires \valid_read(x) && \valid_read(y);
  @ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures \result == 1 <==> Same(*x, *y);
  @*/
ZemBool ZemTimeRangeEqual(const ZemTimeRange* x, const ZemTimeRange* y);

/*@ requires \valid_read(x) && \valid_read(y);
  @ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures order: \result == 1 <==> Before(*x, *y);
  @*/
ZemBool ZemTimeRangeLess(const ZemTimeRange* x, const ZemTimeRange* y);

/*@ requires \valid_read(x);
  @ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures some_instant: \result == 1 ==> Holds(*x, x->end);
  @ ensures no_instant: \result == 0 ==> \forall integer t; !Holds(*x, t);
  @*/
ZemBool ZemTimeRangeIsValid(const ZemTimeRange* x);

/*@ requires \valid_read(x) && \valid_read(y) && \valid(result);
  @ requires Apart(x, result) && Apart(y, result);
  @ assigns *result;
  @ ensures in_both: \let a = \old(*x); \let b = \old(*y);
  @   \forall integer t; Holds(*result, t) <==> Holds(a, t) && Holds(b, t);
  @*/
void ZemTimeRangeIntersection(const ZemTimeRange* x, const ZemTimeRange* y, ZemTimeRange* result);

/*@ requires \valid_read(x) && \valid_read(y);
  @ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures some_instant: \result == 1 ==>
  @   \let t = \max(x->end, y->end); Holds(*x, t) && Holds(*y, t);
  @ ensures no_instant: \result == 0 ==> \forall integer t; !(Holds(*x, t) && Holds(*y, t));
  @*/
ZemBool ZemTimeRangeIntersects(const ZemTimeRange* x, const ZemTimeRange* y);

/*@ requires \valid_read(x) && \valid_read(y) && \valid(result);
  @ requires Apart(x, result) && Apart(y, result);
  @ assigns *result;
  @ ensures covers: \forall integer t; Holds(\old(*x), t) || Holds(\old(*y), t) ==>
  @   Holds(*result, t);
  @ ensures smallest: \let a = \old(*x); \let b = \old(*y);
  @   (result->begin == a.begin || result->begin == b.begin) &&
  @   (result->end == a.end || result->end == b.end);
  @ ensures bounds: \let a = \old(*x); \let b = \old(*y);
  @   result->begin >= a.begin && result->begin >= b.begin &&
  @   result->end <= a.end && result->end <= b.end;
  @*/
void ZemTimeRangeUnion(const ZemTimeRange* x, const ZemTimeRange* y, ZemTimeRange* result);

/*@ requires \valid_read(x) && \valid_read(y);
  @ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures \result == 1 <==> x->begin >= y->begin && x->end <= y->end;
  @ ensures inside: \result == 1 ==> \forall integer t; Holds(*y, t) ==> Holds(*x, t);
  @ ensures outside: \result == 0 && y->begin >= y->end ==>
  @   !Holds(*x, y->begin) || !Holds(*x, y->end);
  @*/
ZemBool ZemTimeRangeSubsumes(const ZemTimeRange* x, const ZemTimeRange* y);

/*@ requires \valid(x) && \valid(y) && Apart(x, y);
  @ assigns *x, *y;
  @ ensures Same(*x, \old(*y)) && Same(*y, \old(*x));
  @*/
void ZemTimeRangeSwap(ZemTimeRange* x, ZemTimeRange* y);

#include "Zem/Os/ZemTimeInline.h"
