// The reader of timestamps, one for all of them: what stands at the beginning of a text of known
// size. It reads words of eight bytes and checks and converts all their digits at once; no byte
// outside the text is looked at.
//
// A strict reader takes T, Z and the point alone, not t, z and the comma. Callers give a constant.
//
// Not installed and exports nothing. Plain C, as the provers read it. What annotations admit they
// cannot prove of words: zeros, which stand for the bytes behind a text's end, are no digits.

#ifndef ZEM_OS_PRIVATE_ZEMTIMEREADER_H
#define ZEM_OS_PRIVATE_ZEMTIMEREADER_H

#include "Zem/Os/ZemTimeInline.h"
#include "Zem/Utils/Private/ZemCivil.h"
#include "Zem/Utils/Private/ZemDigits.h"

// What a timestamp says.
typedef struct ZemTimestamp_ {
    ZemInt dayNumber;      // since 1970: -719528 .. 2932896
    ZemUint32 year;        // 0 .. 9999
    ZemUint32 month;       // 1 .. 12
    ZemUint32 dayOfMonth;  // 1 .. the length of the month
    ZemUint32 hour;        // 0 .. 23
    ZemUint32 minute;      // 0 .. 59
    ZemUint32 second;      // 0 .. 60
    ZemUint32 nanosecs;    // 0 .. 999999999
    ZemInt offset;         // in seconds east of UTC, under a day
} ZemTimestamp_;

// YYYY-MM-DD, T or a space, and hh:mm:ss.
#define ZEM_DATE_AND_TIME_SIZE 19

// ---------------------------------------------------------------------------------------------
// Date and time
// ---------------------------------------------------------------------------------------------

// High bits where two digits, a separator, two digits and so on do not stand: of a word that was
// compared with 00-00-00 or its kind by an exclusive or, which leaves digits and zeros.
static inline ZemUint64 ZemNotPairs(ZemUint64 word)
{
    // These set the high bit of a digit from 10 on, and of a separator from 1 on.
    ZemUint64 sum = word + ZEM_WORD(0x76, 0x76, 0x7F, 0x76, 0x76, 0x7F, 0x76, 0x76);
    return (sum | word) & ZEM_HIGH_BITS;
}

// Reads the date and time at `s`, of ZEM_DATE_AND_TIME_SIZE bytes. 0 when it is none.
static inline ZemBool ZemReadDateAndTime(const char* s, ZemBool strict, ZemTimestamp_* x)
{
    // YYYY-MM-DDThh:mm:ss without its century and its T is YY-MM-DD and hh:mm:ss.
    ZemUint32 centuryDigits = ZemLoad2(s) ^ ('0' | '0' << 8);
    ZemUint64 date = ZemLoad8(s + 2) ^ ZEM_WORD('0', '0', '-', '0', '0', '-', '0', '0');
    ZemUint64 time = ZemLoad8(s + 11) ^ ZEM_WORD('0', '0', ':', '0', '0', ':', '0', '0');
    ZemUint64 dates = ZemPairUp(date);  // the numbers are bytes 0, 3 and 6
    ZemUint64 times = ZemPairUp(time) & ZEM_WORD(0xFF, 0, 0, 0xFF, 0, 0, 0xFF, 0);
    // High bits from hour 24, minute 60 and second 61 on.
    ZemUint64 late = times + ZEM_WORD(127 - 23, 0, 0, 127 - 59, 0, 0, 127 - 60, 0);
    ZemUint32 century;
    ZemUint32 yearOfCentury;
    const ZemCivilMonth* month;

    if ((ZemNotPairs(date) | ZemNotPairs(time) | ZemNotDigits(centuryDigits) |
         (late & ZEM_HIGH_BITS)) != 0) {
        return 0;
    }
    if (s[10] != ' ' && s[10] != 'T' && (strict || s[10] != 't')) {
        return 0;
    }
    century = (centuryDigits & 0xFF) * 10 + (centuryDigits >> 8 & 0xFF);
    yearOfCentury = (ZemUint32)(dates & 0xFF);
    x->year = century * 100 + yearOfCentury;
    x->month = (ZemUint32)(dates >> 24 & 0xFF);
    x->dayOfMonth = (ZemUint32)(dates >> 48 & 0xFF);
    x->hour = (ZemUint32)(times & 0xFF);
    x->minute = (ZemUint32)(times >> 24 & 0xFF);
    x->second = (ZemUint32)(times >> 48);
    if (x->month > 12) {
        return 0;
    }
    month = ZemCivilMonthIn(century, yearOfCentury, x->month);
    x->dayNumber = ZemCivilDayOfDate(century, yearOfCentury, month, x->dayOfMonth);
    // A day of 0 wraps.
    return x->dayOfMonth - 1 < month->length;
}

// ---------------------------------------------------------------------------------------------
// Fraction and zone
// ---------------------------------------------------------------------------------------------

