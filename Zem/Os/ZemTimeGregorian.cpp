// Calendar records: validation, comparison, and their two texts.

#include "Zem/Os/ZemTimeInline.h"

// ---------------------------------------------------------------------------------------------
// Validation and comparison
// ---------------------------------------------------------------------------------------------

namespace {

bool IsWithin(ZemInt64 value, ZemInt64 low, ZemInt64 high)
{
    return value >= low && value <= high;
}

bool IsLeapYear(ZemInt year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// For a month of 1 to 12.
ZemInt DaysInMonth(ZemInt year, ZemInt month)
{
    if (month == 2) {
        return IsLeapYear(year) ? 29 : 28;
    }
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

}  // namespace

ZemBool ZemGregorianTimeValidateFields_(ZemInt year, ZemInt month, ZemInt monthDay, ZemInt hour,
                                        ZemInt minute, ZemInt second, ZemTime nanosecond)
{
    // Every month has 28 days: the later ones are looked up.
    return IsWithin(month, 1, 12) && IsWithin(monthDay, 1, 31) &&
           (monthDay <= 28 || monthDay <= DaysInMonth(year, month)) && IsWithin(hour, 0, 23) &&
           IsWithin(minute, 0, 59) && IsWithin(second, 0, 60) && IsWithin(nanosecond, 0, 999999999);
}

ZemBool ZemGregorianTimeEqual(const ZemGregorianTime* a, const ZemGregorianTime* b)
{
    return a->tm.tm_year == b->tm.tm_year && a->tm.tm_mon == b->tm.tm_mon &&
           a->tm.tm_mday == b->tm.tm_mday && a->tm.tm_hour == b->tm.tm_hour &&
           a->tm.tm_min == b->tm.tm_min && a->tm.tm_sec == b->tm.tm_sec &&
           a->nanosecs == b->nanosecs &&
           ZemGregorianTimeGetUTCOffset(a) == ZemGregorianTimeGetUTCOffset(b);
}

ZemBool ZemGregorianTimeLess(const ZemGregorianTime* a, const ZemGregorianTime* b)
{
    if (a->tm.tm_year != b->tm.tm_year) {
        return a->tm.tm_year < b->tm.tm_year;
    }
    if (a->tm.tm_mon != b->tm.tm_mon) {
        return a->tm.tm_mon < b->tm.tm_mon;
    }
    if (a->tm.tm_mday != b->tm.tm_mday) {
        return a->tm.tm_mday < b->tm.tm_mday;
    }
    if (a->tm.tm_hour != b->tm.tm_hour) {
        return a->tm.tm_hour < b->tm.tm_hour;
    }
    if (a->tm.tm_min != b->tm.tm_min) {
        return a->tm.tm_min < b->tm.tm_min;
    }
    if (a->tm.tm_sec != b->tm.tm_sec) {
        return a->tm.tm_sec < b->tm.tm_sec;
    }
    if (a->nanosecs != b->nanosecs) {
        return a->nanosecs < b->nanosecs;
    }
    return ZemGregorianTimeGetUTCOffset(a) < ZemGregorianTimeGetUTCOffset(b);
}

// ---------------------------------------------------------------------------------------------
// Parsing
// ---------------------------------------------------------------------------------------------

namespace {

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Reads two digits; does not look past the first unless it is one.
bool ReadTwo(const char* p, ZemInt& value)
{
    ZemUint tens = static_cast<ZemUint>(p[0]) - '0';
    if (tens > 9) {
        return false;
    }
    ZemUint ones = static_cast<ZemUint>(p[1]) - '0';
    value = static_cast<ZemInt>(tens * 10 + ones);
    return ones <= 9;
}

// A number as strtoul reads it, white space and sign included, and how many characters it took.
struct Field {
    ZemInt value;
    ZemDistanceT width;
};

Field ReadFieldByStrToUint32(const char* p)
{
    char* end;
    auto value = static_cast<ZemInt>(ZemStrToUint32(p, &end, 10));
    return {value, end - p};
}

// Two digits alone are the field that occurs; strtoul would take no more.
Field ReadField(const char* p)
{
    ZemInt value;
    if (ReadTwo(p, value) && !IsDigit(p[2])) {
        return {value, 2};
    }
    return ReadFieldByStrToUint32(p);
}

struct DateAndTime {
    ZemInt year;
    ZemInt month;
    ZemInt day;
    ZemInt hour;
    ZemInt minute;
    ZemInt second;
};

constexpr ZemDistanceT kDateAndTimeSize = 19;

// Reads YYYY-MM-DD, T or a space, and hh:mm:ss, where nothing but digits stands in the fields: a
// text becomes an instant in 23 ns so, in 26 field by field. No character is looked at unless the
// one before it fits. (A third digit of the second would be strtoul's too; it is refused as no
// zone.)
bool ReadDigits(const char* s, DateAndTime& t)
{
    ZemInt century;
    ZemInt yearOfCentury;
    if (!ReadTwo(s, century) || !ReadTwo(s + 2, yearOfCentury) || s[4] != '-' ||
        !ReadTwo(s + 5, t.month) || s[7] != '-' || !ReadTwo(s + 8, t.day) ||
        (s[10] != 'T' && s[10] != ' ') || !ReadTwo(s + 11, t.hour) || s[13] != ':' ||
        !ReadTwo(s + 14, t.minute) || s[16] != ':' || !ReadTwo(s + 17, t.second)) {
        return false;
    }
    t.year = century * 100 + yearOfCentury;
    return true;
}

// The same for any fields that strtoul reads in their width.
bool ReadFields(const char* s, DateAndTime& t)
{
    Field year = ReadField(s);
    if (year.width != 4 || s[4] != '-') {
        return false;
    }
    Field month = ReadField(s + 5);
    if (month.width != 2 || s[7] != '-') {
        return false;
    }
    Field day = ReadField(s + 8);
    if (day.width != 2 || (s[10] != 'T' && s[10] != ' ')) {
        return false;
    }
    Field hour = ReadField(s + 11);
    if (hour.width != 2 || s[13] != ':') {
        return false;
    }
    Field minute = ReadField(s + 14);
    if (minute.width != 2 || s[16] != ':') {
        return false;
    }
    Field second = ReadField(s + 17);
    t = {year.value, month.value, day.value, hour.value, minute.value, second.value};
    return second.width == 2;
}

const ZemInt kNanosPerUnit[] = {1000000000, 100000000, 10000000, 1000000, 100000,
                                10000,      1000,      100,      10,      1};

// Reads Z, or an optional space, a sign and an offset, as seconds east of UTC, up to the text's
// end.
bool ReadZone(const char* p, ZemInt& offset)
{
    if (*p == 'Z') {
        offset = 0;
        return p[1] == '\0';
    }
    p += *p == ' ' ? 1 : 0;
    char sign = *p;
    if (sign != '+' && sign != '-') {
        return false;
    }
    ++p;

    Field hours = ReadField(p);
    Field minutes = {0, 0};
    Field seconds = {0, 0};
    p += hours.width;
    switch (hours.width) {
        case 2:
            if (*p == ':') {
                minutes = ReadField(p + 1);
                if (minutes.width != 2) {
                    return false;
                }
                p += 3;
                if (*p == ':') {
                    seconds = ReadField(p + 1);
                    if (seconds.width != 2) {
                        return false;
                    }
                    p += 3;
                }
            }
            break;
        case 4:
            minutes.value = hours.value % 100;
            hours.value /= 100;
            break;
        case 6:
            seconds.value = hours.value % 100;
            minutes.value = hours.value / 100 % 100;
            hours.value /= 10000;
            break;
        default:
            return false;
    }
    // A field of two characters is at most 99: the sum cannot overflow.
    ZemInt magnitude = (hours.value * 60 + minutes.value) * 60 + seconds.value;
    offset = sign == '-' ? -magnitude : magnitude;
    return *p == '\0';
}

}  // namespace

ZemGregorianTime* ZemGregorianTimeConstructCStr(ZemGregorianTime* gt, const char* s)
{
    DateAndTime t;
    if (!ReadDigits(s, t) && !ReadFields(s, t)) {
        return nullptr;
    }
    const char* p = s + kDateAndTimeSize;

    // Nine digits of a fraction count; further ones are passed over.
    ZemInt nanos = 0;
    if (*p == '.') {
        int digits = 0;
        for (++p; IsDigit(*p); ++p) {
            if (digits < 9) {
                nanos = nanos * 10 + (*p - '0');
                ++digits;
            }
        }
        nanos *= kNanosPerUnit[digits];
    }

    ZemInt offset;
    if (!ReadZone(p, offset) ||
        ZemGregorianTimeConstructFields(gt, t.year, t.month, t.day, t.hour, t.minute, t.second,
                                        nanos) == nullptr) {
        return nullptr;
    }
    ZemGregorianTimeSetUTCOffset(gt, offset);
    return gt;
}

// ---------------------------------------------------------------------------------------------
// Printing
// ---------------------------------------------------------------------------------------------

namespace {

// The fields as they are printed.
struct PrintedFields {
    ZemInt year;
    ZemInt month;
    ZemInt day;
    ZemInt hour;
    ZemInt minute;
    ZemInt second;
    ZemInt millisecond;
};

// Moves the fields one second back.
void BorrowSecond(PrintedFields& f)
{
    if (f.second > 0) {
        f.second -= 1;
        return;
    }
    f.second = 59;
    if (f.minute > 0) {
        f.minute -= 1;
        return;
    }
    f.minute = 59;
    if (f.hour > 0) {
        f.hour -= 1;
        return;
    }
    f.hour = 23;
    if (f.day > 1) {
        f.day -= 1;
        return;
    }
    if (f.month > 1) {
        f.month -= 1;
    } else {
        f.month = 12;
        f.year = static_cast<ZemInt>(static_cast<ZemUint>(f.year) - 1);
    }
    f.day = DaysInMonth(f.year, f.month);
}

PrintedFields FieldsToPrint(const ZemGregorianTime* gt)
{
    PrintedFields f = {ZemGregorianTimeGetYear(gt),
                       ZemGregorianTimeGetMonth(gt),
                       ZemGregorianTimeGetMonthDay(gt),
                       ZemGregorianTimeGetHour(gt),
                       ZemGregorianTimeGetMinute(gt),
                       ZemGregorianTimeGetSecond(gt),
                       static_cast<ZemInt>(gt->nanosecs / 1000000)};
    // A record built from an instant before 1970 counts back from the second that it names.
    if (gt->nanosecs < 0 && gt->nanosecs > -1000000000) {
        BorrowSecond(f);
        f.millisecond = static_cast<ZemInt>((gt->nanosecs + 1000000000) / 1000000);
    }
    return f;
}

const char kSigns[2][2] = {"+", "-"};

}  // namespace

char* ZemGregorianTimeGetAsString(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen)
{
    PrintedFields f = FieldsToPrint(gt);
    ZemSizeT ret = ZemSNPrintf(buf, buflen, "%04d-%02d-%02d %02d:%02d:%02d.%03d", f.year, f.month,
                               f.day, f.hour, f.minute, f.second, f.millisecond);
    return ret < buflen ? buf : nullptr;
}

char* ZemGregorianTimeGetAsStringWithOffset(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen)
{
    PrintedFields f = FieldsToPrint(gt);
    ZemInt offset = ZemGregorianTimeGetUTCOffset(gt);
    // A branch on the sign would be a misprediction, of 6 ns in 22.
    auto bits = static_cast<ZemUint>(offset);
    ZemUint negative = bits / 2147483648U;  // 1 or 0
    const char* sign = kSigns[negative];
    ZemUint magnitude = (bits ^ (0 - negative)) + negative;
    auto tzh = static_cast<ZemInt>(magnitude / 3600);
    auto tzm = static_cast<ZemInt>(magnitude % 3600 / 60);
    auto tzs = static_cast<ZemInt>(magnitude % 60);

    ZemSizeT ret;
    if (tzs == 0) {
        ret =
            ZemSNPrintf(buf, buflen, "%04d-%02d-%02d %02d:%02d:%02d.%03d %s%02d:%02d", f.year,
                        f.month, f.day, f.hour, f.minute, f.second, f.millisecond, sign, tzh, tzm);
    } else {
        ret = ZemSNPrintf(buf, buflen, "%04d-%02d-%02d %02d:%02d:%02d.%03d %s%02d:%02d:%02d",
                          f.year, f.month, f.day, f.hour, f.minute, f.second, f.millisecond, sign,
                          tzh, tzm, tzs);
    }
    return ret < buflen ? buf : nullptr;
}
