#include "tools/forms/time_reader.hpp"

#include "tools/forms/time_place.hpp"

namespace {

constexpr ZemTime kSecond = 1000000000;
constexpr ZemTime kDay = 86400 * kSecond;

bool IsLeap(int year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// The time of fields without a year, as if they were of 2000, in UTC.
ZemTime InYear2000(ZemGregorianTime record)
{
    record.tm.tm_year = 100;
    ZemGregorianTimeSetUTCOffset(&record, 0);
    return ZemGregorianTimeGetTime(&record);
}

bool IsLeapDay(ZemTime in2000)
{
    constexpr ZemTime kLeapDay = 951782400 * kSecond;  // 2000-02-29
    return in2000 >= kLeapDay && in2000 < kLeapDay + kDay;
}

// The latest year in which the time does not lie beyond `latest`.
int LatestYear(ZemTime in2000, ZemTime latest)
{
    ZemGregorianTime last;
    ZemGregorianTimeConstructUTC(&last, latest);
    int year = last.tm.tm_year + 1900 - (in2000 > InYear2000(last) ? 1 : 0);
    while (IsLeapDay(in2000) && !IsLeap(year)) {
        --year;
    }
    return year;
}

// The years between a time and the next one, both as if they were of 2000. Half a year back is the
// next year; all but a week of a year ahead is a line of the old year that came late.
int StepBetween(ZemTime before, ZemTime after)
{
    if (after - before < -180 * kDay) {
        return 1;
    }
    return after - before > 359 * kDay ? -1 : 0;
}

std::optional<ZemTime> Known(ZemTime t)
{
    return t == ZEM_TIME_INFINITE ? std::nullopt : std::optional<ZemTime>(t);
}

bool Bears(const Zone& zone, ZemTime t, std::string_view abbreviation)
{
    const char* name = RecordIn(zone, t).tm.tm_zone;
    return name != nullptr && abbreviation == name;
}

}  // namespace

void YearSteps::Append(const YearSteps& next)
{
    if (!any) {
        *this = next;
    } else if (next.any) {
        steps += StepBetween(last, next.first) + next.steps;
        last = next.last;
    }
}

std::vector<int> YearsBehind(const std::vector<YearSteps>& parts, const TimeLayout& layout,
                             const TimeOptions& options)
{
    std::vector<int> behind(parts.size());
    YearSteps all;
    for (size_t i = 0; i < parts.size(); ++i) {
        all.Append(parts[i]);
        // The years from the first time to that part's first.
        behind[i] = parts[i].firstYear - (all.steps - parts[i].steps);
    }
    int first = options.year ? *options.year : LatestYear(all.last, layout.latest) - all.steps;
    bool isOpen = layout.hasOrder || options.year;
    for (size_t i = 0; i < parts.size(); ++i) {
        behind[i] = parts[i].any && isOpen ? behind[i] - first : 0;
    }
    return behind;
}

TimeReader::TimeReader(const TimeLayout& layout, const TimeOptions& options, int yearsBehind)
    : layout_(layout),
      options_(options),
      isPlain_(!layout.places.empty() && layout.places[0].form == FormTable::begin() &&
               !layout.places[0].isSearched),
      yearsBehind_(yearsBehind)
{}

// False where that year has no such day.
bool TimeReader::SetYear(ZemGregorianTime& record)
{
    ZemTime in2000 = InYear2000(record);
    if (!layout_.hasOrder && !options_.year) {
        int year = LatestYear(in2000, layout_.latest);
        years_.steps += years_.any ? year - year_ : 0;
        years_.firstYear = years_.any ? years_.firstYear : year;
        years_.any = true;
        year_ = year;
    } else if (years_.any) {
        int step = StepBetween(years_.last, in2000);
        years_.steps += step;
        year_ += step;
    } else {
        year_ = options_.year.value_or(LatestYear(in2000, layout_.latest)) - yearsBehind_;
        years_.any = true;
        years_.first = in2000;
        years_.firstYear = year_;
    }
    years_.last = in2000;
    record.tm.tm_year = year_ - 1900;
    counts_.withoutYear += 1;
    return !IsLeapDay(in2000) || IsLeap(year_);
}

std::optional<ZemTime> TimeReader::InstantInAssumedZone(const Moment& m)
{
    if (!options_.assumed) {
        counts_.withoutZone += 1;
        return std::nullopt;
    }
    const Zone& zone = *options_.assumed;
    ZemLocalTime local;
    local.kind = 0;
    if (zone.kind == Zone::Kind::kNamed) {
        ZemGregorianTimeResolve(&m.record, &zone.named->Get(), &local);
    } else {
        local.earlier = InstantIn(zone, m.record);
    }
    ZemTime t = local.kind == 1 ? local.later : local.earlier;
    if (!m.abbreviation.empty() && !Bears(zone, t, m.abbreviation)) {
        if (local.kind != 2 || !Bears(zone, local.later, m.abbreviation)) {
            counts_.withoutZone += 1;
            return std::nullopt;
        }
        t = local.later;
    }
    bool isOpen = m.abbreviation.empty();
    counts_.assumed += 1;
    counts_.repeated += isOpen && local.kind == 2 ? 1 : 0;
    counts_.skipped += isOpen && local.kind == 1 ? 1 : 0;
    return Known(t);
}

std::optional<ZemTime> TimeReader::InstantOf(Moment& m)
{
    if (m.kind == Moment::Kind::kInstant) {
        return Known(m.t);
    }
    if (m.kind == Moment::Kind::kLocalWithoutYear && !SetYear(m.record)) {
        return std::nullopt;
    }
    if (m.hasZone) {
        Zone zone{Zone::Kind::kFixed, ZemGregorianTimeGetUTCOffset(&m.record), nullptr};
        return Known(InstantIn(zone, m.record));
    }
    return InstantInAssumedZone(m);
}

std::optional<ZemTime> TimeReader::ReadPlaces(std::string_view line)
{
    Moment m;
    if (isPlain_ && options_.assumed) {
        size_t bracket = !line.empty() && line[0] == '[' ? 1 : 0;
        wasLocal_ = ReadLocalText(line.substr(bracket), m) != 0;
        if (wasLocal_) {
            std::optional<ZemTime> t = InstantOf(m);
            counts_.atPlace[0] += t ? 1U : 0U;
            return t;
        }
    }
    if (layout_.isColoured && HasColour(line)) {
        std::string plain = WithoutColour(line);
        return ReadPlain(plain, m);
    }
    return ReadPlain(line, m);
}

std::optional<ZemTime> TimeReader::ReadPlain(std::string_view line, Moment& m)
{
    const std::vector<TimePlace>& places = layout_.places;
    size_t at = 0;
    size_t first = std::string_view::npos;
    size_t best = 0;
    size_t last = 0;
    for (size_t i = 0; i < places.size() && first != 0; ++i) {
        if (ReadPlace(places[i], line, m, at) && at < first) {
            best = i;
            first = IsOwn(places[i], line) ? 0 : at;
        }
        last = i;
    }
    if (first == std::string_view::npos) {
        return std::nullopt;
    }
    if (last != best) {
        ReadPlace(places[best], line, m, at);  // others were tried since
    }
    std::optional<ZemTime> t = m.kind == Moment::Kind::kInstant ? Known(m.t) : InstantOf(m);
    counts_.atPlace[best] += t ? 1U : 0U;
    return t;
}
