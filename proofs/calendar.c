// Validity and order of calendar fields; and the civil arithmetic, for every number of seconds and
// every value that the fields of a record can hold: no overflow, no reading outside a table, and
// fields in their ranges. (That they are the right ones is for the sweep over every day to show.)

#include "Zem/Os/ZemTimeInline.h"
#include "Zem/Utils/Private/ZemCivil.h"

/*@ logic integer DaysIn(integer y, integer m) =
  @   m == 2 ? (y % 400 == 0 ? 29 : y % 100 == 0 ? 28 : y % 4 == 0 ? 29 : 28)
  @          : (m == 4 || m == 6 || m == 9 || m == 11 ? 30 : 31);
  @*/

/*@ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures \result == 1 <==> 1 <= month <= 12 && 1 <= monthDay <= DaysIn(year, month) &&
  @   0 <= hour <= 23 && 0 <= minute <= 59 && 0 <= second <= 60 && 0 <= nanosecond <= 999999999;
  @*/
ZemBool ZemGregorianTimeValidateFields_(ZemInt year, ZemInt month, ZemInt monthDay, ZemInt hour,
                                        ZemInt minute, ZemInt second, ZemTime nanosecond);

/*@ assigns \nothing;
  @ ensures \result == 1 <==> low <= value <= high;
  @ ensures \result == 0 || \result == 1;
  @*/
static inline ZemBool IsWithin(ZemInt64 value, ZemInt64 low, ZemInt64 high);

/*@ assigns \nothing;
  @ ensures rule: \result == 1 <==> DaysIn(year, 2) == 29;
  @ ensures \result == 0 || \result == 1;
  @*/
static inline ZemBool ZemCivilIsLeapYear(ZemInt year);

/*@ requires 1 <= month <= 12;
  @ assigns \nothing;
  @ ensures \result == DaysIn(year, month);
  @*/
static inline ZemInt ZemCivilDaysInMonth(ZemInt year, ZemInt month);

/*@ requires \valid_read(gt) && -2147483648 <= gt->tm.tm_gmtoff <= 2147483647;
  @ assigns \nothing;
  @ ensures \result == gt->tm.tm_gmtoff;
  @*/
ZemInt ZemGregorianTimeGetUTCOffset(const ZemGregorianTime* gt);

/*@ requires \valid_read(a) && \valid_read(b);
  @ requires -2147483648 <= a->tm.tm_gmtoff <= 2147483647;
  @ requires -2147483648 <= b->tm.tm_gmtoff <= 2147483647;
  @ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures \result == 1 <==>
  @   a->tm.tm_year == b->tm.tm_year && a->tm.tm_mon == b->tm.tm_mon &&
  @   a->tm.tm_mday == b->tm.tm_mday && a->tm.tm_hour == b->tm.tm_hour &&
  @   a->tm.tm_min == b->tm.tm_min && a->tm.tm_sec == b->tm.tm_sec &&
  @   a->nanosecs == b->nanosecs && a->tm.tm_gmtoff == b->tm.tm_gmtoff;
  @*/
ZemBool ZemGregorianTimeEqual(const ZemGregorianTime* a, const ZemGregorianTime* b);

/*@ requires \valid_read(a) && \valid_read(b);
  @ requires -2147483648 <= a->tm.tm_gmtoff <= 2147483647;
  @ requires -2147483648 <= b->tm.tm_gmtoff <= 2147483647;
  @ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures lexicographic: \result == 1 <==>
  @   a->tm.tm_year < b->tm.tm_year || a->tm.tm_year == b->tm.tm_year && (
  @   a->tm.tm_mon < b->tm.tm_mon || a->tm.tm_mon == b->tm.tm_mon && (
  @   a->tm.tm_mday < b->tm.tm_mday || a->tm.tm_mday == b->tm.tm_mday && (
  @   a->tm.tm_hour < b->tm.tm_hour || a->tm.tm_hour == b->tm.tm_hour && (
  @   a->tm.tm_min < b->tm.tm_min || a->tm.tm_min == b->tm.tm_min && (
  @   a->tm.tm_sec < b->tm.tm_sec || a->tm.tm_sec == b->tm.tm_sec && (
  @   a->nanosecs < b->nanosecs || a->nanosecs == b->nanosecs &&
  @   a->tm.tm_gmtoff < b->tm.tm_gmtoff))))));
  @*/
ZemBool ZemGregorianTimeLess(const ZemGregorianTime* a, const ZemGregorianTime* b);

