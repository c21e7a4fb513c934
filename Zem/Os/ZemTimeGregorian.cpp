// Calendar records: validation, comparison, and their two texts.

#include "Zem/Os/ZemTimeInline.h"

// ---------------------------------------------------------------------------------------------
// Validation and comparison
// ---------------------------------------------------------------------------------------------

namespace {

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
    return month >= 1 && month <= 12 && monthDay >= 1 &&
           (monthDay <= 28 || monthDay <= DaysInMonth(year, month)) && hour >= 0 && hour <= 23 &&
           minute >= 0 && minute <= 59 && second >= 0 && second <= 60 && nanosecond >= 0 &&
           nanosecond <= 999999999;
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

ZemInt TwoDigits(const char* p)
{
    return (p[0] - '0') * 10 + (p[1] - '0');
}

// Reads a field as strtoul does, white space and sign included, moves `p` past it and returns the
// number of characters it took.
ZemDistanceT ReadField(const char*& p, ZemInt& value)
{
    char* end;
    value = static_cast<ZemInt>(ZemStrToUint32(p, &end, 10));
    ZemDistanceT width = end - p;
    p = end;
    return width;
}

bool Skip(const char*& p, char expected)
{
    if (*p != expected) {
        return false;
    }
    ++p;
    return true;
}

// Reads a field of exactly two characters and the separator after it. Two digits in front of it
// are all that strtoul would take, and are read without it.
bool ReadTwo(const char*& p, ZemInt& value, char separator)
{
    if (IsDigit(p[0]) && IsDigit(p[1]) && p[2] == separator) {
        value = TwoDigits(p);
        p += 3;
        return true;
    }
    return ReadField(p, value) == 2 && Skip(p, separator);
}

// The same without a separator.
bool ReadTwo(const char*& p, ZemInt& value)
{
    if (IsDigit(p[0]) && IsDigit(p[1]) && !IsDigit(p[2])) {
        value = TwoDigits(p);
        p += 2;
        return true;
    }
    return ReadField(p, value) == 2;
}

bool ReadFour(const char*& p, ZemInt& value, char separator)
{
    if (IsDigit(p[0]) && IsDigit(p[1]) && IsDigit(p[2]) && IsDigit(p[3]) && p[4] == separator) {
        value = TwoDigits(p) * 100 + TwoDigits(p + 2);
        p += 5;
        return true;
    }
    return ReadField(p, value) == 4 && Skip(p, separator);
}

// Reads the digits after a decimal point as nanoseconds; those after the ninth are passed over.
ZemInt ReadFraction(const char*& p)
{
    constexpr ZemInt kUnits[] = {1000000000, 100000000, 10000000, 1000000, 100000,
                                 10000,      1000,      100,      10,      1};
    ZemInt nanos = 0;
    int digits = 0;
    for (; IsDigit(*p) && digits < 9; ++p, ++digits) {
        nanos = nanos * 10 + (*p - '0');
    }
    while (IsDigit(*p)) {
        ++p;
    }
    return nanos * kUnits[digits];
}

// Reads an offset without its sign, as seconds.
bool ReadOffset(const char*& p, ZemInt& offset)
{
    ZemInt hours;
    ZemInt minutes = 0;
    ZemInt seconds = 0;
    switch (ReadField(p, hours)) {
        case 2:
            if (Skip(p, ':')) {
                if (!ReadTwo(p, minutes) || (Skip(p, ':') && !ReadTwo(p, seconds))) {
                    return false;
                }
            }
            break;
        case 4:
            minutes = hours % 100;
            hours /= 100;
            break;
        case 6:
            seconds = hours % 100;
            minutes = hours / 100 % 100;
            hours /= 10000;
            break;
        default:
            return false;
    }
    // A field of two characters is at most 99: the sum cannot overflow.
    offset = (hours * 60 + minutes) * 60 + seconds;
    return true;
}

// Reads Z, or an optional space, a sign and an offset, as seconds east of UTC.
bool ReadZone(const char*& p, ZemInt& offset)
{
    if (Skip(p, 'Z')) {
        offset = 0;
        return true;
    }
    Skip(p, ' ');
    if (Skip(p, '+')) {
        return ReadOffset(p, offset);
    }
    if (Skip(p, '-') && ReadOffset(p, offset)) {
        offset = -offset;
        return true;
    }
    return false;
}

}  // namespace

ZemGregorianTime* ZemGregorianTimeConstructCStr(ZemGregorianTime* gt, const char* s)
{
    const char* p = s;
    ZemInt year;
    ZemInt month;
    ZemInt day;
    ZemInt hour;
    ZemInt minute;
    ZemInt second;
    ZemInt nanos = 0;
    ZemInt offset;

    if (!ReadFour(p, year, '-') || !ReadTwo(p, month, '-') || !ReadTwo(p, day) ||
        !(Skip(p, 'T') || Skip(p, ' ')) || !ReadTwo(p, hour, ':') || !ReadTwo(p, minute, ':') ||
        !ReadTwo(p, second)) {
        return nullptr;
    }
    if (Skip(p, '.')) {
        nanos = ReadFraction(p);
    }
    if (!ReadZone(p, offset) || *p != '\0') {
        return nullptr;
    }
    if (ZemGregorianTimeConstructFields(gt, year, month, day, hour, minute, second, nanos) ==
        nullptr) {
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
    const char* sign = offset < 0 ? "-" : "+";
    ZemUint magnitude =
        offset < 0 ? 0 - static_cast<ZemUint>(offset) : static_cast<ZemUint>(offset);
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
