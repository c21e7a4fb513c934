#include "limit.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace limit {

namespace {

using std::int64_t;
using std::uint32_t;
using std::uint64_t;

constexpr int64_t kNanosPerSecond = 1000000000;
constexpr int64_t kEpochDay = 719468;  // from 0000-03-01 to 1970-01-01

// "00", "01" ... "99", each pair padded to four bytes; for the numbers without a leading zero, the
// last byte is their length.
struct Pairs {
    char padded[100][2];
    char plain[100][4];
};

constexpr Pairs kPairs = [] {
    Pairs pairs{};
    for (int i = 0; i < 100; ++i) {
        char tens = static_cast<char>('0' + i / 10);
        char ones = static_cast<char>('0' + i % 10);
        pairs.padded[i][0] = tens;
        pairs.padded[i][1] = ones;
        pairs.plain[i][0] = i < 10 ? ones : tens;
        pairs.plain[i][1] = ones;
        pairs.plain[i][3] = i < 10 ? 1 : 2;
    }
    return pairs;
}();

inline void PutPair(char* p, uint32_t value)
{
    std::memcpy(p, kPairs.padded[value], 2);
}

// Writes a number below 100 without leading zeros; may touch four bytes.
inline char* PutShort(char* p, uint32_t value)
{
    std::memcpy(p, kPairs.plain[value], 4);
    return p + kPairs.plain[value][3];
}

// Days from 1970-01-01, for years 0 and up.
inline int64_t DaysFromCivil(uint32_t year, uint32_t month, uint32_t day)
{
    constexpr uint32_t daysFromMarch[] = {306, 337, 0, 31, 61, 92, 122, 153, 184, 214, 245, 275};
    uint32_t marchYear = year - (month <= 2) + 400;
    uint32_t century = marchYear / 100;
    uint32_t days = 1461 * marchYear / 4 - century + century / 4 + daysFromMarch[month - 1];
    return int64_t{days} + day - 1 - kEpochDay - 146097;
}

inline ZemTime FromSecsAndNanos(int64_t secs, int64_t nanos)
{
    if (secs >= -9223372036 && secs < 9223372036) {
        return secs * kNanosPerSecond + nanos;
    }
    // The first second is there only in part: count from the one after.
    int64_t first = secs < 0;
    int64_t t;
    return __builtin_mul_overflow(secs + first, kNanosPerSecond, &t) ||
                   __builtin_add_overflow(t, nanos - first * kNanosPerSecond, &t)
               ? ZEM_TIME_INFINITE
               : t;
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// Calendar
// ---------------------------------------------------------------------------------------------

namespace {

// What an instant says of date and time.
struct Civil {
    uint32_t year;
    uint32_t month;  // 1 to 12
    uint32_t day;
    uint32_t hour;
    uint32_t minute;
    uint32_t second;
    uint32_t weekday;    // 0 is Sunday
    uint32_t dayOfYear;  // 0 is January 1
};

// A ZemTime reaches from 1677 to 2262, so 32 bits hold every day from 0000-03-01.
inline Civil CivilOf(int64_t secs)
{
    constexpr int64_t biasSecs = kEpochDay * 86400;
    auto biased = static_cast<uint64_t>(secs + biasSecs);
    auto n = static_cast<uint32_t>(biased / 86400);
    auto secondOfDay = static_cast<uint32_t>(biased - uint64_t{n} * 86400);

    uint32_t n1 = 4 * n + 3;
    uint32_t century = n1 / 146097;
    uint32_t n2 = n1 % 146097 | 3;
    uint64_t p2 = uint64_t{2939745} * n2;
    auto yearOfCentury = static_cast<uint32_t>(p2 >> 32);
    uint32_t dayOfYear = static_cast<uint32_t>(p2) / 2939745 / 4;
    uint32_t n3 = 2141 * dayOfYear + 197913;
    // Numbers, as a branch on the season would be mispredicted.
    uint32_t nextYear = dayOfYear >= 306;
    uint32_t leap = (yearOfCentury != 0 ? yearOfCentury : century) % 4 == 0;

    // The hour and what is left of it, as a number of 32.32 bits; then the minute, the second.
    uint64_t hours = uint64_t{secondOfDay} * 1193047;
    uint64_t minutes = (hours & UINT32_MAX) * 60;
    uint64_t seconds = (minutes & UINT32_MAX) * 60;
    // Sevenths likewise: the fraction of (n + 3) / 7, times 7.
    uint64_t sevenths = uint64_t{(n + 3) * 613566757} * 7;

    Civil civil;
    civil.year = 100 * century + yearOfCentury + nextYear;
    civil.month = (n3 >> 16) - 12 * nextYear;
    civil.day = (n3 & 65535) / 2141 + 1;
    civil.hour = static_cast<uint32_t>(hours >> 32);
    civil.minute = static_cast<uint32_t>(minutes >> 32);
    civil.second = static_cast<uint32_t>(seconds >> 32);
    civil.weekday = static_cast<uint32_t>(sevenths >> 32);
    civil.dayOfYear = dayOfYear + 59 + leap - (365 + leap) * nextYear;
    return civil;
}

}  // namespace

ZemGregorianTime* BreakDown(ZemGregorianTime* gt, ZemTime t)
{
    int64_t secs = t / kNanosPerSecond;
    Civil civil = CivilOf(secs);
    gt->tm.tm_sec = static_cast<int>(civil.second);
    gt->tm.tm_min = static_cast<int>(civil.minute);
    gt->tm.tm_hour = static_cast<int>(civil.hour);
    gt->tm.tm_mday = static_cast<int>(civil.day);
    gt->tm.tm_mon = static_cast<int>(civil.month - 1);
    gt->tm.tm_year = static_cast<int>(civil.year) - 1900;
    gt->tm.tm_wday = static_cast<int>(civil.weekday);
    gt->tm.tm_yday = static_cast<int>(civil.dayOfYear);
    gt->tm.tm_isdst = 0;
    gt->tm.tm_gmtoff = 0;
    gt->tm.tm_zone = "GMT";
    gt->nanosecs = t - secs * kNanosPerSecond;
    return gt;
}

ZemTime Compose(const ZemGregorianTime* gt)
{
    const struct tm& tm = gt->tm;
    // Years 1 to 4199 and months 1 to 12; nothing that fits a ZemTime lies far outside.
    auto year = static_cast<uint32_t>(tm.tm_year + 1900);
    if (year - 1 >= 4199 || static_cast<uint32_t>(tm.tm_mon) >= 12 ||
        static_cast<uint64_t>(gt->nanosecs) >= kNanosPerSecond) {
        struct tm normalised = tm;
        return FromSecsAndNanos(timegm(&normalised), gt->nanosecs);
    }
    int64_t days = DaysFromCivil(year, static_cast<uint32_t>(tm.tm_mon) + 1, 0) + tm.tm_mday;
    int64_t secs = days * 86400 + int64_t{tm.tm_hour} * 3600 + int64_t{tm.tm_min} * 60 + tm.tm_sec;
    return FromSecsAndNanos(secs, gt->nanosecs);
}

// ---------------------------------------------------------------------------------------------
// Calendar text
// ---------------------------------------------------------------------------------------------

namespace {

inline bool Digit(const char* p, uint32_t& value)
{
    value = static_cast<uint32_t>(*p) - '0';
    return value <= 9;
}

// Reads two digits. Never looks past a NUL.
inline bool Pair(const char* p, uint32_t& value)
{
    uint32_t tens;
    uint32_t ones;
    if (!Digit(p, tens) || !Digit(p + 1, ones)) {
        return false;
    }
    value = tens * 10 + ones;
    return true;
}

constexpr std::array<uint32_t, 10> kPowersOfTen = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};

inline uint32_t Fraction(const char*& p)
{
    uint32_t nanos = 0;
    uint32_t digit;
    std::size_t digits = 0;
    for (; digits < 9 && Digit(p, digit); ++digits, ++p) {
        nanos = nanos * 10 + digit;
    }
    while (Digit(p, digit)) {
        ++p;
    }
    return nanos * kPowersOfTen[9 - digits];
}

// Reads the zone and the end of the text.
inline bool Zone(const char* p, int64_t& offset)
{
    if (*p == 'Z') {
        offset = 0;
        return p[1] == '\0';
    }
    p += *p == ' ';
    // '+' is 43, '-' is 45: one test, and no branch on the sign.
    int64_t sign = *p - '+';  // 0 or 2
    if ((sign & ~2) != 0) {
        return false;
    }
    uint32_t hours;
    uint32_t minutes = 0;
    uint32_t seconds = 0;
    if (!Pair(p + 1, hours)) {
        return false;
    }
    p += 3;
    if (*p != '\0') {
        int colon = *p == ':';
        if (!Pair(p + colon, minutes)) {
            return false;
        }
        p += 2 + colon;
        if (*p != '\0') {
            if ((colon && *p != ':') || !Pair(p + colon, seconds) || p[2 + colon] != '\0') {
                return false;
            }
        }
    }
    offset = (1 - sign) * int64_t{hours * 3600 + minutes * 60 + seconds};
    return true;
}

inline bool ValidDay(uint32_t year, uint32_t month, uint32_t day)
{
    if (day - 1 < 28) {
        return true;
    }
    if (month == 2) {
        return day == 29 && (year % 100 != 0 ? year % 4 == 0 : year % 400 == 0);
    }
    return day - 1 < (30 | (month ^ month >> 3));
}

}  // namespace

ZemTime Parse(const char* s)
{
    uint32_t hundreds;
    uint32_t units;
    uint32_t month;
    uint32_t day;
    uint32_t hour;
    uint32_t minute;
    uint32_t second;
    if (!Pair(s, hundreds) || !Pair(s + 2, units) || s[4] != '-' || !Pair(s + 5, month) ||
        s[7] != '-' || !Pair(s + 8, day) || (s[10] != 'T' && s[10] != ' ') || !Pair(s + 11, hour) ||
        s[13] != ':' || !Pair(s + 14, minute) || s[16] != ':' || !Pair(s + 17, second)) {
        return ZEM_TIME_INFINITE;
    }
    uint32_t nanos = 0;
    const char* p = s + 19;
    if (*p == '.') {
        nanos = Fraction(++p);
    }
    int64_t offset;
    uint32_t year = hundreds * 100 + units;
    if (!Zone(p, offset) || month - 1 >= 12 || !ValidDay(year, month, day) || hour >= 24 ||
        minute >= 60 || second > 60) {
        return ZEM_TIME_INFINITE;
    }
    int64_t secs = DaysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second;
    return FromSecsAndNanos(secs - offset, nanos);
}

namespace {

// The rest of a text: where it stands, and its end.
struct Rest {
    const char* p;
    const char* end;

