#include "Zem/Utils/ZemStdCLibInline.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

// ---------------------------------------------------------------------------------------------
// Text
// ---------------------------------------------------------------------------------------------

namespace
{

// A bounded text under construction: `length` counts all that was appended, what lies beyond
// `capacity` bytes is dropped.
struct BoundedText {
    char* buf;
    ZemSizeT capacity;
    ZemSizeT length;

    void Append(const char* text, ZemSizeT size)
    {
        if (length < capacity) {
            std::memcpy(buf + length, text, std::min(size, capacity - length));
        }
        length += size;
    }

    void AppendRepeated(char c, ZemSizeT count)
    {
        if (length < capacity) {
            std::memset(buf + length, c, std::min(count, capacity - length));
        }
        length += count;
    }

    // The last byte makes room for the NUL where the text was cut.
    void Terminate()
    {
        if (capacity != 0) {
            buf[std::min(length, capacity - 1)] = '\0';
        }
    }
};

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Appends `magnitude` in decimal, padded to `width` as printf pads: with zeros between the sign and
// the digits, or with spaces in front of the sign.
void AppendNumber(BoundedText& text, ZemUint32 magnitude, bool negative, unsigned width, bool zeros)
{
    char digits[10];  // 2^32 - 1 has ten
    char* first = digits + sizeof digits;
    do {
        *--first = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);

    auto count = static_cast<unsigned>(digits + sizeof digits - first);
    unsigned used = count + (negative ? 1 : 0);
    unsigned padding = width > used ? width - used : 0;
    if (!zeros) {
        text.AppendRepeated(' ', padding);
    }
    if (negative) {
        text.Append("-", 1);
    }
    if (zeros) {
        text.AppendRepeated('0', padding);
    }
    text.Append(first, count);
}

}  // namespace

ZemSizeT ZemSNPrintf(char* buf, ZemSizeT len, const char* format, ...)
{
    std::va_list args;
    std::va_list allArgs;
    va_start(args, format);
    va_copy(allArgs, args);

    BoundedText text{buf, len, 0};
    bool known = true;
    const char* p = format;
    while (known && *p != '\0') {
        if (*p != '%') {
            text.Append(p, 1);
            ++p;
            continue;
        }
        ++p;
        bool zeros = *p == '0';
        p += zeros ? 1 : 0;
        unsigned width = 0;
        if (IsDigit(*p)) {
            width = static_cast<unsigned>(*p++ - '0');
        }
        switch (*p++) {
            case 'd': {
                int value = va_arg(args, int);
                auto bits = static_cast<ZemUint32>(value);
                AppendNumber(text, value < 0 ? 0 - bits : bits, value < 0, width, zeros);
                break;
            }
            case 'u':
                AppendNumber(text, va_arg(args, unsigned), false, width, zeros);
                break;
            case 's': {
                const char* s = va_arg(args, const char*);
                known = s != nullptr && width == 0 && !zeros;
                if (known) {
                    text.Append(s, std::strlen(s));
                }
                break;
            }
            default:
                known = false;
                break;
        }
    }

    ZemSizeT length;
    if (known) {
        text.Terminate();
        length = text.length;
    } else {
        length = static_cast<ZemSizeT>(std::vsnprintf(buf, len, format, allArgs));
    }
    va_end(allArgs);
    va_end(args);
    return length;
}

ZemSizeT ZemStrLCpy(char* dst, const char* src, ZemSizeT size)
{
    BoundedText text{dst, size, 0};
    text.Append(src, std::strlen(src));
    text.Terminate();
    return text.length;
}

// ---------------------------------------------------------------------------------------------
// Calendar
// ---------------------------------------------------------------------------------------------

struct tm* ZemLocalTimeR(const time_t* secs, struct tm* result)
{
    return localtime_r(secs, result);
}

#if defined(ZEMTIME_LIBC_CALENDAR)

struct tm* ZemGmTimeR(const time_t* secs, struct tm* result)
{
    struct tm converted;
    if (gmtime_r(secs, &converted) == nullptr) {
        return nullptr;
    }
    *result = converted;
    return result;
}

time_t ZemTimeGm(const struct tm* t)
{
    struct tm normalised = *t;
    return timegm(&normalised);
}

#else

// Civil arithmetic after Neri and Schneider, "Euclidean affine functions and their application to
// calendar algorithms" (2022): a computational calendar whose years begin on March 1, so that the
// leap day comes last, counted from the start of an era of 400 years.

