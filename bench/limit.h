// The limit: the same jobs by plain kernels written for this processor family alone, with the same
// results on the measured values and without the library's seams. They live in a source of their
// own, because ours is called in a library too.

#ifndef BENCH_LIMIT_H
#define BENCH_LIMIT_H

#include "Zem/Os/ZemTime.h"

namespace limit {

// Text to instant: any accepted form written with digits; ZEM_TIME_INFINITE for anything else.
ZemTime Parse(const char* s);

// The record as text with milliseconds and offset; null when it does not fit.
char* Print(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen);

// Instant to record.
ZemGregorianTime* BreakDown(ZemGregorianTime* gt, ZemTime t);

// Record to instant; ZEM_TIME_INFINITE when it does not fit.
ZemTime Compose(const ZemGregorianTime* gt);

// Compact duration text, written digit by digit and pair by pair.
const char* PrintCompact(ZemTime t, char* buf, ZemSizeT len);

// Two ranges; the families inline the same where ours is inlined.
void Intersect(const ZemTimeRange* x, const ZemTimeRange* y, ZemTimeRange* result);
bool Contains(const ZemTimeRange* x, const ZemTimeRange* y);

}  // namespace limit

#endif
