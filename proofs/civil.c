// The civil arithmetic, for every number of seconds and every value that the fields of a record can
// hold: no overflow, and fields in their ranges. (That they are the right ones is for the sweep
// over every day to show.) The bodies come from the library's C++ source, its casts rewritten as
// C's.

#include "Zem/Utils/ZemStdCLib.h"

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
