// Calendar records: validation, comparison, and their two texts.

#include "Zem/Os/ZemTimeInline.h"

// ---------------------------------------------------------------------------------------------
// Validation and comparison
// ---------------------------------------------------------------------------------------------

namespace
{

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
    return month >= 1 && month <= 12 && monthDay >= 1 && monthDay <= DaysInMonth(year, month) &&
           hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59 && second >= 0 && second <= 60 &&
           nanosecond >= 0 && nanosecond <= 999999999;
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

namespace
{

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
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

// Reads a field of exactly two characters. Two digits before something else are all that strtoul
// would take, and are read without it.
bool ReadTwo(const char*& p, ZemInt& value)
{
    if (IsDigit(p[0]) && IsDigit(p[1]) && !IsDigit(p[2])) {
        value = (p[0] - '0') * 10 + (p[1] - '0');
        p += 2;
        return true;
    }
    return ReadField(p, value) == 2;
}

bool ReadFour(const char*& p, ZemInt& value)
{
    if (IsDigit(p[0]) && IsDigit(p[1]) && IsDigit(p[2]) && IsDigit(p[3]) && !IsDigit(p[4])) {
        value = (p[0] - '0') * 1000 + (p[1] - '0') * 100 + (p[2] - '0') * 10 + (p[3] - '0');
        p += 4;
        return true;
    }
    return ReadField(p, value) == 4;
}

bool Skip(const char*& p, char expected)
{
    if (*p != expected) {
        return false;
    }
    ++p;
    return true;
}

// Reads the digits after a decimal point as nanoseconds; those after the ninth are passed over.
ZemInt ReadFraction(const char*& p)
{
    ZemInt nanos = 0;
    int digits = 0;
    for (; IsDigit(*p) && digits < 9; ++p, ++digits) {
        nanos = nanos * 10 + (*p - '0');
    }
    for (; digits < 9; ++digits) {
        nanos *= 10;
    }
    while (IsDigit(*p)) {
        ++p;
    }
    return nanos;
}

// Reads Z, or an optional space, a sign and an offset, as seconds east of UTC.
bool ReadZone(const char*& p, ZemInt& offset)
{
    offset = 0;
    if (Skip(p, 'Z')) {
        return true;
    }
    Skip(p, ' ');
    bool negative = *p == '-';
    if (!negative && *p != '+') {
        return false;
    }
    ++p;

    ZemInt field;
    ZemInt hours = 0;
    ZemInt minutes = 0;
    ZemInt seconds = 0;
    switch (ReadField(p, field)) {
        case 2:
            hours = field;
            if (Skip(p, ':')) {
                if (!ReadTwo(p, minutes)) {
                    return false;
                }
                if (Skip(p, ':') && !ReadTwo(p, seconds)) {
                    return false;
                }
            }
            break;
        case 4:
            hours = field / 100;
            minutes = field % 100;
            break;
        case 6:
            hours = field / 10000;
            minutes = field / 100 % 100;
            seconds = field % 100;
            break;
        default:
            return false;
    }
    // Fields of six characters at most: the sum stays below 400,000,000.
    offset = (hours * 60 + minutes) * 60 + seconds;
    if (negative) {
        offset = -offset;
    }
    return true;
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

    if (!ReadFour(p, year) || !Skip(p, '-') || !ReadTwo(p, month) || !Skip(p, '-') ||
        !ReadTwo(p, day) || !(Skip(p, 'T') || Skip(p, ' ')) || !ReadTwo(p, hour) || !Skip(p, ':') ||
        !ReadTwo(p, minute) || !Skip(p, ':') || !ReadTwo(p, second)) {
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

namespace
{

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