namespace
{

constexpr ZemInt64 kSecsPerDay = 86400;
constexpr ZemInt64 kDaysPerEra = 146097;  // a whole number of weeks
constexpr ZemInt64 kYearsPerEra = 400;

// From 0000-03-01 to 1970-01-01.
constexpr ZemInt64 kEpochDay = 719468;

// Added to make every quantity unsigned: more eras than an int of years, with the months that an
// int of months adds, can go below 0.
constexpr ZemInt64 kBiasEras = 6000000;
constexpr ZemInt64 kBiasYears = kBiasEras * kYearsPerEra;
constexpr ZemInt64 kBiasDays = kBiasEras * kDaysPerEra + kEpochDay;

// The seconds whose year fits tm_year: -2147481748-01-01 00:00:00 to 2147485547-12-31 23:59:59.
constexpr ZemInt64 kMinSecs = -67768040609740800;
constexpr ZemInt64 kMaxSecs = 67768036191676799;

#if defined(__GLIBC__)
const char kUtcName[] = "GMT";
#else
const char kUtcName[] = "UTC";
#endif

}  // namespace

struct tm* ZemGmTimeR(const time_t* secs, struct tm* result)
{
    if (*secs < kMinSecs || *secs > kMaxSecs) {
        return nullptr;
    }
    auto biased = static_cast<ZemUint64>(*secs + kBiasDays * kSecsPerDay);
    ZemUint64 biasedDay = biased / kSecsPerDay;
    auto secondOfDay = static_cast<ZemUint32>(biased % kSecsPerDay);
    auto era = static_cast<ZemInt64>(biasedDay / kDaysPerEra) - kBiasEras;
    auto dayOfEra = static_cast<ZemUint32>(biasedDay % kDaysPerEra);  // 0 .. 146096

    ZemUint32 n1 = 4 * dayOfEra + 3;
    ZemUint32 century = n1 / 146097;                               // 0 .. 3
    ZemUint32 n2 = n1 % 146097 | 3;                                // 4 * day of century + 3
    ZemUint64 p2 = ZemUint64{2939745} * n2;                        // n2 / 1461 by multiplication
    auto yearOfCentury = static_cast<ZemUint32>(p2 / 4294967296);  // 0 .. 99
    auto dayOfYear = static_cast<ZemUint32>(p2 % 4294967296) / 2939745 / 4;  // 0 .. 365
    ZemUint32 n3 = 2141 * dayOfYear + 197913;
    ZemUint32 month = n3 / 65536;       // 3 .. 14: March .. February
    ZemUint32 day = n3 % 65536 / 2141;  // 0 .. 30

    bool nextYear = dayOfYear >= 306;  // January and February
    bool leap = yearOfCentury != 0 ? yearOfCentury % 4 == 0 : century == 0;
    ZemInt64 year = era * kYearsPerEra + century * 100 + yearOfCentury + (nextYear ? 1 : 0);

    result->tm_sec = static_cast<int>(secondOfDay % 60);
    result->tm_min = static_cast<int>(secondOfDay / 60 % 60);
    result->tm_hour = static_cast<int>(secondOfDay / 3600);
    result->tm_mday = static_cast<int>(day + 1);
    result->tm_mon = static_cast<int>(nextYear ? month - 13 : month - 1);
    result->tm_year = static_cast<int>(year - 1900);
    result->tm_wday = static_cast<int>((dayOfEra + 3) % 7);  // eras begin on a Wednesday
    result->tm_yday = static_cast<int>(nextYear ? dayOfYear - 306 : dayOfYear + (leap ? 60 : 59));
    result->tm_isdst = 0;
    result->tm_gmtoff = 0;
    result->tm_zone = kUtcName;
    return result;
}

time_t ZemTimeGm(const struct tm* t)
{
    ZemInt64 year = ZemInt64{t->tm_year} + 1900 + kBiasYears;
    ZemInt64 month = t->tm_mon;
    if (month < 0 || month > 11) {
        year += month / 12;
        month %= 12;
        if (month < 0) {
            month += 12;
            year -= 1;
        }
    }
    // March .. February as 3 .. 14.
    bool lastYear = month < 2;
    auto marchMonth = static_cast<ZemUint32>(lastYear ? month + 13 : month + 1);
    auto marchYear = static_cast<ZemUint64>(year - (lastYear ? 1 : 0));
    ZemUint64 century = marchYear / 100;
    ZemUint64 firstOfMonth =
        1461 * marchYear / 4 - century + century / 4 + (979 * marchMonth - 2919) / 32;

    ZemInt64 day = static_cast<ZemInt64>(firstOfMonth) - kBiasDays + t->tm_mday - 1;
    ZemInt64 secs =
        day * kSecsPerDay + ZemInt64{t->tm_hour} * 3600 + ZemInt64{t->tm_min} * 60 + t->tm_sec;
    return secs < kMinSecs || secs > kMaxSecs ? -1 : secs;
}

#endif
