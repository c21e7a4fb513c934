// A record as text with milliseconds, with its offset or without: 2024-03-01 12:30:45.250 +01:00;
// and records and instants as RFC 3339: 2024-03-01T12:30:45.250+01:00.

#include <absl/strings/str_format.h>
#include <absl/time/time.h>
#include <cctz/time_zone.h>
#include <fmt/chrono.h>
#include <fmt/compile.h>
#include <glib.h>

#include <cstring>
#include <string_view>

#include "Zem/Os/ZemTime.hpp"
#include "calendars.h"
#include "limit.h"
#include "values.h"

namespace bench {

namespace {

// The values, in the form that each peer takes, and their text without a fraction and a zone.
ZemGregorianTime g_records[kValues];
ZemTime g_instants[kValues];
absl::Time g_abslTimes[kValues];
absl::TimeZone g_abslZones[kValues];
cctz::time_zone g_cctzZones[kValues];
NanoPoint g_points[kValues];
GDateTime* g_glibTimes[kValues];
std::string g_dates[kValues];  // 2024-03-01
std::string g_times[kValues];  // 12:30:45

void MakeValues()
{
    for (std::size_t i = 0; i < kValues; ++i) {
        Moment m;
        std::int64_t secs = DrawSecond(1900, 2199, m);
        int millis = static_cast<int>(Between(0, 999));
        // No offset of 0, of which RFC 3339 makes a Z and the peers do not.
        auto offset = static_cast<int>(Between(-48, 55) * 900);
        offset += offset >= 0 ? 900 : 0;
        ZemGregorianTime& gt = g_records[i];
        gt.tm = TmOf(m);
        gt.tm.tm_gmtoff = offset;
        gt.nanosecs = millis * ZemTime{1000000} + Between(0, 999999);
        ZemTime instant = (secs - offset) * 1000000000 + gt.nanosecs;
        g_instants[i] = instant;
        g_abslTimes[i] = absl::FromUnixNanos(instant);
        g_abslZones[i] = absl::FixedTimeZone(offset);
        g_cctzZones[i] = cctz::fixed_time_zone(cctz::seconds(offset));
        g_points[i] = NanoPoint(Nanos(instant));
        GTimeZone* zone = g_time_zone_new_offset(offset);
        g_glibTimes[i] = g_date_time_new(zone, m.year, m.month, m.day, m.hour, m.minute,
                                         m.second + static_cast<double>(gt.nanosecs) / 1e9);
        g_time_zone_unref(zone);
        g_dates[i] = fmt::format("{:04}-{:02}-{:02}", m.year, m.month, m.day);
        g_times[i] = fmt::format("{:02}:{:02}:{:02}", m.hour, m.minute, m.second);
    }
}

// The fraction of a value with its point, and its offset.
std::string FractionOf(std::size_t i, std::size_t digits)
{
    return fmt::format(".{:09}", g_records[i].nanosecs).substr(0, digits == 0 ? 0 : digits + 1);
}

std::string OffsetOf(std::size_t i)
{
    long minutes = g_records[i].tm.tm_gmtoff / 60;
    return fmt::format("{}{:02}:{:02}", minutes < 0 ? '-' : '+', std::abs(minutes) / 60,
                       std::abs(minutes) % 60);
}

char g_buf[64];

// What is printed behind the seconds.
struct Tail {
    int millis;
    char sign;
    int hours;
    int minutes;
};

Tail TailOf(const ZemGregorianTime& gt)
{
    auto minutes = static_cast<int>(gt.tm.tm_gmtoff / 60);
    int magnitude = minutes < 0 ? -minutes : minutes;
    return {static_cast<int>(gt.nanosecs / 1000000), minutes < 0 ? '-' : '+', magnitude / 60,
            magnitude % 60};
}

// Runs a printer that takes the fields as numbers, snprintf's way, and returns the text.
template <class Printer>
const char* PrintNumbers(std::size_t i, Printer printer)
{
    const ZemGregorianTime& gt = g_records[i];
    Tail tail = TailOf(gt);
    printer(gt.tm.tm_year + 1900, gt.tm.tm_mon + 1, gt.tm.tm_mday, gt.tm.tm_hour, gt.tm.tm_min,
            gt.tm.tm_sec, tail.millis, tail.sign, tail.hours, tail.minutes);
    return g_buf;
}

constexpr char kPrintfFormat[] = "%04d-%02d-%02d %02d:%02d:%02d.%03d %c%02d:%02d";
constexpr char kFmtFormat[] = "{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:03} {}{:02}:{:02}";

const char* Terminated(char* end)
{
    *end = '\0';
    return g_buf;
}

void RegisterWithOffset()
{
    Job job("print with offset", [](std::size_t i) {
        return g_dates[i] + ' ' + g_times[i] + FractionOf(i, 3) + ' ' + OffsetOf(i);
    });
    auto add = [&](const char* column, auto op) {
        job.Add(column, op,
                [](const char* text) { return text == nullptr ? "" : std::string_view(text); });
    };
    auto addString = [&](const char* column, auto op) {
        job.Add(column, op, [](const std::string& text) { return std::string_view(text); });
    };

    add("ours exported", [](std::size_t i) {
        return ZemGregorianTimeGetAsStringWithOffset(&g_records[i], g_buf, sizeof g_buf);
    });
    add("hand kernel",
        [](std::size_t i) { return limit::Print(&g_records[i], g_buf, sizeof g_buf); });
    add("{fmt} on a tm, compiled", [](std::size_t i) {
        const ZemGregorianTime& gt = g_records[i];
        Tail tail = TailOf(gt);
        return Terminated(fmt::format_to(g_buf,
                                         FMT_COMPILE("{:%Y-%m-%d %H:%M:%S}.{:03} {}{:02}:{:02}"),
                                         gt.tm, tail.millis, tail.sign, tail.hours, tail.minutes));
    });
    add("{fmt} on numbers, compiled", [](std::size_t i) {
        return PrintNumbers(i, [](auto... fields) {
            Terminated(fmt::format_to(g_buf, FMT_COMPILE(kFmtFormat), fields...));
        });
    });
    add("snprintf", [](std::size_t i) {
        return PrintNumbers(i, [](auto... fields) {
            std::snprintf(g_buf, sizeof g_buf, kPrintfFormat, fields...);
        });
    });
    add("Abseil SNPrintF", [](std::size_t i) {
        return PrintNumbers(i, [](auto... fields) {
            absl::SNPrintF(g_buf, sizeof g_buf, kPrintfFormat, fields...);
        });
    });
    add("strftime + snprintf", [](std::size_t i) {
        const ZemGregorianTime& gt = g_records[i];
        Tail tail = TailOf(gt);
        std::size_t length = std::strftime(g_buf, sizeof g_buf, "%Y-%m-%d %H:%M:%S", &gt.tm);
        std::snprintf(g_buf + length, sizeof g_buf - length, ".%03d %c%02d:%02d", tail.millis,
                      tail.sign, tail.hours, tail.minutes);
        return static_cast<const char*>(g_buf);
    });
    addString("Abseil FormatTime", [](std::size_t i) {
        return absl::FormatTime("%Y-%m-%d %H:%M:%E3S %Ez", g_abslTimes[i], g_abslZones[i]);
    });
    addString("cctz", [](std::size_t i) {
        return cctz::format("%Y-%m-%d %H:%M:%E3S %Ez", g_points[i], g_cctzZones[i]);
    });
    addString("date", [](std::size_t i) {
        using Millis = std::chrono::milliseconds;
        const ZemGregorianTime& gt = g_records[i];
        std::chrono::seconds offset(gt.tm.tm_gmtoff);
        auto local =
            date::floor<Millis>(date::local_time<Nanos>(g_points[i].time_since_epoch() + offset));
        auto day = date::floor<date::days>(local);
        date::fields<Millis> fields(date::year_month_day(day), date::hh_mm_ss<Millis>(local - day));
        std::ostringstream out;
        date::to_stream(out, "%F %T %Ez", fields, nullptr, &offset);
        return out.str();
    });
    add("GLib", [](std::size_t i) {
        // It prints no milliseconds: they replace zeros.
        char* text = g_date_time_format(g_glibTimes[i], "%F %T.000 %:z");
        auto millis = static_cast<unsigned>(g_records[i].nanosecs / 1000000);
        text[20] = static_cast<char>('0' + millis / 100);
        text[21] = static_cast<char>('0' + millis / 10 % 10);
        text[22] = static_cast<char>('0' + millis % 10);
        std::strcpy(g_buf, text);
        g_free(text);
        return static_cast<const char*>(g_buf);
    });
}

void RegisterWithoutOffset()
{
    Job job("print without offset",
            [](std::size_t i) { return g_dates[i] + ' ' + g_times[i] + FractionOf(i, 3); });
    auto add = [&](const char* column, auto op) {
        job.Add(column, op,
                [](const char* text) { return text == nullptr ? "" : std::string_view(text); });
    };
    add("ours exported", [](std::size_t i) {
        return ZemGregorianTimeGetAsString(&g_records[i], g_buf, sizeof g_buf);
    });
    add("hand kernel",
        [](std::size_t i) { return limit::PrintLocal(&g_records[i], g_buf, sizeof g_buf); });
    add("{fmt} on a tm, compiled", [](std::size_t i) {
        const ZemGregorianTime& gt = g_records[i];
        return Terminated(fmt::format_to(g_buf, FMT_COMPILE("{:%Y-%m-%d %H:%M:%S}.{:03}"), gt.tm,
                                         gt.nanosecs / 1000000));
    });
    add("strftime + snprintf", [](std::size_t i) {
        const ZemGregorianTime& gt = g_records[i];
        std::size_t length = std::strftime(g_buf, sizeof g_buf, "%Y-%m-%d %H:%M:%S", &gt.tm);
        std::snprintf(g_buf + length, sizeof g_buf - length, ".%03d",
                      static_cast<int>(gt.nanosecs / 1000000));
        return static_cast<const char*>(g_buf);
    });
}

// What a printer of RFC 3339 wrote, of the length that it returned.
template <class Print>
std::string_view Written(Print print)
{
    return {g_buf, print(g_buf, sizeof g_buf)};
}

std::string_view WrittenTo(const char* end)
{
    return {g_buf, static_cast<std::size_t>(end - g_buf)};
}

constexpr char kRfc3339Millis[] = "{:%Y-%m-%dT%H:%M:%S}.{:03}{}{:02}:{:02}";
constexpr char kRfc3339Nanos[] = "{:%Y-%m-%dT%H:%M:%S}.{:09}{}{:02}:{:02}";

// The date and time of a value at its offset, its second rounded down.
struct tm LocalTm(std::size_t i, std::int64_t& nanos)
{
    std::int64_t secs = g_instants[i] / 1000000000;
    nanos = g_instants[i] % 1000000000;
    if (nanos < 0) {
        nanos += 1000000000;
        --secs;
    }
    std::time_t local = secs + g_records[i].tm.tm_gmtoff;
    struct tm tm;
    gmtime_r(&local, &tm);
    return tm;
}

// An instant at an offset, with `digits` of a fraction.
template <int digits>
void RegisterInstant(const std::string& name, const char* abseilFormat)
{
    Job job(name, [](std::size_t i) {
        return g_dates[i] + 'T' + g_times[i] + FractionOf(i, digits) + OffsetOf(i);
    });
    auto offset = [](std::size_t i) { return static_cast<ZemInt>(g_records[i].tm.tm_gmtoff); };
    job.Add("ours exported", [=](std::size_t i) {
        return Written([=](char* buf, std::size_t len) {
            return ZemTimePrint(g_instants[i], offset(i), digits, buf, len);
        });
    });
    job.Add(
        "C++ face",
        [=](std::size_t i) {
            return zem::Print(zem::ToInstant(g_instants[i]), digits,
                              std::chrono::seconds(offset(i)));
        },
        [](const auto& text) { return std::string(text.c_str()); });
    job.Add("hand kernel", [=](std::size_t i) {
        return Written([=](char* buf, std::size_t len) {
            return limit::PrintInstant(g_instants[i], offset(i), digits, buf, len);
        });
    });
    job.Add("gmtime_r + {fmt} on a tm, compiled", [](std::size_t i) {
        std::int64_t nanos;
        struct tm tm = LocalTm(i, nanos);
        Tail tail = TailOf(g_records[i]);
        if constexpr (digits == 3) {
            return WrittenTo(fmt::format_to(g_buf, FMT_COMPILE(kRfc3339Millis), tm, tail.millis,
                                            tail.sign, tail.hours, tail.minutes));
        } else {
            return WrittenTo(fmt::format_to(g_buf, FMT_COMPILE(kRfc3339Nanos), tm, nanos, tail.sign,
                                            tail.hours, tail.minutes));
        }
    });
    job.Add("Abseil", [=](std::size_t i) {
        return absl::FormatTime(abseilFormat, g_abslTimes[i], g_abslZones[i]);
    });
    job.Add("cctz",
            [=](std::size_t i) { return cctz::format(abseilFormat, g_points[i], g_cctzZones[i]); });
}

// An instant in UTC, without a fraction: 2024-03-01T12:30:45Z.
void RegisterInstantInUtc()
{
    Job job("instant to RFC 3339, UTC, 0 digits", [](std::size_t i) {
        std::time_t secs = g_instants[i] / 1000000000 - (g_instants[i] % 1000000000 < 0 ? 1 : 0);
        char text[32];
        struct tm tm;
        std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", gmtime_r(&secs, &tm));
        return std::string(text);
    });
    job.Add("ours exported", [](std::size_t i) {
        return Written([=](char* buf, std::size_t len) {
            return ZemTimePrint(g_instants[i], 0, 0, buf, len);
        });
    });
    job.Add("hand kernel", [](std::size_t i) {
        return Written([=](char* buf, std::size_t len) {
            return limit::PrintInstant(g_instants[i], 0, 0, buf, len);
        });
    });
    job.Add("gmtime_r + {fmt} on a tm, compiled", [](std::size_t i) {
        std::time_t secs = g_instants[i] / 1000000000 - (g_instants[i] % 1000000000 < 0 ? 1 : 0);
        struct tm tm;
        gmtime_r(&secs, &tm);
        return WrittenTo(fmt::format_to(g_buf, FMT_COMPILE("{:%Y-%m-%dT%H:%M:%SZ}"), tm));
    });
    job.Add("Abseil", [](std::size_t i) {
        static const absl::TimeZone utc = absl::UTCTimeZone();
        return absl::FormatTime("%Y-%m-%dT%H:%M:%SZ", g_abslTimes[i], utc);
    });
    job.Add("cctz", [](std::size_t i) {
        static const cctz::time_zone utc = cctz::utc_time_zone();
        return cctz::format("%Y-%m-%dT%H:%M:%SZ", g_points[i], utc);
    });
}

// A record with its offset and milliseconds.
void RegisterRecord()
{
    Job job("record to RFC 3339, 3 digits", [](std::size_t i) {
        return g_dates[i] + 'T' + g_times[i] + FractionOf(i, 3) + OffsetOf(i);
    });
    job.Add("ours exported", [](std::size_t i) {
        return Written([=](char* buf, std::size_t len) {
            return ZemGregorianTimePrint(&g_records[i], 3, buf, len);
        });
    });
    job.Add("hand kernel", [](std::size_t i) {
        return Written([=](char* buf, std::size_t len) {
            return limit::PrintRecord(&g_records[i], 3, buf, len);
        });
    });
    job.Add("{fmt} on a tm, compiled", [](std::size_t i) {
        const ZemGregorianTime& gt = g_records[i];
        Tail tail = TailOf(gt);
        return WrittenTo(fmt::format_to(g_buf, FMT_COMPILE(kRfc3339Millis), gt.tm, tail.millis,
                                        tail.sign, tail.hours, tail.minutes));
    });
}

}  // namespace

void RegisterPrint()
{
    MakeValues();
    RegisterWithOffset();
    RegisterWithoutOffset();
    RegisterInstantInUtc();
    RegisterInstant<3>("instant to RFC 3339, 3 digits", "%Y-%m-%dT%H:%M:%E3S%Ez");
    RegisterInstant<9>("instant to RFC 3339, 9 digits", "%Y-%m-%dT%H:%M:%E9S%Ez");
    RegisterRecord();
}

}  // namespace bench
