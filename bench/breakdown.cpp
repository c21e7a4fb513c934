// Instant to a full struct tm in UTC: year to second, weekday, day of the year, nanoseconds.

#include <absl/time/time.h>
#include <cctz/civil_time.h>
#include <cctz/time_zone.h>
#include <glib.h>

#include <boost/date_time/posix_time/posix_time.hpp>
#include <cstring>
#include <string>

#include "Zem/Os/ZemTimeInline.h"
#include "calendars.h"
#include "limit.h"
#include "values.h"

namespace bench {

namespace {

const std::array<ZemTime, kValues>& g_instants = SharedMoments().instants;

// No input has a negative fraction, so that truncation and floor are one.
std::time_t SecondsOf(ZemTime t)
{
    return t / 1000000000;
}

ZemGregorianTime WithNanos(const struct tm& tm, ZemTime t)
{
    return {tm, t % 1000000000};
}

// What a calendar library gives without being asked for more: no weekday, no day of the year.
template <class Calendar>
ZemGregorianTime DateAndTime(std::size_t i)
{
    NanoPoint t{Nanos(g_instants[i])};
    auto day = std::chrono::floor<typename Calendar::Days>(t);
    typename Calendar::Date date(day);
    typename Calendar::Time time(t - day);
    ZemGregorianTime gt;
    gt.tm.tm_year = static_cast<int>(date.year()) - 1900;
    gt.tm.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    gt.tm.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    gt.tm.tm_hour = static_cast<int>(time.hours().count());
    gt.tm.tm_min = static_cast<int>(time.minutes().count());
    gt.tm.tm_sec = static_cast<int>(time.seconds().count());
    gt.nanosecs = time.subseconds().count();
    return gt;
}

template <class Calendar>
ZemGregorianTime FullRecord(std::size_t i)
{
    ZemGregorianTime gt = DateAndTime<Calendar>(i);
    NanoPoint t{Nanos(g_instants[i])};
    auto day = std::chrono::floor<typename Calendar::Days>(t);
    typename Calendar::Day newYear(typename Calendar::YearNumber(gt.tm.tm_year + 1900) / 1 / 1);
    gt.tm.tm_wday = static_cast<int>(typename Calendar::Weekday(day).c_encoding());
    gt.tm.tm_yday = static_cast<int>((day - newYear).count());
    gt.tm.tm_isdst = 0;
    gt.tm.tm_gmtoff = 0;
    gt.tm.tm_zone = "UTC";
    return gt;
}

ZemGregorianTime WithCctz(std::size_t i)
{
    static const cctz::time_zone utc = cctz::utc_time_zone();
    auto secs = cctz::time_point<cctz::seconds>(cctz::seconds(SecondsOf(g_instants[i])));
    cctz::civil_second cs = cctz::convert(secs, utc);
    ZemGregorianTime gt = {};
    gt.tm.tm_year = static_cast<int>(cs.year()) - 1900;
    gt.tm.tm_mon = cs.month() - 1;
    gt.tm.tm_mday = cs.day();
    gt.tm.tm_hour = cs.hour();
    gt.tm.tm_min = cs.minute();
    gt.tm.tm_sec = cs.second();
    // Its weekdays begin with Monday.
    gt.tm.tm_wday = (static_cast<int>(cctz::get_weekday(cctz::civil_day(cs))) + 1) % 7;
    gt.tm.tm_yday = cctz::get_yearday(cctz::civil_day(cs)) - 1;
    gt.nanosecs = g_instants[i] % 1000000000;
    return gt;
}

ZemGregorianTime WithGlib(std::size_t i)
{
    GDateTime* dt = g_date_time_new_from_unix_utc(SecondsOf(g_instants[i]));
    ZemGregorianTime gt = {};
    gt.tm.tm_year = g_date_time_get_year(dt) - 1900;
    gt.tm.tm_mon = g_date_time_get_month(dt) - 1;
    gt.tm.tm_mday = g_date_time_get_day_of_month(dt);
    gt.tm.tm_hour = g_date_time_get_hour(dt);
    gt.tm.tm_min = g_date_time_get_minute(dt);
    gt.tm.tm_sec = g_date_time_get_second(dt);
    gt.tm.tm_wday = g_date_time_get_day_of_week(dt) % 7;
    gt.tm.tm_yday = g_date_time_get_day_of_year(dt) - 1;
    gt.nanosecs = g_instants[i] % 1000000000;
    g_date_time_unref(dt);
    return gt;
}

// What the C library fills beyond the fields themselves; the peers' own ways differ in it.
Moment ViewAll(const ZemGregorianTime& gt)
{
    bool filled =
        gt.tm.tm_isdst == 0 && gt.tm.tm_gmtoff == 0 && std::strcmp(gt.tm.tm_zone, "GMT") == 0;
    return filled ? ViewRecord(gt) : Moment{};
}

void Register(const std::string& name, int threads)
{
    Job job(name, [](std::size_t i) { return SharedMoments().fields[i]; });
    job.Threads(threads);
    auto add = [&](const char* column, auto op) { job.Add(column, op, ViewAll); };

    add("ours inline", [](std::size_t i) {
        ZemGregorianTime gt;
        ZemGregorianTimeConstructUTC(&gt, g_instants[i]);
        return gt;
    });
    add("ours exported", [](std::size_t i) {
        ZemGregorianTime gt;
        Exported(ZemGregorianTimeConstructUTC)(&gt, g_instants[i]);
        return gt;
    });
    add("hand kernel", [](std::size_t i) {
        ZemGregorianTime gt;
        limit::BreakDown(&gt, g_instants[i]);
        return gt;
    });
    add("gmtime_r", [](std::size_t i) {
        std::time_t secs = SecondsOf(g_instants[i]);
        struct tm tm;
        gmtime_r(&secs, &tm);
        return WithNanos(tm, g_instants[i]);
    });
    if (threads > 1) {
        return;
    }
    auto addPeer = [&](const char* column, auto op) { job.Add(column, op, ViewRecord); };
    addPeer("<chrono>, filling a tm", [](std::size_t i) { return FullRecord<Chrono>(i); });
    addPeer("date, filling a tm", [](std::size_t i) { return FullRecord<HinnantDate>(i); });
    addPeer("cctz, filling a tm", WithCctz);
    addPeer("GLib, filling a tm", WithGlib);
    addPeer("Abseil ToTM", [](std::size_t i) {
        static const absl::TimeZone utc = absl::UTCTimeZone();
        return WithNanos(absl::ToTM(absl::FromUnixNanos(g_instants[i]), utc), g_instants[i]);
    });
    addPeer("Boost.DateTime to_tm", [](std::size_t i) {
        return WithNanos(
            boost::posix_time::to_tm(boost::posix_time::from_time_t(SecondsOf(g_instants[i]))),
            g_instants[i]);
    });

    const std::string partial = "no weekday, no day of the year";
    auto accept = [](std::size_t i, ZemGregorianTime gt) {
        const Moment& moment = SharedMoments().fields[i];
        gt.tm.tm_wday = moment.weekday;
        gt.tm.tm_yday = moment.yearDay;
        return ViewRecord(gt) == moment;
    };
    job.AddOther(
        "<chrono>, fields", partial, [](std::size_t i) { return DateAndTime<Chrono>(i); }, accept);
    job.AddOther(
        "date, fields", partial, [](std::size_t i) { return DateAndTime<HinnantDate>(i); }, accept);
}

}  // namespace

void RegisterBreakdown()
{
    Register("UTC breakdown", 1);
    Register("UTC breakdown, 2 threads", 2);
}

}  // namespace bench
