// Text with an offset to an instant: one fixed form, and mixed forms; text that ends with a NUL,
// text of a known size, and text that goes on as a log line does.

#include <absl/time/time.h>
#include <cctz/time_zone.h>
#include <fmt/format.h>
#include <glib.h>

#include <cstring>
#include <sstream>

#include "Zem/Os/ZemTime.hpp"
#include "calendars.h"
#include "limit.h"
#include "values.h"

namespace bench {

namespace {

// The values of one job, as C text, as the std::string that some peers ask for, and as the
// beginning of a line.
struct Texts {
    char c[kValues][48];
    std::string strings[kValues];
    std::string lines[kValues];
    ZemTime instants[kValues];
};

// Stores a drawn second, written with the separator and followed by the fraction and the zone.
void Store(Texts& texts, std::size_t i, char separator, const std::string& fraction,
           const std::string& zone, std::int64_t offset)
{
    Moment m;
    std::int64_t secs = DrawSecond(1900, 2199, m) - offset;
    std::string digits = (fraction.empty() ? fraction : fraction.substr(1)) + "000000000";
    texts.instants[i] = secs * 1000000000 + std::stoll(digits.substr(0, 9));
    texts.strings[i] = fmt::format("{:04}-{:02}-{:02}{}{:02}:{:02}:{:02}{}{}", m.year, m.month,
                                   m.day, separator, m.hour, m.minute, m.second, fraction, zone);
    texts.lines[i] = texts.strings[i] + " worker 7: connection closed";
    std::memcpy(texts.c[i], texts.strings[i].c_str(), texts.strings[i].size() + 1);
}

// 2024-03-01T12:30:45.250+01:00, with quarter-hour offsets from -12:00 to +14:00.
Texts* FixedForm()
{
    static Texts texts;
    for (std::size_t i = 0; i < kValues; ++i) {
        std::int64_t quarters = Between(-48, 56);
        std::int64_t magnitude = std::abs(quarters);
        Store(texts, i, 'T', fmt::format(".{:03}", Between(0, 999)),
              fmt::format("{}{:02}:{:02}", quarters < 0 ? '-' : '+', magnitude / 4,
                          magnitude % 4 * 15),
              quarters * 900);
    }
    return &texts;
}

// T or a space; no fraction or one of 1 to 9 digits; Z, or an offset of hours with or without
// minutes, colon and a space in front.
Texts* MixedForms()
{
    static Texts texts;
    for (std::size_t i = 0; i < kValues; ++i) {
        auto digits = static_cast<std::size_t>(Between(0, 9));
        std::string fraction = fmt::format(".{:09}", Between(0, 999999999));
        fraction.resize(digits == 0 ? 0 : digits + 1);
        std::int64_t offset = 0;
        std::string zone = "Z";
        std::int64_t form = Between(0, 3);
        if (form != 0) {
            std::int64_t hours = Between(0, 14);
            std::int64_t minutes = form == 1 ? 0 : Between(0, 3) * 15;
            bool west = Between(0, 1) != 0;
            offset = (hours * 60 + minutes) * (west ? -60 : 60);
            zone = fmt::format("{}{}{:02}", Between(0, 1) != 0 ? " " : "", west ? '-' : '+', hours);
            zone += form == 1 ? "" : fmt::format("{}{:02}", form == 2 ? "" : ":", minutes);
        }
        Store(texts, i, Between(0, 1) != 0 ? 'T' : ' ', fraction, zone, offset);
    }
    return &texts;
}

std::int64_t ReadFraction(const char*& p)
{
    std::int64_t nanos = 0;
    std::int64_t unit = 100000000;
    for (; *p >= '0' && *p <= '9'; ++p, unit /= 10) {
        nanos += (*p - '0') * unit;
    }
    return nanos;
}

ZemTime WithStrptime(const char* s)
{
    struct tm tm = {};
    const char* p = strptime(s, s[10] == 'T' ? "%Y-%m-%dT%H:%M:%S" : "%Y-%m-%d %H:%M:%S", &tm);
    std::int64_t nanos = 0;
    if (p == nullptr) {
        return ZEM_TIME_INFINITE;
    }
    if (*p == '.') {
        nanos = ReadFraction(++p);
    }
    if (strptime(p, "%z", &tm) == nullptr) {
        return ZEM_TIME_INFINITE;
    }
    long offset = tm.tm_gmtoff;
    return (timegm(&tm) - offset) * 1000000000 + nanos;
}

ZemTime WithSscanf(const char* s)
{
    struct tm tm = {};
    int millis;
    char sign;
    int hours;
    int minutes;
    if (std::sscanf(s, "%4d-%2d-%2dT%2d:%2d:%2d.%3d%c%2d:%2d", &tm.tm_year, &tm.tm_mon, &tm.tm_mday,
                    &tm.tm_hour, &tm.tm_min, &tm.tm_sec, &millis, &sign, &hours, &minutes) != 10) {
        return ZEM_TIME_INFINITE;
    }
    tm.tm_year -= 1900;
    tm.tm_mon -= 1;
    int offset = (hours * 60 + minutes) * (sign == '-' ? -60 : 60);
    return (timegm(&tm) - offset) * 1000000000 + millis * 1000000;
}

ZemTime WithGlib(const char* s)
{
    GDateTime* dt = g_date_time_new_from_iso8601(s, nullptr);
    if (dt == nullptr) {
        return ZEM_TIME_INFINITE;
    }
    ZemTime t =
        g_date_time_to_unix(dt) * 1000000000 + g_date_time_get_microsecond(dt) * ZemTime{1000};
    g_date_time_unref(dt);
    return t;
}

ZemTime WithAbseil(const std::string& s)
{
    absl::Time t;
    std::string error;
    const char* format = s[10] == 'T' ? "%Y-%m-%dT%H:%M:%E*S %Ez" : "%Y-%m-%d %H:%M:%E*S %Ez";
    return absl::ParseTime(format, s, &t, &error) ? absl::ToUnixNanos(t) : ZEM_TIME_INFINITE;
}

ZemTime WithCctz(const std::string& s)
{
    static const cctz::time_zone utc = cctz::utc_time_zone();
    NanoPoint t;
    const char* format = s[10] == 'T' ? "%Y-%m-%dT%H:%M:%E*S %Ez" : "%Y-%m-%d %H:%M:%E*S %Ez";
    return cctz::parse(format, s, utc, &t) ? t.time_since_epoch().count() : ZEM_TIME_INFINITE;
}

ZemTime WithDate(const std::string& s)
{
    // What follows the text is left unread.
    static std::istringstream in;
    in.clear();
    in.str(s);
    date::sys_time<std::chrono::milliseconds> t{};
    in >> date::parse("%FT%T%Ez", t);
    return in.fail() ? ZEM_TIME_INFINITE : Nanos(t.time_since_epoch()).count();
}

template <class Reference>
void AddCommon(Job<Reference>& job, const Texts* texts)
{
    job.Add("ours inline", [=](std::size_t i) {
        ZemGregorianTime gt;
        return ZemGregorianTimeConstructCStr(&gt, texts->c[i]) != nullptr
                   ? ZemGregorianTimeGetTime(&gt)
                   : ZEM_TIME_INFINITE;
    });
    job.Add("ours exported", [=](std::size_t i) {
        ZemGregorianTime gt;
        return Exported(ZemGregorianTimeConstructCStr)(&gt, texts->c[i]) != nullptr
                   ? Exported(ZemGregorianTimeGetTime)(&gt)
                   : ZEM_TIME_INFINITE;
    });
    job.Add("hand kernel", [=](std::size_t i) { return limit::Parse(texts->c[i]); });
    job.Add("strptime + timegm", [=](std::size_t i) { return WithStrptime(texts->c[i]); });
    job.Add("Abseil", [=](std::size_t i) { return WithAbseil(texts->strings[i]); });
    job.Add("cctz", [=](std::size_t i) { return WithCctz(texts->strings[i]); });
}

// The readers that take a size. They say how many bytes they took, which is checked too.
template <class Reference>
void AddSized(Job<Reference>& job, const Texts* texts, const std::string* inputs)
{
    auto add = [&](const char* column, auto read) {
        job.Add(column, [=](std::size_t i) {
            ZemTime t;
            ZemSizeT taken = read(&t, inputs[i].data(), inputs[i].size());
            return taken == texts->strings[i].size() ? t : ZEM_TIME_INFINITE;
        });
    };
    add("ours exported", [](auto... text) { return ZemTimeParse(text...); });
    add("hand kernel", [](auto... text) { return limit::ParseWithin(text...); });
    job.Add("C++ face", [=](std::size_t i) {
        std::string_view rest = inputs[i];
        std::optional<zem::Instant> t = zem::ReadInstant(rest);
        std::size_t taken = inputs[i].size() - rest.size();
        return t && taken == texts->strings[i].size() ? zem::FromChrono(*t) : ZEM_TIME_INFINITE;
    });
    // It asks for a NUL, which these strings have.
    job.Add("strptime + timegm", [=](std::size_t i) { return WithStrptime(inputs[i].c_str()); });
}

}  // namespace

void RegisterParse()
{
    const Texts* fixed = FixedForm();
    const Texts* mixed = MixedForms();
    auto fixedInstant = [=](std::size_t i) { return fixed->instants[i]; };
    auto mixedInstant = [=](std::size_t i) { return mixed->instants[i]; };

    Job fixedJob("parse, fixed form", fixedInstant);
    AddCommon(fixedJob, fixed);
    fixedJob.Add("sscanf + timegm", [=](std::size_t i) { return WithSscanf(fixed->c[i]); });
    fixedJob.Add("GLib", [=](std::size_t i) { return WithGlib(fixed->c[i]); });
    fixedJob.Add("date", [=](std::size_t i) { return WithDate(fixed->strings[i]); });

    Job mixedJob("parse, mixed forms", mixedInstant);
    AddCommon(mixedJob, mixed);

    Job fixedSized("parse with a size, fixed form", fixedInstant);
    AddSized(fixedSized, fixed, fixed->strings);
    fixedSized.Add("Abseil", [=](std::size_t i) { return WithAbseil(fixed->strings[i]); });
    fixedSized.Add("cctz", [=](std::size_t i) { return WithCctz(fixed->strings[i]); });
    fixedSized.Add("date", [=](std::size_t i) { return WithDate(fixed->strings[i]); });

    Job mixedSized("parse with a size, mixed forms", mixedInstant);
    AddSized(mixedSized, mixed, mixed->strings);
    mixedSized.Add("Abseil", [=](std::size_t i) { return WithAbseil(mixed->strings[i]); });
    mixedSized.Add("cctz", [=](std::size_t i) { return WithCctz(mixed->strings[i]); });

    // Abseil and cctz read whole texts alone.
    Job fixedLine("parse from a line, fixed form", fixedInstant);
    AddSized(fixedLine, fixed, fixed->lines);
    fixedLine.Add("date", [=](std::size_t i) { return WithDate(fixed->lines[i]); });

    Job mixedLine("parse from a line, mixed forms", mixedInstant);
    AddSized(mixedLine, mixed, mixed->lines);
}

}  // namespace bench
