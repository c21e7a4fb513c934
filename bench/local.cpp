// Local time of Europe/Berlin: instant to fields with their UTC offset, and fields to instant. The
// limit is the platform's own call, which the library's contract asks for.

#include <absl/time/civil_time.h>
#include <absl/time/time.h>
#include <cctz/civil_time.h>
#include <cctz/time_zone.h>
#include <date/tz.h>
#include <glib.h>

#include "Zem/Os/ZemTimeInline.h"
#include "calendars.h"
#include "values.h"

namespace bench {

namespace {

constexpr const char* kZone = "Europe/Berlin";

struct Local {
    Moment fields;  // without the weekday and the day of the year
    long offset;

    bool operator==(const Local& other) const = default;
};

Local g_locals[kValues];
ZemTime g_instants[kValues];
ZemGregorianTime g_records[kValues];  // the fields alone, for composition

// The European rule since 1996: summer time from the last Sunday of March to that of October.
bool IsSummer(const Moment& m)
{
    if (m.month != 3 && m.month != 10) {
        return m.month > 3 && m.month < 10;
    }
    int lastSunday = 31 - (m.weekday + 31 - m.day) % 7;
    return (m.day > lastSunday) == (m.month == 3);
}

bool IsChangeDay(const Moment& m)
{
    return (m.month == 3 || m.month == 10) && m.weekday == 0 && m.day > 24;
}

// Days on which the clock changes are left out: peers differ in what they make of a skipped or
// repeated hour.
void MakeValues()
{
    for (std::size_t i = 0; i < kValues; ++i) {
        Moment m;
        std::int64_t secs;
        do {
            secs = DrawSecond(1996, 2037, m);
        } while (IsChangeDay(m));
        m.nanos = Between(0, 999999999);
        long offset = IsSummer(m) ? 7200 : 3600;
        m.weekday = 0;
        m.yearDay = 0;
        g_locals[i] = {m, offset};
        g_instants[i] = (secs - offset) * 1000000000 + m.nanos;
        g_records[i] = {TmOf(m), m.nanos};
    }
}

Local ViewLocal(const ZemGregorianTime& gt)
{
    Moment fields = ViewRecord(gt);
    fields.weekday = 0;
    fields.yearDay = 0;
    return {fields, gt.tm.tm_gmtoff};
}

// A record with a peer's fields.
ZemGregorianTime Record(int year, int month, int day, int hour, int minute, int second,
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

cctz::time_zone CctzZone()
{
    cctz::time_zone zone;
    cctz::load_time_zone(kZone, &zone);
    return zone;
}

absl::TimeZone AbslZone()
{
    absl::TimeZone zone;
    absl::LoadTimeZone(kZone, &zone);
    return zone;
}

ZemTime ComposeWithMktime(std::size_t i)
{
    struct tm tm = g_records[i].tm;
    tm.tm_isdst = -1;
    return mktime(&tm) * 1000000000 + g_records[i].nanosecs;
}

ZemTime ComposeWithCctz(std::size_t i, const cctz::time_zone& zone)
{
    auto t = cctz::convert(CivilOf<cctz::civil_second>(g_records[i]), zone);
    return t.time_since_epoch().count() * 1000000000 + g_records[i].nanosecs;
}

template <class Reference>
void AddOurComposition(Job<Reference>& job)
{
    job.Add("ours inline",
            [](std::size_t i) { return ZemGregorianTimeGetLocalTime(&g_records[i]); });
    job.Add("ours exported",
            [](std::size_t i) { return Exported(ZemGregorianTimeGetLocalTime)(&g_records[i]); });
    job.Add("limit", [](std::size_t i) { return ComposeWithMktime(i); });
}

void RegisterLocalBreakdown()
{
    Job job("local breakdown", [](std::size_t i) { return g_locals[i]; });
    job.Zone(kZone);
    auto add = [&](const char* column, auto op) { job.Add(column, op, ViewLocal); };
    add("ours inline", [](std::size_t i) {
        ZemGregorianTime gt;
        ZemGregorianTimeConstruct(&gt, g_instants[i]);
        return gt;
    });
    add("ours exported", [](std::size_t i) {
        ZemGregorianTime gt;
        Exported(ZemGregorianTimeConstruct)(&gt, g_instants[i]);
        return gt;
    });
    add("limit", [](std::size_t i) {
        ZemGregorianTime gt;
        std::time_t secs = g_instants[i] / 1000000000;
        localtime_r(&secs, &gt.tm);
        gt.nanosecs = g_instants[i] % 1000000000;
        return gt;
    });
    add("cctz", [](std::size_t i) {
        static const cctz::time_zone zone = CctzZone();
        ZemTime secs = g_instants[i] / 1000000000;
        auto lookup = zone.lookup(cctz::time_point<cctz::seconds>(cctz::seconds(secs)));
        return RecordOf(lookup.cs, g_instants[i] - secs * 1000000000, lookup.offset);
    });
    add("Abseil", [](std::size_t i) {
        static const absl::TimeZone zone = AbslZone();
        auto info = zone.At(absl::FromUnixNanos(g_instants[i]));
        return RecordOf(info.cs, absl::ToInt64Nanoseconds(info.subsecond), info.offset);
    });
    add("date", [](std::size_t i) {
        static const date::time_zone* zone = date::locate_zone(kZone);
        date::sys_time<Nanos> t{Nanos(g_instants[i])};
        date::sys_info info = zone->get_info(t);
        auto local = t + info.offset;
        auto day = date::floor<date::days>(local);
        date::year_month_day ymd(day);
        date::hh_mm_ss<Nanos> time(local - day);
        return Record(
            static_cast<int>(ymd.year()), static_cast<int>(static_cast<unsigned>(ymd.month())),
            static_cast<int>(static_cast<unsigned>(ymd.day())),
            static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
            static_cast<int>(time.seconds().count()), time.subseconds().count(),
            info.offset.count());
    });
    add("GLib", [](std::size_t i) {
        static GTimeZone* zone = g_time_zone_new_identifier(kZone);
        ZemTime secs = g_instants[i] / 1000000000;
        GDateTime* utc = g_date_time_new_from_unix_utc(secs);
        GDateTime* dt = g_date_time_to_timezone(utc, zone);
        ZemGregorianTime gt = Record(
            g_date_time_get_year(dt), g_date_time_get_month(dt), g_date_time_get_day_of_month(dt),
            g_date_time_get_hour(dt), g_date_time_get_minute(dt), g_date_time_get_second(dt),
            g_instants[i] - secs * 1000000000, g_date_time_get_utc_offset(dt) / 1000000);
        g_date_time_unref(dt);
        g_date_time_unref(utc);
        return gt;
    });
}

void RegisterLocalComposition()
{
    Job job("local composition", [](std::size_t i) { return g_instants[i]; });
    job.Zone(kZone);
    AddOurComposition(job);
    job.Add("cctz", [](std::size_t i) {
        static const cctz::time_zone zone = CctzZone();
        return ComposeWithCctz(i, zone);
    });
    job.Add("Abseil", [](std::size_t i) {
        static const absl::TimeZone zone = AbslZone();
        return absl::ToUnixNanos(absl::FromCivil(CivilOf<absl::CivilSecond>(g_records[i]), zone) +
                                 absl::Nanoseconds(g_records[i].nanosecs));
    });
    job.Add("date", [](std::size_t i) {
        static const date::time_zone* zone = date::locate_zone(kZone);
        const ZemGregorianTime& gt = g_records[i];
        date::local_days day(date::year(gt.tm.tm_year + 1900) /
                             date::month(static_cast<unsigned>(gt.tm.tm_mon + 1)) /
                             date::day(static_cast<unsigned>(gt.tm.tm_mday)));
        return zone
            ->to_sys(day + std::chrono::hours(gt.tm.tm_hour) + std::chrono::minutes(gt.tm.tm_min) +
                     std::chrono::seconds(gt.tm.tm_sec) + Nanos(gt.nanosecs))
            .time_since_epoch()
            .count();
    });
    job.Add("GLib", [](std::size_t i) {
        static GTimeZone* zone = g_time_zone_new_identifier(kZone);
        const ZemGregorianTime& gt = g_records[i];
        GDateTime* dt = g_date_time_new(zone, gt.tm.tm_year + 1900, gt.tm.tm_mon + 1, gt.tm.tm_mday,
                                        gt.tm.tm_hour, gt.tm.tm_min, gt.tm.tm_sec);
        ZemTime t = g_date_time_to_unix(dt) * 1000000000 + gt.nanosecs;
        g_date_time_unref(dt);
        return t;
    });
}

// With TZ unset the zone is what /etc/localtime says; cctz, which reads that file itself, is the
// reference.
void RegisterLocalCompositionWithoutTz()
{
    SetZone(nullptr);
    static const cctz::time_zone zone = cctz::local_time_zone();
    Job job("local composition, TZ unset", [](std::size_t i) { return ComposeWithCctz(i, zone); });
    job.Zone(nullptr);
    AddOurComposition(job);
    job.Add("cctz", [](std::size_t i) { return ComposeWithCctz(i, zone); });
}

}  // namespace

void RegisterLocal()
{
    MakeValues();
    RegisterLocalBreakdown();
    RegisterLocalComposition();
    RegisterLocalCompositionWithoutTz();
}

}  // namespace bench
