// Validity and order of calendar fields; and the civil arithmetic, for every number of seconds and
// every value that the fields of a record can hold: no overflow, and fields in their ranges. (That
// they are the right ones is for the sweep over every day to show.) The bodies come from the
// library's C++ sources, their casts rewritten as C's.

#include <stdbool.h>

#include "Zem/Os/ZemTimeInline.h"

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
  @ ensures \result <==> low <= value <= high;
  @*/
bool IsWithin(ZemInt64 value, ZemInt64 low, ZemInt64 high);

/*@ assigns \nothing;
  @ ensures rule: \result <==> DaysIn(year, 2) == 29;
  @*/
bool IsLeapYear(ZemInt year);

/*@ requires 1 <= month <= 12;
  @ assigns \nothing;
  @ ensures \result == DaysIn(year, month);
  @*/
ZemInt DaysInMonth(ZemInt year, ZemInt month);

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

/*@ requires \valid_read(t);
  @ assigns \nothing;
  @*/
time_t ZemTimeGm(const struct tm* t);

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
struct tm* ZemGmTimeR(const time_t* secs, struct tm* result);

#include "civil_arithmetic.c"
#include "validation_and_comparison.c"