    bool Has(std::ptrdiff_t bytes) const
    {
        return end - p >= bytes;
    }
    bool At(char c) const
    {
        return p < end && *p == c;
    }
    // Two digits, `skip` bytes on.
    bool PairAt(std::ptrdiff_t skip, uint32_t& value) const
    {
        return Has(skip + 2) && Pair(p + skip, value);
    }
};

// Whether what follows reads as more of a timestamp.
inline bool GoesOn(const Rest& rest)
{
    uint32_t digit;
    if (rest.p == rest.end || *rest.p == ' ') {
        return false;
    }
    auto c = static_cast<uint32_t>(static_cast<unsigned char>(*rest.p));
    if (c - '0' <= 9 || (c | 32) - 'a' < 26) {
        return true;
    }
    return (c == ':' || c == '.' || c == ',') && rest.Has(2) && Digit(rest.p + 1, digit);
}

inline uint32_t FractionWithin(Rest& rest)
{
    const char* first = rest.p;
    const char* stop = rest.Has(9) ? first + 9 : rest.end;
    uint32_t nanos = 0;
    uint32_t digit;
    for (; rest.p < stop && Digit(rest.p, digit); ++rest.p) {
        nanos = nanos * 10 + digit;
    }
    nanos *= kPowersOfTen[static_cast<std::size_t>(9 - (rest.p - first))];
    while (rest.p < rest.end && Digit(rest.p, digit)) {
        ++rest.p;
    }
    return nanos;
}

inline bool ZoneWithin(Rest& rest, int64_t& offset)
{
    if (rest.At('Z') || rest.At('z')) {
        ++rest.p;
        offset = 0;
        return !GoesOn(rest);
    }
    rest.p += rest.At(' ');
    if (!rest.Has(3)) {
        return false;
    }
    int64_t sign = *rest.p - '+';  // 0 or 2
    uint32_t hours;
    uint32_t minutes = 0;
    uint32_t seconds = 0;
    if ((sign & ~2) != 0 || !Pair(rest.p + 1, hours)) {
        return false;
    }
    rest.p += 3;
    if (rest.At(':') && rest.PairAt(1, minutes)) {
        rest.p += 3;
        if (rest.At(':') && rest.PairAt(1, seconds)) {
            rest.p += 3;
        } else {
            seconds = 0;
        }
    } else if (rest.PairAt(0, minutes)) {
        rest.p += 2;
        if (rest.PairAt(0, seconds)) {
            rest.p += 2;
        } else {
            seconds = 0;
        }
    } else {
        minutes = 0;
    }
    offset = (1 - sign) * int64_t{hours * 3600 + minutes * 60 + seconds};
    return hours < 24 && minutes < 60 && seconds < 60 && !GoesOn(rest);
}

}  // namespace

ZemSizeT ParseWithin(ZemTime* t, const char* s, ZemSizeT size)
{
    uint32_t hundreds;
    uint32_t units;
    uint32_t month;
    uint32_t day;
    uint32_t hour;
    uint32_t minute;
    uint32_t second;
    if (size < 20 || !Pair(s, hundreds) || !Pair(s + 2, units) || s[4] != '-' ||
        !Pair(s + 5, month) || s[7] != '-' || !Pair(s + 8, day) ||
        (s[10] != 'T' && s[10] != ' ' && s[10] != 't') || !Pair(s + 11, hour) || s[13] != ':' ||
        !Pair(s + 14, minute) || s[16] != ':' || !Pair(s + 17, second)) {
        return 0;
    }
    uint32_t year = hundreds * 100 + units;
    if (month - 1 >= 12 || !ValidDay(year, month, day) || hour >= 24 || minute >= 60 ||
        second > 60) {
        return 0;
    }
    Rest rest = {s + 19, s + size};
    uint32_t nanos = 0;
    if (*rest.p == '.' || *rest.p == ',') {
        uint32_t digit;
        if (!rest.Has(2) || !Digit(rest.p + 1, digit)) {
            return 0;
        }
        ++rest.p;
        nanos = FractionWithin(rest);
    }
    int64_t offset;
    if (!ZoneWithin(rest, offset)) {
        return 0;
    }
    int64_t secs = DaysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second;
    *t = FromSecsAndNanos(secs - offset, nanos);
    return static_cast<ZemSizeT>(rest.p - s);
}

namespace {

// The fields as they are printed.
struct Fields {
    uint32_t year;
    uint32_t month;
    uint32_t day;
    uint32_t hour;
    uint32_t minute;
    uint32_t second;
    uint32_t nanos;

