// The writer of timestamps: digits into words, words into the caller's buffer.
//
// Not installed and exports nothing. Plain C, as the provers read it.

#ifndef ZEM_OS_PRIVATE_ZEMTIMEWRITER_H
#define ZEM_OS_PRIVATE_ZEMTIMEWRITER_H

#include "Zem/Os/ZemTimeInline.h"
#include "Zem/Utils/Private/ZemCivil.h"
#include "Zem/Utils/Private/ZemDigits.h"

// The fields as they are printed.
typedef struct ZemPrintedTime_ {
    ZemInt year;
    ZemInt month;
    ZemInt day;
    ZemInt hour;
    ZemInt minute;
    ZemInt second;
    ZemInt64 nanosecs;
} ZemPrintedTime_;

// Moves the fields one second back.
static inline void ZemBorrowSecond(ZemPrintedTime_* x)
{
    if (x->second > 0) {
        x->second -= 1;
        return;
    }
    x->second = 59;
    if (x->minute > 0) {
        x->minute -= 1;
        return;
    }
    x->minute = 59;
    if (x->hour > 0) {
        x->hour -= 1;
        return;
    }
    x->hour = 23;
    if (x->day > 1) {
        x->day -= 1;
        return;
    }
    if (x->month > 1) {
        x->month -= 1;
    } else {
        x->month = 12;
        x->year = (ZemInt)((ZemUint)x->year - 1);
    }
    x->day = ZemCivilDaysInMonth(x->year, x->month);
}

// The fields of a record as they stand.
static inline ZemPrintedTime_ ZemFieldsOfRecord(const ZemGregorianTime* gt)
{
    ZemPrintedTime_ x;
    x.year = ZemGregorianTimeGetYear(gt);
    x.month = ZemGregorianTimeGetMonth(gt);
    x.day = ZemGregorianTimeGetMonthDay(gt);
    x.hour = ZemGregorianTimeGetHour(gt);
    x.minute = ZemGregorianTimeGetMinute(gt);
    x.second = ZemGregorianTimeGetSecond(gt);
    x.nanosecs = gt->nanosecs;
    return x;
}

// The fields of a record's text. One built from an instant before 1970 counts back from the second
// that it names: its text is the instant rounded down.
static inline ZemPrintedTime_ ZemFieldsToPrint(const ZemGregorianTime* gt)
{
    ZemPrintedTime_ x = ZemFieldsOfRecord(gt);
    if (x.nanosecs < 0 && x.nanosecs > -1000000000) {
        ZemBorrowSecond(&x);
        x.nanosecs += 1000000000;
    }
    return x;
}

// Whether every field fills its width: a year of 0 to 9999, nanoseconds within a second, and two
// digits for the others, below 64, which is one test for all of them.
static inline ZemBool ZemFieldsFillTheirWidth(const ZemPrintedTime_* x)
{
    ZemUint32 fields = (ZemUint32)x->month | (ZemUint32)x->day | (ZemUint32)x->hour |
                       (ZemUint32)x->minute | (ZemUint32)x->second;
    return (ZemUint32)x->year <= 9999 && fields < 64 && (ZemUint64)x->nanosecs <= 999999999;
}

// Writes `value`, below 100, in two digits.
static inline void ZemWriteTwo(char* p, ZemUint32 value)
{
    memcpy(p, kZemDigitPairs + 2 * (ZemSizeT)value, 2);
}

// Writes YYYY-MM-DD, the separator and hh:mm:ss, 19 bytes, of fields that fill their width.
static inline void ZemWriteDateAndTime(char* p, const ZemPrintedTime_* x, char separator)
{
    ZemWriteTwo(p, (ZemUint32)x->year / 100);
    ZemWriteTwo(p + 2, (ZemUint32)x->year % 100);
    p[4] = '-';
    ZemWriteTwo(p + 5, (ZemUint32)x->month);
    p[7] = '-';
    ZemWriteTwo(p + 8, (ZemUint32)x->day);
    p[10] = separator;
    ZemWriteTwo(p + 11, (ZemUint32)x->hour);
    p[13] = ':';
    ZemWriteTwo(p + 14, (ZemUint32)x->minute);
    p[16] = ':';
    ZemWriteTwo(p + 17, (ZemUint32)x->second);
}

// An offset as it is printed.
typedef struct ZemPrintedOffset_ {
    ZemUint32 negative;  // 1 or 0
    ZemUint32 hours;     // 0 .. 596523
    ZemUint32 minutes;   // 0 .. 59
    ZemUint32 seconds;   // 0 .. 59
} ZemPrintedOffset_;

static inline ZemPrintedOffset_ ZemOffsetToPrint(ZemInt offset)
{
    ZemPrintedOffset_ x;
    // A branch on the sign would be a misprediction, of 6 ns in 22.
    ZemUint32 bits = (ZemUint32)offset;
    ZemUint32 magnitude;
    ZemUint32 allMinutes;
    x.negative = bits / 2147483648U;
    magnitude = (bits ^ (0 - x.negative)) + x.negative;
    allMinutes = magnitude / 60;
    x.hours = magnitude / 3600;
    x.minutes = allMinutes - 60 * x.hours;
    x.seconds = magnitude - 60 * allMinutes;
    return x;
}

// The bytes ±hh:mm and two zeros, of an offset under 100 hours.
static inline ZemUint64 ZemOffsetWord(const ZemPrintedOffset_* x)
{
    return ('+' + 2 * x->negative) | ZemTwoDigits(x->hours) << 8 | (ZemUint64)':' << 24 |
           (ZemUint64)ZemTwoDigits(x->minutes) << 32;
}

#endif
