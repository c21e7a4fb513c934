#include "Zem/Utils/ZemStdCLibInline.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

// ---------------------------------------------------------------------------------------------
// Text
// ---------------------------------------------------------------------------------------------

namespace {

const char kDigitPairs[] =
    "0001020304050607080910111213141516171819202122232425262728293031323334353637383940414243444546"
    "4748495051525354555657585960616263646566676869707172737475767778798081828384858687888990919293"
    "949596979899";

constexpr unsigned kMaxDigits = 10;  // 2^32 - 1
constexpr ZemUint32 kPowersOf10[kMaxDigits] = {1,      10,      100,      1000,      10000,
                                               100000, 1000000, 10000000, 100000000, 1000000000};

unsigned CountDigits(ZemUint32 value)
{
    unsigned count = 1;
    while (count < kMaxDigits && value >= kPowersOf10[count]) {
        ++count;
    }
    return count;
}

// Writes `value`, below 100, in two digits.
void WritePair(char* out, ZemUint32 value)
{
    std::memcpy(out, kDigitPairs + 2 * value, 2);
}

// Writes `value` in exactly `count` digits, at least as many as it has and at most kMaxDigits.
void WriteDigits(char* out, ZemUint32 value, unsigned count)
{
    for (; count > 2; value /= 100) {
        count -= 2;
        WritePair(out + count, value % 100);
    }
    if (count == 2) {
        WritePair(out, value);
    } else {
        *out = static_cast<char>('0' + value);
    }
}

// A bounded text under construction: `length` counts all that was appended, what lies beyond
// `capacity` bytes is dropped.
struct BoundedText {
    char* buf;
    ZemSizeT capacity;
    ZemSizeT length;

    void Append(char c)
    {
        if (length < capacity) {
            buf[length] = c;
        }
        ++length;
    }

    void Append(const char* text, ZemSizeT size)
    {
        if (length < capacity) {
            std::memcpy(buf + length, text, std::min(size, capacity - length));
        }
        length += size;
    }

    // Appends a number of `count` digits, at least one, with leading zeros where it has fewer.
    void AppendDigits(ZemUint32 value, unsigned count)
    {
        if (length + kMaxDigits <= capacity) {
            WriteDigits(buf + length, value, count);
            length += count;
        } else {
            char digits[kMaxDigits];
            WriteDigits(digits, value, count);
            Append(digits, count);
        }
    }

    // %u. How many digits a number below 1,000 has cannot be predicted: no branch on that.
    void AppendUnsigned(ZemUint32 value)
    {
        if (value >= 1000 || length + 3 > capacity) {
            AppendDigits(value, CountDigits(value));
            return;
        }
        char* out = buf + length;
        *out = static_cast<char>('0' + value / 100);
        std::memcpy(out + (value >= 100), kDigitPairs + 2 * (value % 100) + (value < 10), 2);
        length += 1 + ZemSizeT{value >= 10} + ZemSizeT{value >= 100};
    }

    // %02d and %02u.
    void AppendTwo(ZemInt64 value)
    {
        if (value < 0 || value >= 100 || length + 2 > capacity) {
            AppendNumber(value, 2, true);
            return;
        }
        WritePair(buf + length, static_cast<ZemUint32>(value));
        length += 2;
    }

    // %d and %u, padded to `width` (0 to 9) as printf pads: with zeros after the sign, or with
    // spaces in front of it. The value is an int or an unsigned.
    void AppendNumber(ZemInt64 value, unsigned width, bool zeros)
    {
        bool negative = value < 0;
        auto magnitude = static_cast<ZemUint32>(negative ? -value : value);
        unsigned digits = CountDigits(magnitude);
        unsigned size = digits + (negative ? 1 : 0);
        if (zeros) {
            digits += width > size ? width - size : 0;
        } else {
            for (; size < width; ++size) {
                Append(' ');
            }
        }
        if (negative) {
            Append('-');
        }
        AppendDigits(magnitude, digits);
    }