// At most the days of a century, as numbers of quarter days, whose last is one short of four.
/*@ requires fourDays <= 146096;
  @ assigns \nothing;
  @ ensures 1 <= \result.month <= 12 && 1 <= \result.day <= 31;
  @ ensures 0 <= \result.dayOfYear <= 365;
  @*/
static inline ZemCivilDate ZemCivilDateInCentury(ZemUint32 century, ZemUint32 fourDays);

/*@ requires -131610 <= day <= 131610;
  @ assigns \nothing;
  @ ensures 1 <= \result.month <= 12 && 1 <= \result.day <= 31;
  @ ensures 0 <= \result.dayOfYear <= 365;
  @*/
static inline ZemCivilDate ZemCivilDateOfDay(ZemInt day);

/*@ requires day < 134217728;
  @ assigns \nothing;
  @ ensures remainder: \result == day % 7;
  @*/
static inline ZemUint32 ZemCivilWeekdayOf(ZemUint32 day);

/*@ requires secondOfDay <= 86399;
  @ assigns \nothing;
  @ ensures value: \result.hour * 3600 + \result.minute * 60 + \result.second == secondOfDay;
  @ ensures \result.hour <= 23 && \result.minute <= 59 && \result.second <= 59;
  @*/
static inline ZemCivilTime ZemCivilTimeOfSecond(ZemUint32 secondOfDay);

/*@ requires century <= 99 && yearOfCentury <= 99 && month <= 15;
  @ assigns \nothing;
  @ ensures \exists integer i; 0 <= i < 32 && \result == &kZemCivilMonths[i];
  @*/
static inline const ZemCivilMonth* ZemCivilMonthIn(ZemUint32 century, ZemUint32 yearOfCentury,
                                                   ZemUint32 month);

/*@ requires century <= 99 && yearOfCentury <= 99 && day <= 16777216;
  @ requires \valid_read(month) && -719529 <= month->daysBefore <= 0;
  @ assigns \nothing;
  @*/
static inline ZemInt ZemCivilDayOfDate(ZemUint32 century, ZemUint32 yearOfCentury,
                                       const ZemCivilMonth* month, ZemUint32 day);

/*@ requires 1 <= biasedYear <= 4800000000 && 0 <= month <= 11;
  @ assigns \nothing;
  @ ensures -877600000000 <= \result <= 877600000000;
  @*/
static inline ZemInt64 ZemCivilDayOfMonth(ZemInt64 biasedYear, ZemInt64 month);

/*@ requires \valid_read(t);
  @ assigns \nothing;
  @ ensures -144115188075855872 <= \result <= 144115188075855872;
  @*/
static inline ZemInt64 ZemCivilSecsOfTm(const struct tm* t);

/*@ requires \valid_read(t);
  @ assigns \nothing;
  @*/
static inline time_t ZemCivilTimeGm(const struct tm* t);

/*@ requires \valid_read(secs) && \valid(result) && \separated(secs, result);
  @ assigns *result, \result \from result;
  @ behavior year_does_not_fit:
  @   assumes *secs < -67768040609740800 || *secs > 67768036191676799;
  @   ensures \result == \null && *result == \old(*result);
  @ behavior fits:
  @   assumes -67768040609740800 <= *secs <= 67768036191676799;
  @   ensures \result == result;
  @   ensures 0 <= result->tm_hour <= 23 && 0 <= result->tm_min <= 59 && 0 <= result->tm_sec <= 59;
  @   ensures 1 <= result->tm_mday <= 31;
  @   ensures 0 <= result->tm_mon <= 11;
  @   ensures 0 <= result->tm_wday <= 6;
  @   ensures 0 <= result->tm_yday <= 365;
  @*/
static inline struct tm* ZemCivilGmTimeR(const time_t* secs, struct tm* result);

/*@ requires \valid(result) && -9223472037 <= secs <= 9223472037;
  @ assigns result->tm_sec, result->tm_min, result->tm_hour, result->tm_mday, result->tm_mon,
  @   result->tm_year, result->tm_wday, result->tm_yday;
  @ ensures 0 <= result->tm_hour <= 23 && 0 <= result->tm_min <= 59 && 0 <= result->tm_sec <= 59;
  @ ensures 1 <= result->tm_mday <= 31;
  @ ensures 0 <= result->tm_mon <= 11;
  @ ensures 0 <= result->tm_wday <= 6;
  @ ensures 0 <= result->tm_yday <= 365;
  @*/
static inline void ZemCivilSetTm(ZemInt64 secs, struct tm* result);

#include "Zem/Os/ZemTimeGregorianFields.cpp"
