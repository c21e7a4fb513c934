// Sets of ranges: union, intersection, difference, gaps and look-ups over arrays of time ranges.
//
// A set is a ZemVector_ZemTimeRange that is normal: its ranges are valid and in order, and at least
// one instant is missing between neighbours. Instants are integers, so that [1, 2] and [3, 4] leave
// nothing out: as a set they are [1, 4]. Each set of instants has one normal form; two sets are
// equal when ZemVector_ZemTimeRangeEqual says that their vectors are.
//
// An empty vector is a set. ZemTimeRangeSetNormalize makes one of any vector, and
// ZemTimeRangeSetAdd one range at a time; every function here leaves and returns normal sets.
// Remember that a range's `end` is its lower and `begin` its upper bound, both inclusive. Sets may
// hold the instants at both ends of the 64-bit range.
//
// What all functions have in common:
//
// - Vectors must be normal, except where a function says that it takes any. On others the result is
//   of no use, but memory stays sound.
// - Only results are written. `x` and `y` may be one vector, and `result` may be either of them or
//   both; a range that is passed by pointer may lie in any vector.
// - A call allocates at most once, on the allocator of the vector that it writes, and not at all
//   where that vector has the capacity that the function says it needs. A new block has just that
//   capacity and replaces the old one, which is held until then. Questions never allocate.
// - 0 is returned when that allocation fails or would be of more than ZemVector_ZemTimeRangeMaxSize
//   ranges; everything is then as it was.
// - Iterators into a vector that is written do not survive.
//
// Below, n and m are the sizes of `x` and `y`. O(n + m) is the worst case: where one side has many
// ranges between two of the other, they are searched, and copied at once, but not looked at.

#ifndef ZEM_OS_ZEMTIMERANGESET_H
#define ZEM_OS_ZEMTIMERANGESET_H

#include "Zem/Os/ZemTime.h"

#ifdef __cplusplus
extern "C" {
#endif

// ---------------------------------------------------------------------------------------------
// Normal form
// ---------------------------------------------------------------------------------------------

// Makes any vector a set, in place: drops invalid ranges, sorts the rest, and unites those that
// overlap or touch. Returns 1: it allocates nothing. O(n) for ranges in the order of their lower
// bounds, whether they overlap or not, O(n log n) for others; what is normal already is only read.
ZEM_API ZemBool ZemTimeRangeSetNormalize(ZemVector_ZemTimeRange* x);

// 1 when the vector is a set, else 0; takes any vector. O(n).
ZEM_API ZemBool ZemTimeRangeSetIsNormal(const ZemVector_ZemTimeRange* x);

// As ZemTimeRangeSetNormalize, and also closes gaps: the next range is united with those before it
// when its lower bound is at most `reach` after their upper bound. A reach of 1 or less joins only
// what touches; one of ZEM_TIME_INFINITE leaves gaps of 2^63 and more. Takes any vector; returns 1.
ZEM_API ZemBool ZemTimeRangeSetJoin(ZemVector_ZemTimeRange* x, ZemTime reach);

// ---------------------------------------------------------------------------------------------
// Algebra
// ---------------------------------------------------------------------------------------------

// The instants that `x` or `y` holds. Exactly those: the pairwise ZemTimeRangeUnion gives the hull
// of two ranges instead, with what lies between them. O(n + m); needs a capacity of n + m.
ZEM_API ZemBool ZemTimeRangeSetUnion(const ZemVector_ZemTimeRange* x,
                                     const ZemVector_ZemTimeRange* y,
                                     ZemVector_ZemTimeRange* result);

// The instants that both hold. O(n + m); needs a capacity of n + m - 1, of 0 when one is empty.
ZEM_API ZemBool ZemTimeRangeSetIntersection(const ZemVector_ZemTimeRange* x,
                                            const ZemVector_ZemTimeRange* y,
                                            ZemVector_ZemTimeRange* result);

// The instants that `x` holds and `y` does not. O(n + m); needs a capacity of n + m, of 0 when `x`
// is empty.
ZEM_API ZemBool ZemTimeRangeSetDifference(const ZemVector_ZemTimeRange* x,
                                          const ZemVector_ZemTimeRange* y,
                                          ZemVector_ZemTimeRange* result);

// The instants that one of the two holds and the other does not. O(n + m), with no search; needs a
// capacity of n + m.
ZEM_API ZemBool ZemTimeRangeSetSymmetricDifference(const ZemVector_ZemTimeRange* x,
                                                   const ZemVector_ZemTimeRange* y,
                                                   ZemVector_ZemTimeRange* result);

// The instants of `window` that `x` does not hold; with a window of all instants
// ({INT64_MAX, INT64_MIN}) the complement. None for an invalid window. O(log n) and the size of the
// result, which is the capacity it needs: at most one more than ranges of `x` meet the window.
ZEM_API ZemBool ZemTimeRangeSetGaps(const ZemVector_ZemTimeRange* x, const ZemTimeRange* window,
                                    ZemVector_ZemTimeRange* result);

// Adds the instants of `t` to the set; an invalid range has none. O(log n) to find the place and
// O(n) to make room or to close ranks, next to nothing at the end. Grows as ZemVector_..Insert
// does: to twice the capacity, when the vector is full and `t` stands apart from all its ranges.
ZEM_API ZemBool ZemTimeRangeSetAdd(ZemVector_ZemTimeRange* x, const ZemTimeRange* t);

// Takes the instants of `t` out of the set. As ZemTimeRangeSetAdd; grows when the vector is full
// and `t` leaves both ends of a range.
ZEM_API ZemBool ZemTimeRangeSetRemove(ZemVector_ZemTimeRange* x, const ZemTimeRange* t);

// ---------------------------------------------------------------------------------------------
// Questions
// ---------------------------------------------------------------------------------------------

// The range that holds `t`, or the exceptional iterator (null) when none does. O(log n).
ZEM_API ZemVector_ZemTimeRangeConstIterator ZemTimeRangeSetFind(const ZemVector_ZemTimeRange* x,
                                                                ZemTime t);

// The first range whose upper bound is `t` or later: the one that holds `t` or else the next one
// after it; the vector's end when there is none. O(log n).
ZEM_API ZemVector_ZemTimeRangeConstIterator
ZemTimeRangeSetLowerBound(const ZemVector_ZemTimeRange* x, ZemTime t);

// 1 when the two have an instant in common, else 0. O(n + m), but ends at the first.
ZEM_API ZemBool ZemTimeRangeSetIntersects(const ZemVector_ZemTimeRange* x,
                                          const ZemVector_ZemTimeRange* y);

// 1 when `x` holds every instant that `y` holds, else 0; every set subsumes itself and the empty
// one. O(n + m), but ends at the first that is missing.
ZEM_API ZemBool ZemTimeRangeSetSubsumes(const ZemVector_ZemTimeRange* x,
                                        const ZemVector_ZemTimeRange* y);

// How long the ranges are together, in nanoseconds: the sum of upper - lower bound, 0 for a single
// instant, 2^64 - 1 for all there are. (The count of instants is this and the size, modulo 2^64.)
// For vectors that are not normal the sum wraps. O(n).
ZEM_API ZemUint64 ZemTimeRangeSetLength(const ZemVector_ZemTimeRange* x);

#ifdef __cplusplus
}
#endif

#endif
