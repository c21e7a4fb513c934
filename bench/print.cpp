// A record as text with milliseconds and offset: 2024-03-01 12:30:45.250 +01:00.

#include <absl/strings/str_format.h>
#include <absl/time/time.h>
#include <cctz/time_zone.h>
#include <fmt/chrono.h>
#include <fmt/compile.h>
#include <glib.h>

#include <cstring>
#include <string_view>

#include "Zem/Os/ZemTimeInline.h"
#include "calendars.h"
#include "limit.h"
#include "values.h"

namespace bench {

namespace {

// The values, in the form that each peer takes, and their text.
ZemGregorianTime g_records[kValues];
absl::Time g_abslTimes[kValues];
absl::TimeZone g_abslZones[kValues];
cctz::time_zone g_cctzZones[kValues];
NanoPoint g_points[kValues];
GDateTime* g_glibTimes[kValues];
std::string g_texts[kValues];

void MakeValues()
{
    for (std::size_t i = 0; i < kValues; ++i) {
        Moment m;
        std::int64_t secs = DrawSecond(1900, 2199, m);
        int millis = static_cast<int>(Between(0, 999));
        auto offset = static_cast<int>(Between(-48, 56) * 900);
        ZemGregorianTime& gt = g_records[i];
        gt.tm = TmOf(m);
        gt.tm.tm_gmtoff = offset;
        gt.nanosecs = millis * ZemTime{1000000} + Between(0, 999999);
        ZemTime instant = (secs - offset) * 1000000000 + gt.nanosecs;
        g_abslTimes[i] = absl::FromUnixNanos(instant);
        g_abslZones[i] = absl::FixedTimeZone(offset);
        g_cctzZones[i] = cctz::fixed_time_zone(cctz::seconds(offset));
        g_points[i] = NanoPoint(Nanos(instant));
        GTimeZone* zone = g_time_zone_new_offset(offset);
        g_glibTimes[i] = g_date_time_new(zone, m.year, m.month, m.day, m.hour, m.minute,
                                         m.second + static_cast<double>(gt.nanosecs) / 1e9);
        g_time_zone_unref(zone);
        int minutes = std::abs(offset) / 60;
        g_texts[i] = fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:03} {}{:02}:{:02}", m.year,
                                 m.month, m.day, m.hour, m.minute, m.second, millis,
                                 offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
    }
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

}  // namespace

void RegisterPrint()
{
    MakeValues();
    Job job("print with offset", [](std::size_t i) -> std::string_view { return g_texts[i]; });
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
    add("limit", [](std::size_t i) { return limit::Print(&g_records[i], g_buf, sizeof g_buf); });
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

}  // namespace bench