    // The last byte makes room for the NUL where the text was cut.
    void Terminate() const
    {
        if (capacity != 0) {
            buf[std::min(length, capacity - 1)] = '\0';
        }
    }
};

// What a date and time of day is printed with, wherever it stands at the start of a format.
const char kDateFormat[] = "%04d-%02d-%02d %02d:%02d:%02d.%03d";
constexpr ZemSizeT kDateFormatSize = sizeof kDateFormat - 1;
constexpr ZemSizeT kDateSize = 23;

// Writes the seven numbers of kDateFormat when each fills its width exactly; else returns false.
bool WriteDate(char* out, const ZemUint32 (&n)[7])
{
    if (n[0] > 9999 || n[1] > 99 || n[2] > 99 || n[3] > 99 || n[4] > 99 || n[5] > 99 ||
        n[6] > 999) {
        return false;
    }
    std::memcpy(out, "0000-00-00 00:00:00.000", kDateSize);
    WritePair(out, n[0] / 100);
    WritePair(out + 2, n[0] % 100);
    WritePair(out + 5, n[1]);
    WritePair(out + 8, n[2]);
    WritePair(out + 11, n[3]);
    WritePair(out + 14, n[4]);
    WritePair(out + 17, n[5]);
    out[20] = static_cast<char>('0' + n[6] / 100);
    WritePair(out + 21, n[6] % 100);
    return true;
}

}  // namespace

ZemSizeT ZemSNPrintf(char* buf, ZemSizeT len, const char* format, ...)
{
    BoundedText text{buf, len, 0};
    const char* p = format;
    std::va_list args;
    va_start(args, format);

    // Reading a date's format one conversion after the other makes printing take 39 ns, not 22.
    if (len >= kDateSize && format[0] == '%' && format[1] == '0' &&
        std::strncmp(format, kDateFormat, kDateFormatSize) == 0) {
        ZemUint32 numbers[7];
        for (ZemUint32& number : numbers) {
            number = static_cast<ZemUint32>(va_arg(args, int));
        }
        if (WriteDate(buf, numbers)) {
            text.length = kDateSize;
            p += kDateFormatSize;
        } else {
            va_end(args);
            va_start(args, format);
        }
    }

    bool known = true;
    while (known && *p != '\0') {
        if (*p != '%') {
            text.Append(*p++);
            continue;
        }
        // The short way for the conversions of dates and durations.
        ++p;
        if (*p == 'u') {
            text.AppendUnsigned(va_arg(args, unsigned));
            ++p;
        } else if (*p == 's') {
            const char* s = va_arg(args, const char*);
            known = s != nullptr;
            for (; known && *s != '\0'; ++s) {
                text.Append(*s);
            }
            ++p;
        } else if (*p == '0' && p[1] == '2' && (p[2] == 'd' || p[2] == 'u')) {
            text.AppendTwo(p[2] == 'd' ? va_arg(args, int) : ZemInt64{va_arg(args, unsigned)});
            p += 3;
        } else {
            bool zeros = *p == '0';
            p += zeros ? 1 : 0;
            unsigned width = 0;
            if (*p >= '1' && *p <= '9') {
                width = static_cast<unsigned>(*p++ - '0');
            }
            known = *p == 'd' || *p == 'u';
            if (known) {
                text.AppendNumber(*p == 'd' ? va_arg(args, int) : ZemInt64{va_arg(args, unsigned)},
                                  width, zeros);
                ++p;
            }
        }
    }
    va_end(args);

    if (known) {
        text.Terminate();
        return text.length;
    }
    va_start(args, format);
    int length = std::vsnprintf(buf, len, format, args);
    va_end(args);
    return static_cast<ZemSizeT>(length);
}

