// <chrono> and date have one interface in two namespaces: the names that the families need of each.

#ifndef BENCH_CALENDARS_H
#define BENCH_CALENDARS_H

#include <date/date.h>

#include <chrono>

namespace bench {

using Nanos = std::chrono::nanoseconds;
using NanoPoint = std::chrono::time_point<std::chrono::system_clock, Nanos>;

struct Chrono {
    using Days = std::chrono::days;
    using Day = std::chrono::sys_days;
    using Date = std::chrono::year_month_day;
    using YearNumber = std::chrono::year;
    using MonthNumber = std::chrono::month;
    using DayNumber = std::chrono::day;
    using Weekday = std::chrono::weekday;
    using Time = std::chrono::hh_mm_ss<Nanos>;
};

struct HinnantDate {
    using Days = date::days;
    using Day = date::sys_days;
    using Date = date::year_month_day;
    using YearNumber = date::year;
    using MonthNumber = date::month;
    using DayNumber = date::day;
    using Weekday = date::weekday;
    using Time = date::hh_mm_ss<Nanos>;
};

}  // namespace bench

#endif
