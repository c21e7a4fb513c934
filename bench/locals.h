// Local time by each peer, in a zone that is handed in: what the families of local time and of
// zones share.

#ifndef BENCH_LOCALS_H
#define BENCH_LOCALS_H

#include <absl/time/civil_time.h>
#include <absl/time/time.h>
#include <cctz/civil_time.h>
#include <cctz/time_zone.h>
#include <date/tz.h>

#include "calendars.h"
#include "values.h"

namespace bench {

struct Local {
    Moment fields;  // without the weekday and the day of the year
    long offset;

    bool operator==(const Local& other) const = default;
};

inline Local ViewLocal(const ZemGregorianTime& gt)
{
    Moment fields = ViewRecord(gt);
    fields.weekday = 0;
    fields.yearDay = 0;
    return {fields, gt.tm.tm_gmtoff};
}

// A record with a peer's fields.
inline ZemGregorianTime Record(int year, int month, int day, int hour, int minute, int second,
                               ZemTime nanos, long offset)
{
    ZemGregorianTime gt;
    gt.tm.tm_year = year - 1900;
    gt.tm.tm_mon = month - 1;
    gt.tm.tm_mday = day;
    gt.tm.tm_hour = hour;
    gt.tm.tm_min = minute;
    gt.tm.tm_sec = second;
    gt.tm.tm_gmtoff = offset;
    gt.nanosecs = nanos;
    return gt;
}

template <class CivilSecond>
ZemGregorianTime RecordOf(const CivilSecond& cs, ZemTime nanos, long offset)
{
    return Record(static_cast<int>(cs.year()), cs.month(), cs.day(), cs.hour(), cs.minute(),
                  cs.second(), nanos, offset);
}

template <class CivilSecond>
CivilSecond CivilOf(const ZemGregorianTime& gt)
{
    return CivilSecond(gt.tm.tm_year + 1900, gt.tm.tm_mon + 1, gt.tm.tm_mday, gt.tm.tm_hour,
                       gt.tm.tm_min, gt.tm.tm_sec);
}

inline cctz::time_zone CctzZone(const char* name)
{
    cctz::time_zone zone;
    cctz::load_time_zone(name, &zone);
    return zone;
}

inline absl::TimeZone AbslZone(const char* name)
{
    absl::TimeZone zone;
    absl::LoadTimeZone(name, &zone);
    return zone;
}

// Instants before 1970 are whole seconds: there cutting and rounding down are one.

inline ZemGregorianTime BreakDownWithLocaltime(ZemTime t)
{
    ZemGregorianTime gt;
    std::time_t secs = t / 1000000000;
    localtime_r(&secs, &gt.tm);
    gt.nanosecs = t % 1000000000;
    return gt;
}

inline ZemGregorianTime BreakDownWithCctz(ZemTime t, const cctz::time_zone& zone)
{
    ZemTime secs = t / 1000000000;
    auto lookup = zone.lookup(cctz::time_point<cctz::seconds>(cctz::seconds(secs)));
    return RecordOf(lookup.cs, t - secs * 1000000000, lookup.offset);
}

inline ZemGregorianTime BreakDownWithAbsl(ZemTime t, const absl::TimeZone& zone)
{
    auto info = zone.At(absl::FromUnixNanos(t));
    return RecordOf(info.cs, absl::ToInt64Nanoseconds(info.subsecond), info.offset);
}

inline ZemGregorianTime BreakDownWithDate(ZemTime t, const date::time_zone* zone)
{
    date::sys_time<Nanos> point{Nanos(t)};
    date::sys_info info = zone->get_info(point);
    auto local = point + info.offset;
    auto day = date::floor<date::days>(local);
    date::year_month_day ymd(day);
    date::hh_mm_ss<Nanos> time(local - day);
    return Record(
        static_cast<int>(ymd.year()), static_cast<int>(static_cast<unsigned>(ymd.month())),
        static_cast<int>(static_cast<unsigned>(ymd.day())), static_cast<int>(time.hours().count()),
        static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
        time.subseconds().count(), info.offset.count());
}

inline ZemTime ComposeWithMktime(const ZemGregorianTime& gt)
{
    struct tm tm = gt.tm;
    tm.tm_isdst = -1;
    return mktime(&tm) * 1000000000 + gt.nanosecs;
}

inline ZemTime ComposeWithCctz(const ZemGregorianTime& gt, const cctz::time_zone& zone)
{
    auto t = cctz::convert(CivilOf<cctz::civil_second>(gt), zone);
    return t.time_since_epoch().count() * 1000000000 + gt.nanosecs;
}

inline ZemTime ComposeWithAbsl(const ZemGregorianTime& gt, const absl::TimeZone& zone)
{
    return absl::ToUnixNanos(absl::FromCivil(CivilOf<absl::CivilSecond>(gt), zone) +
                             absl::Nanoseconds(gt.nanosecs));
}

inline date::local_time<Nanos> DateLocalOf(const ZemGregorianTime& gt)
{
    date::local_days day(date::year(gt.tm.tm_year + 1900) /
                         date::month(static_cast<unsigned>(gt.tm.tm_mon + 1)) /
                         date::day(static_cast<unsigned>(gt.tm.tm_mday)));
    return day + std::chrono::hours(gt.tm.tm_hour) + std::chrono::minutes(gt.tm.tm_min) +
           std::chrono::seconds(gt.tm.tm_sec) + Nanos(gt.nanosecs);
}

inline ZemTime ComposeWithDate(const ZemGregorianTime& gt, const date::time_zone* zone)
{
    return zone->to_sys(DateLocalOf(gt)).time_since_epoch().count();
}

}  // namespace bench

#endif
