// The values that calendar jobs are measured on, and what they are by a reference of its own: a
// calendar stepped a day at a time from 1970-01-01.

#ifndef BENCH_VALUES_H
#define BENCH_VALUES_H

#include <array>
#include <ctime>
#include <random>

#include "Zem/Os/ZemTime.h"
#include "harness.h"

namespace bench {

// A date and time of day in UTC, with all that a full struct tm says about it.
struct Moment {
    int year;
    int month;  // 1 to 12
    int day;
    int hour;
    int minute;
    int second;
    int weekday;  // 0 is Sunday
    int yearDay;  // 0 is January 1
    std::int64_t nanos;

    bool operator==(const Moment& other) const = default;
};

std::mt19937_64& Random();

// A number from `low` to `high`.
std::int64_t Between(std::int64_t low, std::int64_t high);

// Draws a second of the given years (within 1900 to 2199) from the stepped calendar; returns it as
// seconds since 1970. The moment has no nanoseconds.
std::int64_t DrawSecond(int firstYear, int lastYear, Moment& moment);

// Moments of 1900 to 2199, and their instants. Before 1970 they are whole seconds: there ours
// counts nanoseconds from the second nearer to 1970, most peers from the one before.
struct Moments {
    std::array<Moment, kValues> fields;
    std::array<ZemTime, kValues> instants;
};
const Moments& SharedMoments();

// The full struct tm that a moment stands for, and the reverse.
struct tm TmOf(const Moment& moment);
Moment MomentOf(const struct tm& tm, std::int64_t nanos);

inline Moment ViewRecord(const ZemGregorianTime& gt)
{
    return MomentOf(gt.tm, gt.nanosecs);
}

}  // namespace bench

#endif