static inline ZemBool ZemIsDigitAt(const char* s, ZemSizeT size, ZemSizeT i)
{
    return i < size && (ZemUint32)(unsigned char)s[i] - '0' <= 9;
}

// Whether a timestamp may end before byte `i`: what follows must not read as more of it.
static inline ZemBool ZemMayEndAt(const char* s, ZemSizeT size, ZemSizeT i)
{
    ZemUint32 c;
    if (i >= size || s[i] == ' ') {
        return 1;
    }
    c = (unsigned char)s[i];
    if (c - '0' <= 9 || (c | 0x20) - 'a' <= 25) {
        return 0;
    }
    return (c != ':' && c != '.' && c != ',') || !ZemIsDigitAt(s, size, i + 1);
}

// What the last of so many fraction digits counts, in nanoseconds.
static const ZemUint32 kZemFractionUnits[10] = {1000000000, 100000000, 10000000, 1000000, 100000,
                                                10000,      1000,      100,      10,      1};

// Reads the fraction, if there is one, behind the date and time of a text of at least 20 bytes;
// returns where it ends. Nine digits count, further ones are passed over.
static inline ZemSizeT ZemReadFraction(const char* s, ZemSizeT size, ZemBool strict,
                                       ZemUint32* nanosecs)
{
    ZemSizeT end = ZEM_DATE_AND_TIME_SIZE;
    ZemUint64 word;
    ZemUint64 notDigits;
    ZemUint32 digits;

    *nanosecs = 0;
    if (s[end] != '.' && (strict || s[end] != ',')) {
        return end;
    }
    word = ZemLoadWithin(s, size, end + 1) ^ ZEM_BYTES('0');
    notDigits = ZemNotDigits(word);
    if (notDigits != 0) {
        digits = ZemCountBytes(notDigits);
        //@ admit only_zeros_behind: digits <= size - 20;
        if (digits == 0) {
            return end;
        }
        // Shifted to the end of the word, the digits have zeros before them.
        *nanosecs = ZemNumberOf8(word << (64 - 8 * digits)) * kZemFractionUnits[digits];
        return end + 1 + digits;
    }
    //@ admit only_zeros_behind: size >= 28;
    *nanosecs = ZemNumberOf8(word) * 10;
    end += 9;
    if (ZemIsDigitAt(s, size, end)) {
        *nanosecs += (ZemUint32)(unsigned char)s[end] - '0';
        ++end;
    }
    /*@ loop invariant 19 <= end <= size;
      @ loop assigns end;
      @ loop variant size - end;
      @*/
    while (ZemIsDigitAt(s, size, end)) {
        ++end;
    }
    return end;
}

// The number that two digits at byte `i` say; 100 where there are not two.
static inline ZemUint32 ZemTwoDigitsAt(const char* s, ZemSizeT size, ZemSizeT i)
{
    if (!ZemIsDigitAt(s, size, i) || !ZemIsDigitAt(s, size, i + 1)) {
        return 100;
    }
    return ((ZemUint32)(unsigned char)s[i] - '0') * 10 + ((ZemUint32)(unsigned char)s[i + 1] - '0');
}

// Reads the offset whose sign is byte `i`, in any form: hh, hhmm, hhmmss, hh:mm or hh:mm:ss.
// Returns where it ends; 0 when it is none.
static inline ZemSizeT ZemReadOffset(const char* s, ZemSizeT size, ZemSizeT i, ZemInt* offset)
{
    ZemUint32 sign = (ZemUint32)(unsigned char)s[i] - '+';  // + 0, - 2
    ZemUint32 hours = ZemTwoDigitsAt(s, size, i + 1);
    ZemSizeT end = i + 3;
    ZemSizeT colon = end < size && s[end] == ':' ? 1 : 0;
    ZemUint32 minutes = 0;
    ZemUint32 seconds = 0;

    if ((sign != 0 && sign != 2) || hours > 23) {
        return 0;
    }
    if (ZemTwoDigitsAt(s, size, end + colon) < 100) {
        minutes = ZemTwoDigitsAt(s, size, end + colon);
        end += colon + 2;
        if ((colon == 0 || (end < size && s[end] == ':')) &&
            ZemTwoDigitsAt(s, size, end + colon) < 100) {
            seconds = ZemTwoDigitsAt(s, size, end + colon);
            end += colon + 2;
        }
    }
    if (minutes > 59 || seconds > 59 || !ZemMayEndAt(s, size, end)) {
        return 0;
    }
    *offset = (ZemInt)((hours * 60 + minutes) * 60 + seconds) * (1 - (ZemInt)sign);
    return end;
}

