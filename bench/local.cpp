// Local time of Europe/Berlin: instant to fields with their UTC offset, and fields to instant. In
// place of a hand kernel stands the platform's own call, which the library's contract asks for.

#include <glib.h>

#include "Zem/Os/ZemTimeInline.h"
#include "locals.h"

namespace bench {

namespace {

constexpr const char* kZone = "Europe/Berlin";

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

template <class Reference>
void AddOurComposition(Job<Reference>& job)
{
    job.Add("ours inline",
            [](std::size_t i) { return ZemGregorianTimeGetLocalTime(&g_records[i]); });
    job.Add("ours exported",
            [](std::size_t i) { return Exported(ZemGregorianTimeGetLocalTime)(&g_records[i]); });
    job.Add("hand kernel", [](std::size_t i) { return ComposeWithMktime(g_records[i]); });
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
    add("hand kernel", [](std::size_t i) { return BreakDownWithLocaltime(g_instants[i]); });
    add("cctz", [](std::size_t i) {
        static const cctz::time_zone zone = CctzZone(kZone);
        return BreakDownWithCctz(g_instants[i], zone);
    });
    add("Abseil", [](std::size_t i) {
        static const absl::TimeZone zone = AbslZone(kZone);
        return BreakDownWithAbsl(g_instants[i], zone);
    });
    add("date", [](std::size_t i) {
        static const date::time_zone* zone = date::locate_zone(kZone);
        return BreakDownWithDate(g_instants[i], zone);
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
        static const cctz::time_zone zone = CctzZone(kZone);
        return ComposeWithCctz(g_records[i], zone);
    });
    job.Add("Abseil", [](std::size_t i) {
        static const absl::TimeZone zone = AbslZone(kZone);
        return ComposeWithAbsl(g_records[i], zone);
    });
    job.Add("date", [](std::size_t i) {
        static const date::time_zone* zone = date::locate_zone(kZone);
        return ComposeWithDate(g_records[i], zone);
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
    Job job("local composition, TZ unset",
            [](std::size_t i) { return ComposeWithCctz(g_records[i], zone); });
    job.Zone(nullptr);
    AddOurComposition(job);
    job.Add("cctz", [](std::size_t i) { return ComposeWithCctz(g_records[i], zone); });
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
