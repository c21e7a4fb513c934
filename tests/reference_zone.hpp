// A second reader of TZif data and of rules, as plain as can be: every look-up goes through all
// that there is, and a rule is asked year by year.
#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "Zem/Os/ZemTimeInline.h"
#include "Zem/Os/ZemTimeZone.h"

__extension__ typedef __int128 Int128;

struct ReferenceZone {
    struct Kind {
        ZemInt64 offset = 0;
        bool daylight = false;
        std::string text;

        bool operator==(const Kind& other) const = default;
    };
    using Intervals = std::vector<std::pair<ZemInt64, ZemInt64>>;
    struct Date {
        char form;  // 'M', 'J' or 'n'
        int month, week, day;
        ZemInt64 time;
    };
    struct Rule {
        Kind standard;
        std::optional<Kind> daylight;
        Date begin, end;
    };
    struct Change {
        ZemInt64 second;
        Kind kind;
    };

    std::vector<Change> data;  // the first one's second is the smallest there is
    std::optional<Rule> rule;
    std::vector<Change> all;  // what there is to see of data and rule in the span of a ZemTime

    static ZemInt64 Seconds(const std::string& text)
    {
        int part[3] = {0, 0, 0};
        std::sscanf(text.c_str() + text.find_first_of("0123456789"), "%d:%d:%d", &part[0], &part[1],
                    &part[2]);
        ZemInt64 seconds = (part[0] * 60 + part[1]) * 60 + part[2];
        return text[0] == '-' ? -seconds : seconds;
    }

    // Whether all numbers after the first are below 60 and the first is at most `hours`.
    static bool IsTime(const std::string& text, ZemInt64 hours)
    {
        int part[3] = {0, 0, 0};
        std::sscanf(text.c_str() + text.find_first_of("0123456789"), "%d:%d:%d", &part[0], &part[1],
                    &part[2]);
        return part[0] <= hours && part[1] < 60 && part[2] < 60;
    }

    static std::optional<Date> ReadDate(const std::string& text)
    {
        static const std::regex form(
            "(?:M(\\d{1,3})\\.(\\d{1,3})\\.(\\d{1,3})|(J?)(\\d{1,3}))(?:/([-+]?[0-9:]+))?");
        std::smatch m;
        if (!std::regex_match(text, m, form) || (m[6].matched && !IsTime(m[6], 167)))
            return {};
        Date date = {'M', 0, 0, 0, m[6].matched ? Seconds(m[6]) : 7200};
        if (m[1].matched) {
            date.month = std::stoi(m[1]);
            date.week = std::stoi(m[2]);
            date.day = std::stoi(m[3]);
            bool right = date.month >= 1 && date.month <= 12 && date.week >= 1 && date.week <= 5;
            return right && date.day <= 6 ? std::optional(date) : std::nullopt;
        }
        date.form = m[4].length() != 0 ? 'J' : 'n';
        date.day = std::stoi(m[5]);
        return date.day <= 365 && date.day >= (date.form == 'J') ? std::optional(date)
                                                                 : std::nullopt;
    }

    static std::string Unquoted(const std::string& name)
    {
        return name[0] == '<' ? name.substr(1, name.size() - 2) : name;
    }

    static std::optional<Rule> ReadRule(const std::string& text)
    {
        static const std::string name = "([A-Za-z]{3,}|<[-+A-Za-z0-9]{3,}>)";
        static const std::string time = "([-+]?\\d{1,3}(?::\\d{1,3}){0,2})";
        static const std::string date = ",([^,/]+(?:/[-+]?\\d{1,3}(?::\\d{1,3}){0,2})?)";
        static const std::regex form(name + time + "(?:" + name + time + "?(?:" + date + date +
                                     ")?)?");
        std::smatch m;
        if (!std::regex_match(text, m, form) || !IsTime(m[2], 24))
            return {};
        Rule rule = {{-Seconds(m[2]), false, Unquoted(m[1])}, {}, {}, {}};
        if (!m[3].matched)
            return rule;
        if (m[4].matched && !IsTime(m[4], 24))
            return {};
        ZemInt64 offset = m[4].matched ? -Seconds(m[4]) : rule.standard.offset + 3600;
        rule.daylight = Kind{offset, true, Unquoted(m[3])};
        auto begin = ReadDate(m[5].matched ? m[5].str() : "M3.2.0");
        auto end = ReadDate(m[6].matched ? m[6].str() : "M11.1.0");
        if (!begin || !end)
            return {};
        rule.begin = *begin;
        rule.end = *end;
        return rule;
    }