ZemSizeT ZemStrLCpy(char* dst, const char* src, ZemSizeT size)
{
    BoundedText text{dst, size, 0};
    for (const char* p = src; *p != '\0'; ++p) {
        text.Append(*p);
    }
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
// leap day comes last.

namespace {

constexpr ZemInt64 kSecsPerDay = 86400;
constexpr ZemInt64 kDaysPerEra = 146097;  // 400 years, a whole number of weeks
constexpr ZemInt64 kYearsPerEra = 400;

// From 0000-03-01, a Wednesday, to 1970-01-01.
constexpr ZemInt64 kEpochDay = 719468;

// From March 1 to the first of January, February and so on in a computational year.
const ZemUint32 kDaysFromMarch[12] = {306, 337, 0, 31, 61, 92, 122, 153, 184, 214, 245, 275};

// Added to make every quantity unsigned: more eras than an int of years, with the years that an
// int of months and of days adds, can go below 0.
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
    ZemUint64 day = biased / kSecsPerDay;
    auto secondOfDay = static_cast<ZemUint32>(biased % kSecsPerDay);

    // With d days in four centuries (or years), (4 * day + 3) / d is the century (or year).
    ZemUint64 n1 = 4 * day + 3;
    auto century = static_cast<ZemUint32>(n1 / kDaysPerEra);
    auto n2 = static_cast<ZemUint32>(n1 % kDaysPerEra) | 3;        // 4 * day of century + 3
    ZemUint64 p2 = ZemUint64{2939745} * n2;                        // n2 / 1461 in the high half
    auto yearOfCentury = static_cast<ZemUint32>(p2 / 4294967296);  // 0 .. 99
    auto dayOfYear = static_cast<ZemUint32>(p2 % 4294967296) / 2939745 / 4;  // 0 .. 365
    ZemUint32 n3 = 2141 * dayOfYear + 197913;
    ZemUint32 month = n3 / 65536;              // 3 .. 14: March .. February
    ZemUint32 dayOfMonth = n3 % 65536 / 2141;  // 0 .. 30

    // January and February end a computational year and begin a civil one. Numbers, as compilers
    // make mispredictions of conditions.
    ZemUint32 nextYear = dayOfYear >= 306 ? 1 : 0;
    ZemUint32 leap = (yearOfCentury != 0 ? yearOfCentury : century) % 4 == 0 ? 1 : 0;
    // Wraps, and back again when the bias goes.
    ZemUint32 year = 100 * century + yearOfCentury + nextYear - static_cast<ZemUint32>(kBiasYears);

    // Hours with their fraction as 32.32 bits, rounded up by less than a second in a day; then the
    // minutes and the seconds of the fractions.
    ZemUint64 hours = ZemUint64{secondOfDay} * 1193047;
    ZemUint64 minutes = hours % 4294967296 * 60;
    ZemUint64 seconds = minutes % 4294967296 * 60;

    result->tm_sec = static_cast<int>(seconds / 4294967296);
    result->tm_min = static_cast<int>(minutes / 4294967296);
    result->tm_hour = static_cast<int>(hours / 4294967296);
    result->tm_mday = static_cast<int>(dayOfMonth + 1);
    result->tm_mon = static_cast<int>(month - 1 - 12 * nextYear);
    result->tm_year = static_cast<int>(year - 1900);
    result->tm_wday = static_cast<int>((day + 3) % 7);
    result->tm_yday = static_cast<int>(dayOfYear + 59 + leap - (365 + leap) * nextYear);
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
    auto marchYear = static_cast<ZemUint64>(year - (month < 2 ? 1 : 0));
    auto century = static_cast<ZemUint32>(marchYear / 100);
    ZemUint64 firstOfMonth = 1461 * marchYear / 4 - century + century / 4 + kDaysFromMarch[month];

    ZemInt64 day = static_cast<ZemInt64>(firstOfMonth) - kBiasDays + t->tm_mday - 1;
    ZemInt64 secs =
        day * kSecsPerDay + ZemInt64{t->tm_hour} * 3600 + ZemInt64{t->tm_min} * 60 + t->tm_sec;
    return secs < kMinSecs || secs > kMaxSecs ? -1 : secs;
}

#endif
