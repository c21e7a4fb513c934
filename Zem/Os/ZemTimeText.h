// Texts with a length: timestamps and durations read from the beginning of any bytes, and printed
// as RFC 3339 has them. An addition to ZemTime.h, whose own parser and printers keep to texts that
// end with a NUL. Plain C11 and C++17.
//
// The readers take a pointer and a size, look at nothing outside, and return how many bytes they
// took: log lines, fields of larger texts and string views need no copy and no NUL. They return 0
// where there is nothing to read, and then the caller's storage is as it was. A whole text is one
// for which the result is its size. None of them allocates, takes a lock or depends on the locale
// or the process's zone; a pointer may be null where the size is 0.
//
// Seconds are POSIX seconds, whatever the library was built with: see ZemTime.h.

#ifndef ZEM_OS_ZEMTIMETEXT_H
#define ZEM_OS_ZEMTIMETEXT_H

#include "Zem/Os/ZemTime.h"

#ifdef __cplusplus
extern "C" {
#endif

// ---------------------------------------------------------------------------------------------
// Reading
// ---------------------------------------------------------------------------------------------

// Reads the timestamp at the beginning of the `size` bytes at `s`, stores the instant that it names
// at `t`, and returns how many bytes it takes; 0, with `t` untouched, when there is none:
//
//   YYYY-MM-DD, then T, t or one space, then hh:mm:ss (years 0000 to 9999, a date that there is,
//   hours 00 to 23, minutes 00 to 59, seconds 00 to 60)
//   optionally . or , and one or more digits (nine count, further ones are passed over)
//   Z or z, or an optional space, + or - and one of hh, hhmm, hhmmss, hh:mm, hh:mm:ss (00 to 23
//   hours, 00 to 59 minutes and seconds)
//
// What follows may not read as more of it: no ASCII letter or digit, and no : . or , in front of a
// digit. A shorter timestamp is never taken instead. A NUL is a byte like any other.
//
// Stores ZEM_TIME_INFINITE, and returns the bytes all the same, when a ZemTime does not reach the
// instant. 1969-12-31T23:59:59Z is -1 s like any other second.
ZEM_API ZemSizeT ZemTimeParse(ZemTime* t, const char* s, ZemSizeT size);

// The same, but fills the record `gt` with the fields as they are written and the UTC offset beside
// them. tm_wday, tm_yday and tm_isdst are 0 and tm_zone is null. Of the texts that end with a NUL
// it takes fewer than ZemGregorianTimeConstructCStr where that reads numbers as strtoul does (white
// space, signs), offsets without bounds or a point without digits, and more where that wants T, Z
// and a point.
ZEM_API ZemSizeT ZemGregorianTimeParse(ZemGregorianTime* gt, const char* s, ZemSizeT size);

// Reads a date and time that has no zone, with or without a fraction, in the same way: the offset
// of `gt` is 0. Returns 0 where a zone follows, or what may have been meant as one: Z, or a sign
// and a digit, behind an optional point or comma and an optional space.
ZEM_API ZemSizeT ZemGregorianTimeParseLocal(ZemGregorianTime* gt, const char* s, ZemSizeT size);

// Reads the duration at the beginning of the `size` bytes at `s`, stores it in nanoseconds at `t`,
// and returns how many bytes it takes; 0, with `t` untouched, when there is none: an optional + or
// - for the whole, then one or more numbers, each with an optional space and a unit behind it and
// an optional space between them, such as 1h30m, 1.5s, -250ms, 90 s, 2 h 5 m, and whatever
// ZemTimePrintCompact and ZemTimePrintDuration print.
//
//   units: ns, us or µs (either of its two characters, in UTF-8), ms, s, m, h, d, w
//   numbers: digits, optionally a point and digits (18 count, further ones are passed over)
//
// Numbers are added up, in any order, each cut to whole nanoseconds. What follows may not read as
// more of it, as above; a number behind a space that has no unit is no part of it: of "1h 5" the 1h
// is taken. Stores ZEM_TIME_INFINITE, or the smallest ZemTime for a negative one, and
// returns the bytes, where the sum does not fit.
ZEM_API ZemSizeT ZemTimeParseDuration(ZemTime* t, const char* s, ZemSizeT size);

// ---------------------------------------------------------------------------------------------
// Printing
// ---------------------------------------------------------------------------------------------

// The printers write at most `len` bytes into `buf`, the NUL included, and nothing when `len` is 0
// (`buf` may then be null). A text that does not fit is cut to its first `len` - 1 bytes. They
// return the length of the whole text without its NUL: a result of `len` or more means cut. What
// lies in the `len` bytes behind the NUL is not kept.

// Prints the instant `t` as RFC 3339 has it, at the UTC offset `offset` in seconds, any value:
// 2024-03-01T12:30:45.250+01:00; Z at offset 0; with seconds where the offset has them. `digits`
// says how many digits the fraction has, cut, not rounded: none for 0 (or less), 9 for 9 (or more).
// Every instant prints, rounded down. 36 bytes are enough for offsets under 100 hours that are
// whole minutes, 39 for others under 100 hours, 43 for any.
ZEM_API ZemSizeT ZemTimePrint(ZemTime t, ZemInt offset, ZemInt digits, char* buf, ZemSizeT len);
#define ZEM_TIME_PRINT_SIZE 43

// Prints the record `gt` in the same form: its fields as they stand and its own offset. Negative
// nanoseconds borrow a second, so that a record built from a time before 1970 prints as the instant
// rounded down. Fields that do not fill their width print as %04d and %02d do. 0, with an empty
// text, for a record whose nanoseconds are not within a second, which no function here builds. 39
// bytes are enough for years 0 to 9999 and offsets under 100 hours.
ZEM_API ZemSizeT ZemGregorianTimePrint(const ZemGregorianTime* gt, ZemInt digits, char* buf,
                                       ZemSizeT len);
#define ZEM_GREGORIAN_TIME_PRINT_SIZE 39

// Prints the duration `t`, any value, exactly: 1h30m, 1.5s, 250ms, -1h30m0.000000001s, 0s. Whole
// hours, minutes and seconds that are 0 are left out; under a second the unit is ms, us or ns.
// ASCII. ZemTimeParseDuration reads the text back to the same value. 26 bytes are enough.
ZEM_API ZemSizeT ZemTimePrintDuration(ZemTime t, char* buf, ZemSizeT len);
#define ZEM_TIME_DURATION_SIZE 26

#ifdef __cplusplus
}
#endif

#endif
