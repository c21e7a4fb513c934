// Units, elapsed times, time-outs, NTP timestamps and the sum that every calendar conversion ends
// in, over the full range of their arguments. Numbers in contracts are mathematical: no overflow.

#include "Zem/Os/ZemTime.h"

// What a conversion to a 64-bit type is in C (and, for the signed one, in gcc and clang): the
// number of that type that differs by a multiple of 2^64. The prover knows the range but not the
// multiple.
/*@ axiomatic Conversions {
  @   axiom to_unsigned: \forall integer x; ((ZemUint64)x - x) % 18446744073709551616 == 0;
  @   axiom to_signed: \forall integer x; ((ZemInt64)x - x) % 18446744073709551616 == 0;
  @ } */

/*@ logic integer NanosPerSec = 1000000000;
  @ logic integer Infinite = 9223372036854775807;
  @
  @ // Division rounded down, and its remainder (ACSL's own / and % round toward zero).
  @ logic integer Floor(integer a, integer b) = a >= 0 ? a / b : -((b - 1 - a) / b);
  @ logic integer Rest(integer a, integer b) = a - b * Floor(a, b);
  @*/

// ---------------------------------------------------------------------------------------------
// Units
// ---------------------------------------------------------------------------------------------

/*@ assigns \nothing;
  @ behavior exact:
  @   assumes -9223372036 <= secs <= 9223372036;
  @   ensures \result == secs * NanosPerSec;
  @ behavior wraps:
  @   ensures \exists integer k; \result == secs * NanosPerSec + k * 18446744073709551616;
  @*/
ZemTime ZemTimeSecs(ZemInt64 secs);

/*@ assigns \nothing;
  @ behavior exact:
  @   assumes -9223372036854 <= msecs <= 9223372036854;
  @   ensures \result == msecs * 1000000;
  @ behavior wraps:
  @   ensures \exists integer k; \result == msecs * 1000000 + k * 18446744073709551616;
  @*/
ZemTime ZemTimeMsecs(ZemInt64 msecs);

/*@ assigns \nothing;
  @ behavior exact:
  @   assumes -9223372036854775 <= usecs <= 9223372036854775;
  @   ensures \result == usecs * 1000;
  @ behavior wraps:
  @   ensures \exists integer k; \result == usecs * 1000 + k * 18446744073709551616;
  @*/
ZemTime ZemTimeUsecs(ZemInt64 usecs);

/*@ assigns \nothing;
  @ ensures fits: \let sum = secs * NanosPerSec + nanosecs;
  @   -Infinite - 1 <= sum <= Infinite ==> \result == sum;
  @ ensures refused: \let sum = secs * NanosPerSec + nanosecs;
  @   sum < -Infinite - 1 || sum > Infinite ==> \result == Infinite;
  @*/
ZemTime ZemTimeFromSecsAndNanosecs_(ZemInt64 secs, ZemInt64 nanosecs);

// ---------------------------------------------------------------------------------------------
// Elapsed times and time-outs
// ---------------------------------------------------------------------------------------------

/*@ assigns \nothing;
  @ ensures \result == \max(0, \min(curTime - t, Infinite));
  @*/
ZemTime ZemTimeGetElapsedRelativeTo(ZemTime curTime, ZemTime t);

/*@ assigns \nothing;
  @ ensures \result == \max(0, \min(curTime - t, Infinite)) / 1000000 % 4294967296;
  @*/
ZemUint ZemTimeGetElapsedMsecRelativeTo(ZemTime curTime, ZemTime t);

// The monotonic clock, as the host may move it: any reading that is not negative.
ZemTime HostReading;

/*@ assigns HostReading;
  @ ensures \result == HostReading && HostReading >= 0;
  @*/
ZemTime ZemTimeGetCurrentMonotonicTime(void);

/*@ assigns HostReading;
  @ ensures \result == \max(0, HostReading - t < Infinite ? HostReading - t : Infinite);
  @*/
ZemTime ZemTimeGetElapsed(ZemTime t);

/*@ requires \valid(tv) && \separated(tv, &HostReading);
  @ assigns *tv, HostReading;
  @ behavior never:
  @   assumes timeout == Infinite;
  @   ensures \result == \null && *tv == \old(*tv) && HostReading == \old(HostReading);
  @ behavior due:
  @   assumes timeout == 0;
  @   ensures \result == tv && tv->tv_sec == 0 && tv->tv_usec == 0;
  @   ensures HostReading == \old(HostReading);
  @ behavior measured:
  @   assumes timeout != 0 && timeout != Infinite;
  @   ensures past: timeout <= HostReading ==>
  @     \result == tv && tv->tv_sec == 0 && tv->tv_usec == 0;
  @   ensures far: timeout - HostReading > 2147483646999999000 ==>
  @     \result == \null && *tv == \old(*tv);
  @   ensures rounded_up: 0 < timeout - HostReading <= 2147483646999999000 ==>
  @     \result == tv && 0 <= tv->tv_usec <= 999999 && 0 <= tv->tv_sec <= 2147483646 &&
  @     0 <= (tv->tv_sec * 1000000 + tv->tv_usec) * 1000 - (timeout - HostReading) <= 999;
  @ complete behaviors;
  @ disjoint behaviors;
  @*/
struct timeval* ZemTimeGetRelativeTimevalFromMonotonicTime(ZemTime timeout, struct timeval* tv);

// ---------------------------------------------------------------------------------------------
// NTP timestamps
// ---------------------------------------------------------------------------------------------

/*@ requires \valid(t);
  @ assigns *t;
  @ ensures \result == t;
  @ ensures value: *t == (ntp / 4294967296 - 2208988800) * NanosPerSec
  @               + ntp % 4294967296 * NanosPerSec / 4294967296;
  @*/
ZemTime* ZemTimeConstructFromNtp(ZemTime* t, ZemUint64 ntp);

/*@ assigns \nothing;
  @ ensures \result == Rest(Floor(t, NanosPerSec) + 2208988800, 4294967296) * 4294967296
  @                    + Rest(t, NanosPerSec) * 4294967296 / NanosPerSec;
  @*/
ZemUint64 ZemTimeGetNtp(ZemTime t);

#include "Zem/Os/ZemTimeInline.h"

// A fraction q is exact (n * 2^23 == q * 5^9) only for n = 5^9 * Multiple(n, q): the first factor
// is the inverse of 2^23 modulo 5^9.
/*@ logic integer Multiple(integer n, integer q) = 1241897 * q - 5333907 * n; */

/*@ requires era_0: -2208988800 * NanosPerSec <= t < 2085978496 * NanosPerSec;
  @ assigns \nothing;
  @ ensures whole: Rest(t, NanosPerSec) % 1953125 == 0 ==> \result == t;
  @ ensures cut: Rest(t, NanosPerSec) % 1953125 != 0 ==> \result == t - 1;
  @*/
ZemTime ThroughNtp(ZemTime t)
{
    ZemTime back;
    /*@ assert \let n = Rest(t, NanosPerSec);
      @   \let q = n * 4294967296 / NanosPerSec;
      @   n * 4294967296 == q * NanosPerSec ==> n == 1953125 * Multiple(n, q);
      @*/
    ZemTimeConstructFromNtp(&back, ZemTimeGetNtp(t));
    return back;
}

/*@ assigns \nothing;
  @ ensures \result / 4294967296 == ntp / 4294967296;
  @ ensures 0 <= ntp - \result <= 5;
  @*/
ZemUint64 ThroughTime(ZemUint64 ntp)
{
    ZemTime t;
    return ZemTimeGetNtp(*ZemTimeConstructFromNtp(&t, ntp));
}