// Reads the zone at byte `i`, at most `size`: Z, or an optional space and an offset. Returns where
// it ends; 0 when it is none.
static inline ZemSizeT ZemReadZone(const char* s, ZemSizeT size, ZemSizeT i, ZemBool strict,
                                   ZemInt* offset)
{
    ZemUint64 word = ZemLoadWithin(s, size, i);
    ZemUint32 space;
    ZemUint32 sign;
    ZemUint64 digits;
    ZemUint64 pairs;
    ZemUint64 wrong;
    ZemSizeT end;

    if ((word & (strict ? 0xFF : 0xDF)) == 'Z') {
        *offset = 0;
        return ZemMayEndAt(s, size, i + 1) ? i + 1 : 0;
    }
    space = (word & 0xFF) == ' ' ? 1 : 0;
    word >>= 8 * space;
    i += space;
    sign = (ZemUint32)(word & 0xFF) - '+';  // + 0, - 2
    // hh:mm, hhmm and hh as words, the hours in bytes 0 and 1, the minutes in bytes 3 and 4.
    if ((word >> 24 & 0xFF) == ':') {
        digits = (word >> 8 & 0xFFFFFFFFFF) ^ ZEM_WORD('0', '0', ':', '0', '0', 0, 0, 0);
        end = i + 6;
    } else {
        ZemUint64 minutes = (word >> 24 & 0xFFFF) ^ ('0' | '0' << 8);
        ZemUint64 has = (minutes & 0xFF) <= 9 ? 1 : 0;
        digits = ((word >> 8 & 0xFFFF) ^ ('0' | '0' << 8)) | ((0 - has) & minutes) << 24;
        end = i + 3 + 2 * has;
    }
    pairs = ZemPairUp(digits) & ZEM_WORD(0xFF, 0, 0, 0xFF, 0, 0, 0, 0);
    // High bits from hour 24 and minute 60 on.
    wrong = ZemNotPairs(digits) |
            ((pairs + ZEM_WORD(127 - 23, 0, 0, 127 - 59, 0, 0, 0, 0)) & ZEM_HIGH_BITS);
    if ((wrong | (sign & ~(ZemUint32)2)) == 0 && ZemMayEndAt(s, size, end)) {
        //@ admit only_zeros_behind: end <= size;
        *offset = (ZemInt)((pairs & 0xFF) * 60 + (pairs >> 24 & 0xFF)) * 60 * (1 - (ZemInt)sign);
        return end;
    }
    return i < size ? ZemReadOffset(s, size, i, offset) : 0;
}

// ---------------------------------------------------------------------------------------------
// The whole
// ---------------------------------------------------------------------------------------------

// Reads a timestamp with its zone at the beginning of the `size` bytes at `s`. Returns how many
// bytes it takes, or 0 when there is none; what `x` holds then means nothing.
static inline ZemSizeT ZemReadTimestamp(const char* s, ZemSizeT size, ZemBool strict,
                                        ZemTimestamp_* x)
{
    ZemSizeT end;
    if (size <= ZEM_DATE_AND_TIME_SIZE || !ZemReadDateAndTime(s, strict, x)) {
        return 0;
    }
    end = ZemReadFraction(s, size, strict, &x->nanosecs);
    return ZemReadZone(s, size, end, strict, &x->offset);
}

// Whether a zone, or what may have been meant as one, stands at byte `i`: a point or a comma and a
// space may come before it.
static inline ZemBool ZemIsZoneAt(const char* s, ZemSizeT size, ZemSizeT i)
{
    i += i < size && (s[i] == '.' || s[i] == ',') ? 1 : 0;
    i += i < size && s[i] == ' ' ? 1 : 0;
    if (i >= size) {
        return 0;
    }
    if (s[i] == 'Z' || s[i] == 'z') {
        return ZemMayEndAt(s, size, i + 1);
    }
    return (s[i] == '+' || s[i] == '-') && ZemIsDigitAt(s, size, i + 1);
}

// The same for one without a zone, which must not have one either.
static inline ZemSizeT ZemReadLocalTimestamp(const char* s, ZemSizeT size, ZemTimestamp_* x)
{
    ZemSizeT end = ZEM_DATE_AND_TIME_SIZE;

    if (size < ZEM_DATE_AND_TIME_SIZE || !ZemReadDateAndTime(s, 0, x)) {
        return 0;
    }
    x->offset = 0;
    x->nanosecs = 0;
    if (size > end) {
        end = ZemReadFraction(s, size, 0, &x->nanosecs);
    }
    return ZemMayEndAt(s, size, end) && !ZemIsZoneAt(s, size, end) ? end : 0;
}

// Fills a record with what a timestamp says, as ZemGregorianTimeConstructFields and
// ZemGregorianTimeSetUTCOffset do.
static inline void ZemFillRecord(ZemGregorianTime* gt, const ZemTimestamp_* x)
{
    ZemMemSet(&gt->tm, 0, sizeof gt->tm);
    gt->tm.tm_year = (int)x->year - 1900;
    gt->tm.tm_mon = (int)x->month - 1;
    gt->tm.tm_mday = (int)x->dayOfMonth;
    gt->tm.tm_hour = (int)x->hour;
    gt->tm.tm_min = (int)x->minute;
    gt->tm.tm_sec = (int)x->second;
    gt->tm.tm_gmtoff = x->offset;
    gt->nanosecs = x->nanosecs;
}

#endif