    // The UTC second of a rule's date in a year, with the offset that holds until then.
    static ZemInt64 SecondOf(const Date& date, int year, ZemInt64 offset)
    {
        using namespace std::chrono;
        sys_days day = sys_days(std::chrono::year(year) / January / 1);
        if (date.form == 'n')
            day += days(date.day);
        if (date.form == 'J') {
            // February 29 is not counted: the same month and day as in a common year.
            year_month_day common(sys_days(2001y / January / 1) + days(date.day - 1));
            day = std::chrono::year(year) / common.month() / common.day();
        }
        if (date.form == 'M') {
            auto month = std::chrono::year(year) / std::chrono::month(unsigned(date.month));
            weekday wanted{unsigned(date.day)};
            day = date.week == 5 ? sys_days(month / wanted[last])
                                 : sys_days(month / wanted[unsigned(date.week)]);
        }
        return ZemInt64{day.time_since_epoch().count()} * 86400 + date.time - offset;
    }

    // The years' intervals of daylight time.
    static Intervals Daylight(const Rule& r, int first, int last)
    {
        Intervals intervals;
        for (int year = first; year <= last; ++year) {
            ZemInt64 begin = SecondOf(r.begin, year, r.standard.offset);
            ZemInt64 end = SecondOf(r.end, year, r.daylight->offset);
            if (end <= begin)
                end = SecondOf(r.end, year + 1, r.daylight->offset);
            if (begin < end)
                intervals.emplace_back(begin, end);
        }
        return intervals;
    }

