// The civil arithmetic: days and seconds since 1970 to dates and times of the proleptic Gregorian
// calendar, and back. After Neri and Schneider, "Euclidean affine functions and their application
// to calendar algorithms" (2022): a computational calendar whose years begin on March 1, so that
// the leap day comes last.
//
// Not installed and exports nothing. Plain C, as the provers read it.

#ifndef ZEM_UTILS_PRIVATE_ZEMCIVIL_H
#define ZEM_UTILS_PRIVATE_ZEMCIVIL_H

#include <time.h>

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

// ---------------------------------------------------------------------------------------------
// The calendar's rules
// ---------------------------------------------------------------------------------------------

static inline ZemBool ZemCivilIsLeapYear(ZemInt year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// For a month of 1 to 12.
static inline ZemInt ZemCivilDaysInMonth(ZemInt year, ZemInt month)
{
    if (month == 2) {
        return ZemCivilIsLeapYear(year) ? 29 : 28;
    }
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

// ---------------------------------------------------------------------------------------------
// From days to dates
// ---------------------------------------------------------------------------------------------

typedef struct ZemCivilDate {
    ZemUint32 year;       // modulo 2^32
    ZemUint32 month;      // 1 .. 12
    ZemUint32 day;        // 1 .. 31
    ZemUint32 dayOfYear;  // 0 .. 365
} ZemCivilDate;

#define ZEM_CIVIL_DAYS_PER_ERA 146097  // 400 years, a whole number of weeks

// From 0000-03-01, a Wednesday, to 1970-01-01.
#define ZEM_CIVIL_EPOCH_DAY 719468

// The date in a century, counted from 0000-03-01, of the day d (0 .. 36524): `fourDays` is
// 4 * d + 3.
static inline ZemCivilDate ZemCivilDateInCentury(ZemUint32 century, ZemUint32 fourDays)
{
    // With d days in four years, (4 * day + 3) / d is the year. 2939745 / 2^32 is 1 / 1461, near
    // enough for the days of a century.
    ZemUint64 years = (ZemUint64)2939745 * (fourDays | 3);
    ZemUint32 yearOfCentury = (ZemUint32)(years / 4294967296);            // 0 .. 99
    ZemUint32 dayOfYear = (ZemUint32)(years % 4294967296) / 2939745 / 4;  // 0 .. 365
    // 2141 / 2^16 of a month a day.
    ZemUint32 months = 2141 * dayOfYear + 197913;
    ZemUint32 month = months / 65536;  // 3 .. 14: March .. February

    // January and February end a computational year and begin a civil one. Numbers, as compilers
    // make mispredictions of conditions.
    ZemUint32 nextYear = dayOfYear >= 306 ? 1 : 0;
    ZemUint32 leap = (yearOfCentury != 0 ? yearOfCentury : century) % 4 == 0 ? 1 : 0;
    ZemCivilDate date;
    date.year = 100 * century + yearOfCentury + nextYear;
    date.month = month - 12 * nextYear;
    date.day = months % 65536 / 2141 + 1;
    date.dayOfYear = dayOfYear + 59 + leap - (365 + leap) * nextYear;
    return date;
}

// The date of a day since 1970, for the days of a ZemTime at any offset: -131610 .. 131610.
static inline ZemCivilDate ZemCivilDateOfDay(ZemInt day)
{
    ZemUint32 fourDays = 4 * (ZemUint32)(day + ZEM_CIVIL_EPOCH_DAY) + 3;
    return ZemCivilDateInCentury(fourDays / ZEM_CIVIL_DAYS_PER_ERA,
                                 fourDays % ZEM_CIVIL_DAYS_PER_ERA);
}

// The remainder by 7 of a number below 2^27. Of a division by 7 itself compilers make twice as many
// instructions, as it is to hold for all 32 bits.
static inline ZemUint32 ZemCivilWeekdayOf(ZemUint32 day)
{
    ZemUint32 weeks = (ZemUint32)((ZemUint64)day * 613566757 / 4294967296);
    return day - 7 * weeks;
}

typedef struct ZemCivilTime {
    ZemUint32 hour;    // 0 .. 23
    ZemUint32 minute;  // 0 .. 59
    ZemUint32 second;  // 0 .. 59
} ZemCivilTime;

// The time of a second of the day: 0 .. 86399.
static inline ZemCivilTime ZemCivilTimeOfSecond(ZemUint32 secondOfDay)
{
    // Hours with their fraction as 32.32 bits, rounded up by less than a second in a day; then the
    // minutes and the seconds of the fractions.
    ZemUint64 hours = (ZemUint64)secondOfDay * 1193047;
    ZemUint64 minutes = hours % 4294967296 * 60;
    ZemUint64 seconds = minutes % 4294967296 * 60;
    ZemCivilTime time;
    time.hour = (ZemUint32)(hours / 4294967296);
    time.minute = (ZemUint32)(minutes / 4294967296);
    time.second = (ZemUint32)(seconds / 4294967296);
    return time;
}

// ---------------------------------------------------------------------------------------------
// From dates to days
// ---------------------------------------------------------------------------------------------

typedef struct ZemCivilMonth {
    ZemInt daysBefore;  // the days of a common year before the month, less 719528, and less one
                        // where a leap day is counted that is yet to come
    ZemUint32 length;   // in days; 0 where there is no such month
} ZemCivilMonth;

// The month m of a common year stands at m, of a leap year at 16 + m.
static const ZemCivilMonth kZemCivilMonths[32] = {
    {0, 0},        {-719528, 31}, {-719497, 28}, {-719469, 31}, {-719438, 30}, {-719408, 31},
    {-719377, 30}, {-719347, 31}, {-719316, 31}, {-719285, 30}, {-719255, 31}, {-719224, 30},
    {-719194, 31}, {0, 0},        {0, 0},        {0, 0},  //
    {0, 0},        {-719529, 31}, {-719498, 29}, {-719469, 31}, {-719438, 30}, {-719408, 31},
    {-719377, 30}, {-719347, 31}, {-719316, 31}, {-719285, 30}, {-719255, 31}, {-719224, 30},
    {-719194, 31}, {0, 0},        {0, 0},        {0, 0},
};

// The table's row for a month of 0 to 15 in the year 100 * `century` + `yearOfCentury`.
static inline const ZemCivilMonth* ZemCivilMonthIn(ZemUint32 century, ZemUint32 yearOfCentury,
                                                   ZemUint32 month)
{
    ZemUint32 leap = (yearOfCentury != 0 ? yearOfCentury : century) % 4 == 0 ? 16 : 0;
    return &kZemCivilMonths[leap + month];
}

// The day since 1970 of a date in the years 0 to 9999. `month` is the row of that month and year;
// a `day` of 0 to 2^24 is counted on from the month's beginning.
static inline ZemInt ZemCivilDayOfDate(ZemUint32 century, ZemUint32 yearOfCentury,
                                       const ZemCivilMonth* month, ZemUint32 day)
{
    ZemUint32 year = 100 * century + yearOfCentury;
    // 365 days a year and one for every leap year up to this one, itself included.
    return (ZemInt)(1461 * year / 4 - century + century / 4 + day) + month->daysBefore;
}

// ---------------------------------------------------------------------------------------------
// Calendar records
// ---------------------------------------------------------------------------------------------

#define ZEM_CIVIL_SECS_PER_DAY 86400

// Added to make every quantity unsigned: more eras than an int of years, with the years that an
// int of months and of days adds, can go below 0.
#define ZEM_CIVIL_BIAS_ERAS ((ZemInt64)6000000)
#define ZEM_CIVIL_BIAS_YEARS (ZEM_CIVIL_BIAS_ERAS * 400)
#define ZEM_CIVIL_BIAS_DAYS (ZEM_CIVIL_BIAS_ERAS * ZEM_CIVIL_DAYS_PER_ERA + ZEM_CIVIL_EPOCH_DAY)

// The seconds whose year fits tm_year: -2147481748-01-01 00:00:00 to 2147485547-12-31 23:59:59.
#define ZEM_CIVIL_MIN_SECS (-67768040609740800)
#define ZEM_CIVIL_MAX_SECS 67768036191676799

#if defined(__GLIBC__)
#define ZEM_CIVIL_UTC_NAME "GMT"
#else
#define ZEM_CIVIL_UTC_NAME "UTC"
#endif

// ZemGmTimeR: see there.
static inline struct tm* ZemCivilGmTimeR(const time_t* secs, struct tm* result)
{
    ZemUint64 biased;
    ZemUint64 day;
    ZemUint64 fourDays;
    ZemCivilDate date;
    ZemCivilTime time;

    if (*secs < ZEM_CIVIL_MIN_SECS || *secs > ZEM_CIVIL_MAX_SECS) {
        return NULL;
    }
    biased = (ZemUint64)(*secs + ZEM_CIVIL_BIAS_DAYS * ZEM_CIVIL_SECS_PER_DAY);
    day = biased / ZEM_CIVIL_SECS_PER_DAY;
    fourDays = 4 * day + 3;
    date = ZemCivilDateInCentury((ZemUint32)(fourDays / ZEM_CIVIL_DAYS_PER_ERA),
                                 (ZemUint32)(fourDays % ZEM_CIVIL_DAYS_PER_ERA));
    time = ZemCivilTimeOfSecond((ZemUint32)(biased % ZEM_CIVIL_SECS_PER_DAY));

    result->tm_sec = (int)time.second;
    result->tm_min = (int)time.minute;
    result->tm_hour = (int)time.hour;
    result->tm_mday = (int)date.day;
    result->tm_mon = (int)(date.month - 1);
    // Wraps, and back again as the bias goes.
    result->tm_year = (int)(date.year - (ZemUint32)(ZEM_CIVIL_BIAS_YEARS + 1900));
    result->tm_wday = (int)((day + 3) % 7);
    result->tm_yday = (int)date.dayOfYear;
    result->tm_isdst = 0;
    result->tm_gmtoff = 0;
    result->tm_zone = ZEM_CIVIL_UTC_NAME;
    return result;
}

// From March 1 to the first of January, February and so on in a computational year.
static const ZemUint32 kZemCivilDaysFromMarch[12] = {306, 337, 0,   31,  61,  92,
                                                     122, 153, 184, 214, 245, 275};

// The day since 1970 of the first of a month (0 .. 11) in a year of any int, with those that an int
// of months adds: `biasedYear` is at least 1.
static inline ZemInt64 ZemCivilDayOfMonth(ZemInt64 biasedYear, ZemInt64 month)
{
    ZemUint64 marchYear = (ZemUint64)(biasedYear - (month < 2 ? 1 : 0));
    ZemUint32 century = (ZemUint32)(marchYear / 100);
    ZemUint64 day = 1461 * marchYear / 4 - century + century / 4 + kZemCivilDaysFromMarch[month];
    return (ZemInt64)day - ZEM_CIVIL_BIAS_DAYS;
}

// The seconds since 1970 that the fields of a record name in UTC, whatever their values: within
// 2^57.
static inline ZemInt64 ZemCivilSecsOfTm(const struct tm* t)
{
    ZemInt64 year = (ZemInt64)t->tm_year + 1900 + ZEM_CIVIL_BIAS_YEARS;
    ZemInt64 month = t->tm_mon;
    ZemInt64 day;

    if (month < 0 || month > 11) {
        year += month / 12;
        month %= 12;
        if (month < 0) {
            month += 12;
            year -= 1;
        }
    }
    day = ZemCivilDayOfMonth(year, month) + t->tm_mday - 1;
    return day * ZEM_CIVIL_SECS_PER_DAY + (ZemInt64)t->tm_hour * 3600 + (ZemInt64)t->tm_min * 60 +
           t->tm_sec;
}

// ZemTimeGm: see there.
static inline time_t ZemCivilTimeGm(const struct tm* t)
{
    ZemInt64 secs = ZemCivilSecsOfTm(t);
    return secs < ZEM_CIVIL_MIN_SECS || secs > ZEM_CIVIL_MAX_SECS ? -1 : secs;
}

// Sets the date and the time of day in a record, from year to second, weekday and day of the year
// included: for the seconds of a ZemTime in any time zone, within 9,223,472,037 of 1970.
static inline void ZemCivilSetTm(ZemInt64 secs, struct tm* result)
{
    ZemUint64 biased = (ZemUint64)(secs + (ZemInt64)ZEM_CIVIL_EPOCH_DAY * ZEM_CIVIL_SECS_PER_DAY);
    ZemUint32 day = (ZemUint32)(biased / ZEM_CIVIL_SECS_PER_DAY);  // since 0000-03-01
    ZemCivilTime time = ZemCivilTimeOfSecond((ZemUint32)(biased % ZEM_CIVIL_SECS_PER_DAY));
    ZemCivilDate date = ZemCivilDateOfDay((ZemInt)day - ZEM_CIVIL_EPOCH_DAY);

    result->tm_sec = (int)time.second;
    result->tm_min = (int)time.minute;
    result->tm_hour = (int)time.hour;
    result->tm_mday = (int)date.day;
    result->tm_mon = (int)(date.month - 1);
    result->tm_year = (int)(date.year - 1900);
    result->tm_wday = (int)ZemCivilWeekdayOf(day + 3);
    result->tm_yday = (int)date.dayOfYear;
}

#endif
