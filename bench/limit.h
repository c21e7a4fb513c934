// The hand kernels: the same jobs by plain code written for this processor family alone, with the
// same results on the measured values and without the library's seams. They live in a source of
// their own, because ours is called in a library too.

#ifndef BENCH_LIMIT_H
#define BENCH_LIMIT_H

#include "Zem/Os/ZemTime.h"

namespace limit {

// Text to instant: any accepted form written with digits; ZEM_TIME_INFINITE for anything else.
ZemTime Parse(const char* s);

// The same of a timestamp at the beginning of `size` bytes: how many it takes, or 0 for none. Takes
// what ZemTimeParse takes.
ZemSizeT ParseWithin(ZemTime* t, const char* s, ZemSizeT size);

// The record as text with milliseconds, with its offset or without; null when it does not fit.
char* Print(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen);
char* PrintLocal(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen);

// An instant, and a record, as RFC 3339; the length of the text, or 0 when it does not fit. Offsets
// are whole minutes under a day, years have four digits, and `digits` is 0, 3, 6 or 9.
ZemSizeT PrintInstant(ZemTime t, int offset, int digits, char* buf, ZemSizeT len);
ZemSizeT PrintRecord(const ZemGregorianTime* gt, int digits, char* buf, ZemSizeT len);

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