    static ZemUint64 Number(std::string_view bytes, std::size_t size)
    {
        ZemUint64 value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes[i]);
        return value;
    }

    // Takes the next bytes away; too few make it fail for good.
    struct Input {
        std::string_view left;
        bool failed = false;

        std::string_view Take(std::size_t size)
        {
            failed = failed || size > left.size();
            std::string_view taken = failed ? "" : left.substr(0, size);
            left.remove_prefix(taken.size());
            return taken;
        }
    };

    bool ReadBlock(Input& in, bool last, bool wide)
    {
        std::string_view counts = in.Take(24);
        if (in.failed)
            return false;
        std::size_t n[6];
        for (int i = 0; i < 6; ++i)
            n[i] = Number(counts.substr(4 * static_cast<std::size_t>(i)), 4);
        const std::size_t width = wide ? 8 : 4;
        std::string_view seconds = in.Take(n[3] * width), indices = in.Take(n[3]);
        std::string_view kinds = in.Take(n[4] * 6), texts = in.Take(n[5]);
        in.Take(n[2] * (width + 4));
        std::string_view flags = in.Take(n[1]), others = in.Take(n[0]);
        if (in.failed || !last)
            return !in.failed;

        auto flagged = [&](std::string_view f) {
            return (f.empty() || f.size() == n[4]) &&
                   f.find_first_not_of(std::string_view("\0\1", 2)) == f.npos;
        };
        if (n[2] != 0 || n[4] == 0 || n[4] > 256 || n[5] == 0 || n[5] > 1024 ||
            texts.back() != '\0' || !flagged(flags) || !flagged(others))
            return false;
        std::vector<Kind> read;
        for (std::size_t i = 0; i < n[4]; ++i) {
            auto offset = static_cast<int32_t>(Number(kinds.substr(6 * i), 4));
            auto isDaylight = static_cast<unsigned char>(kinds[6 * i + 4]);
            auto text = static_cast<unsigned char>(kinds[6 * i + 5]);
            if (offset < -89999 || offset > 93599 || isDaylight > 1 || text >= n[5])
                return false;
            read.push_back({offset, isDaylight == 1, texts.data() + text});
        }
        data = {{INT64_MIN, read[0]}};
        for (std::size_t i = 0; i < n[3]; ++i) {
            ZemUint64 bits = Number(seconds.substr(width * i), width);
            ZemInt64 second = wide ? static_cast<ZemInt64>(bits) : static_cast<int32_t>(bits);
            auto index = static_cast<unsigned char>(indices[i]);
            if ((i > 0 && second <= data.back().second) || index >= n[4])
                return false;
            data.push_back({second, read[index]});
        }
        return true;
    }

    static bool ReadMagic(Input& in, char& version)
    {
        std::string_view magic = in.Take(20);
        version = in.failed ? '1' : magic[4];
        return !in.failed && magic.substr(0, 4) == "TZif" &&
               (version == 0 || (version >= '2' && version <= '9'));
    }

    static std::optional<ReferenceZone> Read(std::string_view bytes)
    {
        ReferenceZone zone;
        Input in{bytes};
        char version, again;
        if (!ReadMagic(in, version) || !zone.ReadBlock(in, version == 0, false))
            return {};
        if (version != 0) {
            if (!ReadMagic(in, again) || again == 0 || !zone.ReadBlock(in, true, true) ||
                in.left.empty() || in.left[0] != '\n')
                return {};
            auto end = in.left.find('\n', 1);
            if (end == in.left.npos)
                return {};
            std::string footer(in.left.substr(1, end - 1));
            if (!footer.empty() && !(zone.rule = ReadRule(footer)))
                return {};
        }
        return zone.Finished() ? std::optional(zone) : std::nullopt;
    }

    static std::optional<ReferenceZone> FromRule(const std::string& text)
    {
        ReferenceZone zone;
        zone.rule = ReadRule(text);
        if (!zone.rule)
            return {};
        zone.data = {{INT64_MIN, zone.rule->standard}};
        return zone.Finished() ? std::optional(zone) : std::nullopt;
    }

    // The kind of time at a second, by looking at everything.
    const Kind& At(ZemInt64 second, const Intervals& intervals) const
    {
        // Without transitions in the data the rule says everything.
        bool ruled = rule && (data.size() == 1 || second >= data.back().second);
        for (const auto& [begin, end] : intervals)
            if (ruled && begin <= second && second < end)
                return *rule->daylight;
        if (ruled)
            return rule->standard;
        const Kind* kind = &data[0].kind;
        for (const Change& change : data)
            if (change.second <= second)
                kind = &change.kind;
        return *kind;
    }

    // Lists the changes that can be seen.
    bool Finished()
    {
        if (data.size() > 60000)
            return false;
        Intervals intervals;
        if (rule && rule->daylight)
            intervals = Daylight(*rule, 1674, 2264);
        std::vector<ZemInt64> seconds;
        for (const Change& change : data)
            seconds.push_back(change.second);
        for (const auto& [begin, end] : intervals)
            seconds.insert(seconds.end(), {begin, end});
        std::sort(seconds.begin(), seconds.end());
        constexpr ZemInt64 kFirstSecond = -9223372037, kLastSecond = 9223372036;
        all = {{kFirstSecond, At(kFirstSecond, intervals)}};
        for (ZemInt64 second : seconds)
            if (second > kFirstSecond && second <= kLastSecond)
                if (const Kind& kind = At(second, intervals); kind != all.back().kind)
                    all.push_back({second, kind});
        return true;
    }
};

// Whether two answers are the same: the record, and what its fields come to.
inline bool ZoneAgrees(const ZemTimeZone& zone, const ReferenceZone& reference, ZemTime t)
{
    using Wide = std::chrono::duration<Int128, std::nano>;
    const auto second = std::chrono::floor<std::chrono::duration<ZemInt64>>(Wide(t)).count();
    std::size_t now = 0;
    for (std::size_t i = 0; i < reference.all.size(); ++i)
        now = reference.all[i].second <= second ? i : now;
    const ReferenceZone::Kind& kind = reference.all[now].kind;

    ZemGregorianTime gt;
    ZemGregorianTime utc;
    ZemGregorianTimeConstructInZone(&gt, t, &zone);
    // The same fields as of the second in UTC that the offset leads to, which a ZemTime may not
    // hold.
    const time_t local = t / 1000000000 + kind.offset;
    ZemGmTimeR(&local, &utc.tm);
    auto fields = [](const tm& f) {
        return std::array{f.tm_year, f.tm_mon, f.tm_mday, f.tm_hour,
                          f.tm_min,  f.tm_sec, f.tm_wday, f.tm_yday};
    };
    return fields(gt.tm) == fields(utc.tm) && gt.nanosecs == t % 1000000000 &&
           gt.tm.tm_gmtoff == kind.offset && gt.tm.tm_isdst == kind.daylight &&
           kind.text == gt.tm.tm_zone;
}

