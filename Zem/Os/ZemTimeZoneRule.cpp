// Rules as POSIX writes them in TZ.

#include "Zem/Os/Private/ZemTimeZoneSource.h"

namespace {

// The text that is left to read.
struct Reader {
    const char* p;
    const char* end;

    bool AtEnd() const
    {
        return p == end;
    }

    // Takes the character if it is the next one.
    bool Take(char c)
    {
        if (p == end || *p != c) {
            return false;
        }
        ++p;
        return true;
    }
};

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Reads one to three digits, with a value of at most `max`.
bool ReadNumber(Reader& in, ZemInt max, ZemInt& value)
{
    const char* begin = in.p;
    value = 0;
    while (!in.AtEnd() && IsDigit(*in.p) && in.p - begin < 3) {
        value = value * 10 + (*in.p++ - '0');
    }
    return in.p != begin && value <= max;
}

// A number within bounds after the character that introduces it.
bool ReadPart(Reader& in, char separator, ZemInt min, ZemInt max, ZemInt& value)
{
    return in.Take(separator) && ReadNumber(in, max, value) && value >= min;
}

// Reads an optional sign, hours, and optionally minutes and seconds, as seconds.
bool ReadTime(Reader& in, ZemInt maxHours, ZemInt& seconds)
{
    bool negative = in.Take('-');
    if (!negative) {
        in.Take('+');
    }
    ZemInt hour;
    ZemInt minute = 0;
    ZemInt second = 0;
    if (!ReadNumber(in, maxHours, hour)) {
        return false;
    }
    if (in.Take(':')) {
        if (!ReadNumber(in, 59, minute) || (in.Take(':') && !ReadNumber(in, 59, second))) {
            return false;
        }
    }
    seconds = (hour * 60 + minute) * 60 + second;
    seconds = negative ? -seconds : seconds;
    return true;
}

bool ReadName(Reader& in, ZemTimeZoneName& name)
{
    bool quoted = in.Take('<');
    name.begin = in.p;
    while (!in.AtEnd() &&
           (IsLetter(*in.p) || (quoted && (IsDigit(*in.p) || *in.p == '+' || *in.p == '-')))) {
        ++in.p;
    }
    name.size = static_cast<ZemSizeT>(in.p - name.begin);
    return name.size >= 3 && (!quoted || in.Take('>'));
}

// Reads an offset as rules have it, west of UTC, into the offset east of it.
bool ReadOffset(Reader& in, ZemInt& offset)
{
    ZemInt west;
    if (!ReadTime(in, 24, west)) {
        return false;
    }
    offset = -west;
    return true;
}

bool ReadDay(Reader& in, ZemTimeZoneRuleDay& day)
{
    day = {};
    if (in.Take('M')) {
        day.form = ZEM_TIME_ZONE_WEEKDAY;
        return ReadNumber(in, 12, day.month) && day.month >= 1 &&
               ReadPart(in, '.', 1, 5, day.week) && ReadPart(in, '.', 0, 6, day.day);
    }
    bool julian = in.Take('J');
    day.form = julian ? ZEM_TIME_ZONE_JULIAN_DAY : ZEM_TIME_ZONE_YEAR_DAY;
    return ReadNumber(in, 365, day.day) && (!julian || day.day >= 1);
}

// Reads a date and its time of day, after a comma.
bool ReadDate(Reader& in, ZemTimeZoneRuleDay& day)
{
    if (!in.Take(',') || !ReadDay(in, day)) {
        return false;
    }
    day.time = 2 * 3600;
    return !in.Take('/') || ReadTime(in, 167, day.time);
}

}  // namespace

bool ZemTimeZoneReadRule(const char* begin, const char* end, ZemTimeZoneRuleSource& result)
{
    Reader in = {begin, end};
    result = {};
    ZemTimeZoneRule& rule = result.rule;
    if (!ReadName(in, result.standardName) || !ReadOffset(in, rule.standard.offset)) {
        return false;
    }
    if (in.AtEnd()) {
        return true;
    }

    rule.hasDaylight = 1;
    rule.daylight.isDaylight = 1;
    rule.daylight.offset = rule.standard.offset + 3600;
    if (!ReadName(in, result.daylightName)) {
        return false;
    }
    if (!in.AtEnd() && *in.p != ',' && !ReadOffset(in, rule.daylight.offset)) {
        return false;
    }
    if (in.AtEnd()) {
        rule.begin = {ZEM_TIME_ZONE_WEEKDAY, 3, 2, 0, 2 * 3600};
        rule.end = {ZEM_TIME_ZONE_WEEKDAY, 11, 1, 0, 2 * 3600};
        return true;
    }
    return ReadDate(in, rule.begin) && ReadDate(in, rule.end) && in.AtEnd();
}