    bool FillTheirWidth() const
    {
        return year <= 9999 && (month | day | hour | minute | second) < 64;
    }
};

inline Fields FieldsOf(const ZemGregorianTime* gt)
{
    return {static_cast<uint32_t>(gt->tm.tm_year + 1900), static_cast<uint32_t>(gt->tm.tm_mon + 1),
            static_cast<uint32_t>(gt->tm.tm_mday),        static_cast<uint32_t>(gt->tm.tm_hour),
            static_cast<uint32_t>(gt->tm.tm_min),         static_cast<uint32_t>(gt->tm.tm_sec),
            static_cast<uint32_t>(gt->nanosecs)};
}

inline bool WithinASecond(int64_t nanos)
{
    return static_cast<uint64_t>(nanos) < kNanosPerSecond;
}

// Writes 19 bytes.
inline void PutDateAndTime(char* buf, const Fields& x, char separator)
{
    PutPair(buf, x.year / 100);
    PutPair(buf + 2, x.year % 100);
    buf[4] = '-';
    PutPair(buf + 5, x.month);
    buf[7] = '-';
    PutPair(buf + 8, x.day);
    buf[10] = separator;
    PutPair(buf + 11, x.hour);
    buf[13] = ':';
    PutPair(buf + 14, x.minute);
    buf[16] = ':';
    PutPair(buf + 17, x.second);
}

// Writes three digits.
inline void PutThree(char* p, uint32_t value)
{
    PutPair(p, value / 10);
    p[2] = static_cast<char>('0' + value % 10);
}

inline void PutOffset(char* p, bool negative, uint32_t hours, uint32_t minutes)
{
    p[0] = negative ? '-' : '+';
    PutPair(p + 1, hours);
    p[3] = ':';
    PutPair(p + 4, minutes);
    p[6] = '\0';
}

// RFC 3339 of fields that fill their width.
inline ZemSizeT PutRfc3339(char* buf, const Fields& x, int offset, int digits)
{
    PutDateAndTime(buf, x, 'T');
    char* p = buf + 19;
    if (digits != 0) {
        *p = '.';
        PutThree(p + 1, x.nanos / 1000000);
        if (digits > 3) {
            PutThree(p + 4, x.nanos / 1000 % 1000);
            PutThree(p + 7, x.nanos % 1000);
        }
        p += 1 + digits;
    }
    if (offset == 0) {
        p[0] = 'Z';
        p[1] = '\0';
        return static_cast<ZemSizeT>(p + 1 - buf);
    }
    uint32_t minutes = static_cast<uint32_t>(offset < 0 ? -offset : offset) / 60;
    PutOffset(p, offset < 0, minutes / 60, minutes % 60);
    return static_cast<ZemSizeT>(p + 6 - buf);
}

}  // namespace

char* PrintLocal(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen)
{
    Fields x = FieldsOf(gt);
    if (buflen < 24 || !x.FillTheirWidth() || !WithinASecond(gt->nanosecs)) {
        int length = std::snprintf(buf, buflen, "%04d-%02u-%02u %02u:%02u:%02u.%03d",
                                   static_cast<int>(x.year), x.month, x.day, x.hour, x.minute,
                                   x.second, static_cast<int>(gt->nanosecs / 1000000));
        return static_cast<ZemSizeT>(length) < buflen ? buf : nullptr;
    }
    PutDateAndTime(buf, x, ' ');
    buf[19] = '.';
    PutThree(buf + 20, x.nanos / 1000000);
    buf[23] = '\0';
    return buf;
}

char* Print(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen)
{
    auto offset = static_cast<int>(gt->tm.tm_gmtoff);
    uint32_t magnitude =
        offset < 0 ? 0 - static_cast<uint32_t>(offset) : static_cast<uint32_t>(offset);
    uint32_t offsetHours = magnitude / 3600;
    uint32_t offsetMinutes = magnitude / 60 - offsetHours * 60;
    uint32_t offsetSeconds = magnitude % 60;
    Fields x = FieldsOf(gt);
    if (buflen < 34 || !x.FillTheirWidth() || offsetHours > 99 || !WithinASecond(gt->nanosecs)) {
        int length = std::snprintf(buf, buflen, "%04d-%02u-%02u %02u:%02u:%02u.%03d %c%02u:%02u",
                                   static_cast<int>(x.year), x.month, x.day, x.hour, x.minute,
                                   x.second, static_cast<int>(gt->nanosecs / 1000000),
                                   offset < 0 ? '-' : '+', offsetHours, offsetMinutes);
        return static_cast<ZemSizeT>(length) < buflen ? buf : nullptr;
    }
    PutDateAndTime(buf, x, ' ');
    buf[19] = '.';
    PutThree(buf + 20, x.nanos / 1000000);
    buf[23] = ' ';
    PutOffset(buf + 24, offset < 0, offsetHours, offsetMinutes);
    if (offsetSeconds != 0) {
        buf[30] = ':';
        PutPair(buf + 31, offsetSeconds);
        buf[33] = '\0';
    }
    return buf;
}

ZemSizeT PrintInstant(ZemTime t, int offset, int digits, char* buf, ZemSizeT len)
{
    if (len < 36) {
        return 0;
    }
    // Rounded down, so that the nanoseconds count up from the second.
    int64_t secs = t / kNanosPerSecond;
    int64_t nanos = t % kNanosPerSecond;
    int64_t before = nanos < 0;
    Civil civil = CivilOf(secs - before + offset);
    Fields x = {civil.year,
                civil.month,
                civil.day,
                civil.hour,
                civil.minute,
                civil.second,
                static_cast<uint32_t>(nanos + before * kNanosPerSecond)};
    return PutRfc3339(buf, x, offset, digits);
}

ZemSizeT PrintRecord(const ZemGregorianTime* gt, int digits, char* buf, ZemSizeT len)
{
    Fields x = FieldsOf(gt);
    if (len < 36 || !x.FillTheirWidth() || !WithinASecond(gt->nanosecs)) {
        return 0;
    }
    return PutRfc3339(buf, x, static_cast<int>(gt->tm.tm_gmtoff), digits);
}

// ---------------------------------------------------------------------------------------------
// Compact duration text
// ---------------------------------------------------------------------------------------------

namespace {

constexpr uint64_t kMinute = 60000000000;
constexpr uint64_t kHundredDays = 100 * 86400 * uint64_t{kNanosPerSecond};

// Copies `unit`, up to five bytes with its NUL.
inline void PutUnit(char* p, const char (&unit)[8])
{
    std::memcpy(p, unit, 8);
}

constexpr char kNs[8] = " ns";
constexpr char kUs[8] = " \xC2\xB5s";
constexpr char kMs[8] = " ms";
constexpr char kS[8] = " s";
constexpr char kM[8] = " m";
constexpr char kH[8] = " h";
constexpr char kD[8] = " d";

// A number below 1,000 without leading zeros.
inline char* PutWhole(char* p, uint32_t value)
{
    if (value < 100) {
        return PutShort(p, value);
    }
    *p = static_cast<char>('0' + value / 100);
    PutPair(p + 1, value % 100);
    return p + 3;
}

// Thousandths of a unit, with three significant digits.
inline void PutThousandths(char* p, uint32_t thousandths, const char (&unit)[8])
{
    uint32_t whole = thousandths / 1000;
    uint32_t rest = thousandths % 1000;
    if (whole >= 100) {
        p = PutWhole(p, whole);
    } else if (whole >= 10) {
        PutPair(p, whole);
        p[2] = '.';
        p[3] = static_cast<char>('0' + rest / 100);
        p += 4;
    } else {
        p[0] = static_cast<char>('0' + whole);
        p[1] = '.';
        PutPair(p + 2, rest / 10);
        p += 4;
    }
    PutUnit(p, unit);
}

inline void PutTwo(char* p, uint32_t first, const char (&firstUnit)[8], uint32_t second,
                   const char (&secondUnit)[8])
{
    p = PutShort(p, first);
    PutUnit(p, firstUnit);
    p[2] = ' ';
    p = PutShort(p + 3, second);
    PutUnit(p, secondUnit);
}

inline void PutDays(char* p, uint32_t days)
{
    if (days >= 1000) {
        p = PutWhole(p, days / 1000);
        days %= 1000;
        *p = static_cast<char>('0' + days / 100);
        PutPair(p + 1, days % 100);
        p += 3;
    } else {
        p = PutWhole(p, days);
    }
    PutUnit(p, kD);
}

// Runs `put(first byte, magnitude)`, which may touch kRoom bytes, within the caller's buffer.
constexpr ZemSizeT kRoom = 24;

template <class Put>
inline const char* PutBounded(ZemTime t, char* buf, ZemSizeT len, Put put)
{
    char scratch[kRoom + 1];
    bool roomy = len > kRoom;
    char* p = roomy ? buf : scratch;
    uint64_t n = t < 0 ? 0 - static_cast<uint64_t>(t) : static_cast<uint64_t>(t);
    *p = '-';
    put(p + (t < 0), n);
    if (!roomy && len != 0) {
        std::memcpy(buf, scratch, len - 1);
        buf[len - 1] = '\0';
    }
    return buf;
}

}  // namespace

const char* PrintCompact(ZemTime t, char* buf, ZemSizeT len)
{
    return PutBounded(t, buf, len, [](char* p, uint64_t n) {
        if (n < 1000) {
            p = PutWhole(p, static_cast<uint32_t>(n));
            PutUnit(p, kNs);
        } else if (n < 1000000) {
            PutThousandths(p, static_cast<uint32_t>(n), kUs);
        } else if (n < 1000000000) {
            PutThousandths(p, static_cast<uint32_t>(n) / 1000, kMs);
        } else if (n < kMinute) {
            PutThousandths(p, static_cast<uint32_t>(n / 1000000), kS);
        } else if (n < 60 * kMinute) {
            auto secs = static_cast<uint32_t>(n / kNanosPerSecond);
            PutTwo(p, secs / 60, kM, secs % 60, kS);
        } else if (n < 1440 * kMinute) {
            auto minutes = static_cast<uint32_t>(n / kMinute);
            PutTwo(p, minutes / 60, kH, minutes % 60, kM);
        } else if (n < kHundredDays) {
            auto hours = static_cast<uint32_t>(n / (60 * kMinute));
            PutTwo(p, hours / 24, kD, hours % 24, kH);
        } else {
            PutDays(p, static_cast<uint32_t>(n / (1440 * kMinute)));
        }
    });
}

// ---------------------------------------------------------------------------------------------
// Ranges
// ---------------------------------------------------------------------------------------------

void Intersect(const ZemTimeRange* x, const ZemTimeRange* y, ZemTimeRange* result)
{
    *result = {std::min(x->begin, y->begin), std::max(x->end, y->end)};
}

bool Contains(const ZemTimeRange* x, const ZemTimeRange* y)
{
    return (x->begin >= y->begin) & (x->end <= y->end);
}

}  // namespace limit
