// The library's wrappers of standard C functions: the same results, for less. What takes no lock or
// does not depend on the locale says so.

#ifndef ZEM_UTILS_ZEMSTDCLIB_H
#define ZEM_UTILS_ZEMSTDCLIB_H

#include <time.h>

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define ZEM_PRINTF_LIKE(format_, first_) __attribute__((format(printf, format_, first_)))
#else
#define ZEM_PRINTF_LIKE(format_, first_)
#endif

// POSIX snprintf: formats its further arguments by `format` into `buf` and returns the length of
// the complete text without the NUL, also when the text was cut. Writes at most `len` bytes, the
// NUL included, and nothing when `len` is 0 (`buf` may then be null); a text that does not fit is
// cut to its first `len` - 1 bytes. %d, %u and %s, with a zero flag and a width for the numbers,
// take a short way of their own, which does not depend on the locale; any other format goes to
// vsnprintf whole, and then a result of SIZE_MAX reports what vsnprintf reports as a negative one.
ZEM_API ZemSizeT ZemSNPrintf(char* buf, ZemSizeT len, const char* format, ...)
    ZEM_PRINTF_LIKE(3, 4);

// Copies the text `src` into `dst`, cut to fit: writes at most `size` bytes, the NUL included, and
// nothing when `size` is 0. Returns the length of `src`; a result of `size` or more means cut.
// The two must not overlap.
ZEM_API ZemSizeT ZemStrLCpy(char* dst, const char* src, ZemSizeT size);

// Fills the `size` bytes at `dst` with the low 8 bits of `value` and returns `dst`. With `size` 0
// nothing is touched and `dst` may be null.
ZEM_API ZemVoidPtr ZemMemSet(ZemVoidPtr dst, int value, ZemSizeT size);

// What strtoul returns for the same arguments, cut to its low 32 bits; where strtoul stores the
// end of the number, this stores the same (`end` may be null). `start` is a NUL-terminated text.
// Decimal digits alone take a short way; for anything else strtoul is called, which skips what the
// locale counts as white space. errno is as strtoul leaves it.
ZEM_API ZemUint32 ZemStrToUint32(const char* start, char** end, int base);

// What gmtime_r returns where the process's zone counts no leap seconds: fills every field of
// `result` with the UTC calendar time of `*secs` seconds since 1970 and returns it, or returns
// null, with `result` untouched, when the year does not fit tm_year. tm_zone points to a constant
// text. Takes no lock and leaves errno alone (built with ZEMTIME_LIBC_CALENDAR: as gmtime_r does).
ZEM_API struct tm* ZemGmTimeR(const time_t* secs, struct tm* result);

// What timegm returns where the process's zone counts no leap seconds: the seconds since 1970 that
// the fields of `t` name, read as UTC, or -1 when the year they come to does not fit tm_year. (Only
// at the two ends of tm_year may a C library differ: glibc leaves tm_sec out when it asks whether
// the year fits, and so refuses some fields that come to a year in range.) Fields may lie outside
// their usual ranges; tm_wday, tm_yday, tm_isdst, tm_gmtoff and tm_zone are not read. Unlike
// timegm, leaves `t` as it is and takes no lock (built with ZEMTIME_LIBC_CALENDAR: as timegm does).
ZEM_API time_t ZemTimeGm(const struct tm* t);

// localtime_r itself, its lock included, for callers whose language mode hides its name.
ZEM_API struct tm* ZemLocalTimeR(const time_t* secs, struct tm* result);

#ifdef __cplusplus
}
#endif

#endif