// Whether the fields, by their floored local second, come to what the list of changes says.
inline bool ZoneResolves(const ZemTimeZone& zone, const ReferenceZone& reference,
                         const ZemGregorianTime& gt)
{
    const Int128 local = ZemTimeGm(&gt.tm);
    const Int128 nanos = local * 1000000000 + gt.nanosecs;
    const Int128 floored = nanos >= 0 ? nanos / 1000000000 : -((-nanos + 999999999) / 1000000000);
    auto instant = [&](Int128 offset) {
        Int128 t = nanos - offset * 1000000000;
        return t < INT64_MIN || t > INT64_MAX ? ZEM_TIME_INFINITE : static_cast<ZemTime>(t);
    };
    const auto& all = reference.all;
    std::size_t i = 0;
    ZemInt64 larger = 0;
    ZemInt64 smaller = 0;
    for (; i + 1 < all.size(); ++i) {
        larger = std::max(all[i].kind.offset, all[i + 1].kind.offset);
        smaller = std::min(all[i].kind.offset, all[i + 1].kind.offset);
        if (floored < all[i + 1].second + larger)
            break;
    }
    ZemLocalTime expected = {instant(all[i].kind.offset), instant(all[i].kind.offset),
                             instant(all[i].kind.offset), 0};
    if (i + 1 < all.size() && floored >= all[i + 1].second + smaller)
        expected = {instant(larger), instant(smaller), all[i + 1].second * 1000000000,
                    smaller == all[i].kind.offset ? 1 : 2};
    ZemLocalTime result;
    ZemGregorianTimeResolve(&gt, &zone, &result);
    return result.earlier == expected.earlier && result.later == expected.later &&
           result.transition == expected.transition && result.kind == expected.kind &&
           ZemGregorianTimeGetTimeInZone(&gt, &zone) == instant(all[i].kind.offset);
}

// Whether a zone has the transitions of the reference, both ways, and agrees with it beside each
// and at further instants.
inline bool ZoneIs(const ZemTimeZone& zone, const ReferenceZone& reference,
                   const std::vector<ZemTime>& further, std::size_t stride = 1)
{
    std::vector<ZemTime> instants = further;
    instants.insert(instants.end(), {INT64_MIN, INT64_MAX, 0, -1, 1});
    ZemTime at = INT64_MIN;
    for (std::size_t i = 1; i < reference.all.size(); ++i) {
        const ZemTime expected = reference.all[i].second * 1000000000;
        const ZemTime before = at;
        ZemTime back;
        if (!ZemTimeZoneNextTransition(&zone, at, &at) || at != expected)
            return false;
        if (ZemTimeZonePreviousTransition(&zone, at, &back) != (i > 1) || (i > 1 && back != before))
            return false;
        if (i % stride != 0)
            continue;
        for (ZemInt64 step : {ZemInt64{0}, ZemInt64{1}, 1800 * ZemInt64{1000000000}})
            for (Int128 t : {Int128{at} - step, Int128{at} + step})
                instants.push_back(
                    static_cast<ZemTime>(std::clamp<Int128>(t, INT64_MIN, INT64_MAX)));
    }
    ZemTime none = 42;
    if (ZemTimeZoneNextTransition(&zone, at, &none) || none != 42)
        return false;
    for (ZemTime t : instants) {
        ZemGregorianTime gt;
        if (!ZoneAgrees(zone, reference, t) ||
            !ZoneResolves(zone, reference, *ZemGregorianTimeConstructInZone(&gt, t, &zone)) ||
            !ZoneResolves(zone, reference, *ZemGregorianTimeConstructUTC(&gt, t)))
            return false;
    }
    return true;
}
