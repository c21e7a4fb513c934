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

// A ZemTime reaches from 1677 to 2262, so 32 bits hold every day from 0000-03-01.
ZemGregorianTime* BreakDown(ZemGregorianTime* gt, ZemTime t)
{
    constexpr int64_t biasSecs = kEpochDay * 86400;
    int64_t secs = t / kNanosPerSecond;
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
    uint32_t year = 100 * century + yearOfCentury;

    // The hour and what is left of it, as a number of 32.32 bits; then the minute, the second.
    uint64_t hours = uint64_t{secondOfDay} * 1193047;
    uint64_t minutes = (hours & UINT32_MAX) * 60;
    uint64_t seconds = (minutes & UINT32_MAX) * 60;
    // Sevenths likewise: the fraction of (n + 3) / 7, times 7.
    uint64_t sevenths = uint64_t{(n + 3) * 613566757} * 7;

    gt->tm.tm_sec = static_cast<int>(seconds >> 32);
    gt->tm.tm_min = static_cast<int>(minutes >> 32);
    gt->tm.tm_hour = static_cast<int>(hours >> 32);
    gt->tm.tm_mday = static_cast<int>((n3 & 65535) / 2141 + 1);
    gt->tm.tm_mon = static_cast<int>((n3 >> 16) - 1 - 12 * nextYear);
    gt->tm.tm_year = static_cast<int>(year + nextYear) - 1900;
    gt->tm.tm_wday = static_cast<int>(sevenths >> 32);
    gt->tm.tm_yday = static_cast<int>(dayOfYear + 59 + leap - (365 + leap) * nextYear);
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

char* Print(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen)
{
    auto offset = static_cast<int>(gt->tm.tm_gmtoff);
    uint32_t magnitude =
        offset < 0 ? 0 - static_cast<uint32_t>(offset) : static_cast<uint32_t>(offset);
    uint32_t offsetHours = magnitude / 3600;
    uint32_t offsetMinutes = magnitude / 60 - offsetHours * 60;
    uint32_t offsetSeconds = magnitude % 60;
    auto year = static_cast<uint32_t>(gt->tm.tm_year + 1900);
    auto month = static_cast<uint32_t>(gt->tm.tm_mon + 1);
    auto day = static_cast<uint32_t>(gt->tm.tm_mday);
    auto hour = static_cast<uint32_t>(gt->tm.tm_hour);
    auto minute = static_cast<uint32_t>(gt->tm.tm_min);
    auto second = static_cast<uint32_t>(gt->tm.tm_sec);
    if (buflen < 34 || year > 9999 || (month | day | hour | minute | second) >= 64 ||
        offsetHours > 99 || static_cast<uint64_t>(gt->nanosecs) >= kNanosPerSecond) {
        int length = std::snprintf(buf, buflen, "%04d-%02u-%02u %02u:%02u:%02u.%03d %c%02u:%02u",
                                   static_cast<int>(year), month, day, hour, minute, second,
                                   static_cast<int>(gt->nanosecs / 1000000), offset < 0 ? '-' : '+',
                                   offsetHours, offsetMinutes);
        return static_cast<ZemSizeT>(length) < buflen ? buf : nullptr;
    }
    uint32_t millis = static_cast<uint32_t>(gt->nanosecs) / 1000000;
    PutPair(buf, year / 100);
    PutPair(buf + 2, year % 100);
    buf[4] = '-';
    PutPair(buf + 5, month);
    buf[7] = '-';
    PutPair(buf + 8, day);
    buf[10] = ' ';
    PutPair(buf + 11, hour);
    buf[13] = ':';
    PutPair(buf + 14, minute);
    buf[16] = ':';
    PutPair(buf + 17, second);
    buf[19] = '.';
    PutPair(buf + 20, millis / 10);
    buf[22] = static_cast<char>('0' + millis % 10);
    buf[23] = ' ';
    buf[24] = offset < 0 ? '-' : '+';
    PutPair(buf + 25, offsetHours);
    buf[27] = ':';
    PutPair(buf + 28, offsetMinutes);
    buf[30] = '\0';
    if (offsetSeconds != 0) {
        buf[30] = ':';
        PutPair(buf + 31, offsetSeconds);
        buf[33] = '\0';
    }
    return buf;
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
