// Validity of calendar fields. The bodies come from the library's C++ source: its section on
// validation and comparison is C as it stands, but for the namespace.

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

#include "validation_and_comparison.c"
