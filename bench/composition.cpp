// Fields in UTC to an instant.

#include <absl/time/civil_time.h>
#include <absl/time/time.h>
#include <cctz/civil_time.h>
#include <cctz/time_zone.h>
#include <glib.h>

#include <boost/date_time/posix_time/posix_time.hpp>

#include "Zem/Os/ZemTimeInline.h"
#include "calendars.h"
#include "limit.h"
#include "values.h"

namespace bench {

namespace {

// Every column reads the fields from the same records.
ZemGregorianTime g_records[kValues];

template <class Calendar>
ZemTime WithCalendar(std::size_t i)
{
    const ZemGregorianTime& gt = g_records[i];
    typename Calendar::Day day(
        typename Calendar::YearNumber(gt.tm.tm_year + 1900) /
        typename Calendar::MonthNumber(static_cast<unsigned>(gt.tm.tm_mon + 1)) /
        typename Calendar::DayNumber(static_cast<unsigned>(gt.tm.tm_mday)));
    return NanoPoint(day + std::chrono::hours(gt.tm.tm_hour) + std::chrono::minutes(gt.tm.tm_min) +
                     std::chrono::seconds(gt.tm.tm_sec) + Nanos(gt.nanosecs))
        .time_since_epoch()
        .count();
}

// The civil second that cctz and Abseil call by one interface.
template <class CivilSecond>
CivilSecond CivilOf(const ZemGregorianTime& gt)
{
    return CivilSecond(gt.tm.tm_year + 1900, gt.tm.tm_mon + 1, gt.tm.tm_mday, gt.tm.tm_hour,
                       gt.tm.tm_min, gt.tm.tm_sec);
}

ZemTime WithGlib(std::size_t i)
{
    const ZemGregorianTime& gt = g_records[i];
    GDateTime* dt = g_date_time_new_utc(gt.tm.tm_year + 1900, gt.tm.tm_mon + 1, gt.tm.tm_mday,
                                        gt.tm.tm_hour, gt.tm.tm_min, gt.tm.tm_sec);
    ZemTime t = g_date_time_to_unix(dt) * 1000000000 + gt.nanosecs;
    g_date_time_unref(dt);
    return t;
}

}  // namespace

void RegisterComposition()
{
    for (std::size_t i = 0; i < kValues; ++i) {
        const Moment& moment = SharedMoments().fields[i];
        g_records[i] = {TmOf(moment), moment.nanos};
    }
    Job job("UTC composition", [](std::size_t i) { return SharedMoments().instants[i]; });
    job.Add("ours inline", [](std::size_t i) { return ZemGregorianTimeGetUTCTime(&g_records[i]); });
    job.Add("ours exported",
            [](std::size_t i) { return Exported(ZemGregorianTimeGetUTCTime)(&g_records[i]); });
    job.Add("hand kernel", [](std::size_t i) { return limit::Compose(&g_records[i]); });
    job.Add("<chrono>, unchecked", [](std::size_t i) { return WithCalendar<Chrono>(i); });
    job.Add("date, unchecked", [](std::size_t i) { return WithCalendar<HinnantDate>(i); });
    job.Add("timegm", [](std::size_t i) {
        struct tm tm = g_records[i].tm;
        return timegm(&tm) * 1000000000 + g_records[i].nanosecs;
    });
    job.Add("Abseil", [](std::size_t i) {
        static const absl::TimeZone utc = absl::UTCTimeZone();
        return absl::ToUnixNanos(absl::FromCivil(CivilOf<absl::CivilSecond>(g_records[i]), utc) +
                                 absl::Nanoseconds(g_records[i].nanosecs));
    });
    job.Add("cctz", [](std::size_t i) {
        static const cctz::time_zone utc = cctz::utc_time_zone();
        auto t = cctz::convert(CivilOf<cctz::civil_second>(g_records[i]), utc);
        return t.time_since_epoch().count() * 1000000000 + g_records[i].nanosecs;
    });
    job.Add("Boost.DateTime", [](std::size_t i) {
        return boost::posix_time::to_time_t(boost::posix_time::ptime_from_tm(g_records[i].tm)) *
                   1000000000 +
               g_records[i].nanosecs;
    });
    job.Add("GLib", WithGlib);
}

}  // namespace bench
