// Durations as text for people.

#include "Zem/Os/ZemTime.h"
#include "Zem/Utils/ZemStdCLib.h"

namespace {

constexpr ZemUint64 kMicrosecond = 1000;
constexpr ZemUint64 kMillisecond = 1000 * kMicrosecond;
constexpr ZemUint64 kSecond = 1000 * kMillisecond;
constexpr ZemUint64 kMinute = 60 * kSecond;
constexpr ZemUint64 kHour = 60 * kMinute;
constexpr ZemUint64 kDay = 24 * kHour;

// Prints `thousandths` of a unit, under 1,000,000, with as many decimals as three digits allow.
void PrintFrac_(char* buf, ZemSizeT len, const char* unit, ZemUint64 thousandths)
{
    auto whole = static_cast<ZemUint>(thousandths / 1000);
    auto frac = static_cast<ZemUint>(thousandths % 1000);
    if (whole >= 100) {
        ZemSNPrintf(buf, len, "%u %s", whole, unit);
    } else if (whole >= 10) {
        ZemSNPrintf(buf, len, "%u.%u %s", whole, frac / 100, unit);
    } else {
        ZemSNPrintf(buf, len, "%u.%02u %s", whole, frac / 10, unit);
    }
}

}  // namespace

const char* ZemTimePrintCompact(ZemTime t, char* buf, ZemSizeT len)
{
    // The sign is taken without a branch, which could not be predicted: where there is room for
    // it, it is written in any case, and the number goes behind or over it. Where there is none,
    // the number's text is cut to nothing as well.
    auto bits = static_cast<ZemUint64>(t);
    ZemUint64 negative = bits / 9223372036854775808U;  // 1 or 0
    ZemUint64 n = (bits ^ (0 - negative)) + negative;
    char* wp = buf;
    if (len > 1) {
        *buf = '-';
        wp += negative;
        len -= negative;
    }

    if (n < kMicrosecond) {
        ZemSNPrintf(wp, len, "%u ns", static_cast<ZemUint>(n));
    } else if (n < kMillisecond) {
        PrintFrac_(wp, len, "\xC2\xB5s", n / (kMicrosecond / 1000));
    } else if (n < kSecond) {
        PrintFrac_(wp, len, "ms", n / (kMillisecond / 1000));
    } else if (n < kMinute) {
        PrintFrac_(wp, len, "s", n / (kSecond / 1000));
    } else if (n < kHour) {
        auto s = static_cast<ZemUint>(n / kSecond);
        ZemSNPrintf(wp, len, "%u m %u s", s / 60, s % 60);
    } else if (n < kDay) {
        auto m = static_cast<ZemUint>(n / kMinute);
        ZemSNPrintf(wp, len, "%u h %u m", m / 60, m % 60);
    } else if (n < 100 * kDay) {
        auto h = static_cast<ZemUint>(n / kHour);
        ZemSNPrintf(wp, len, "%u d %u h", h / 24, h % 24);
    } else {
        ZemSNPrintf(wp, len, "%u d", static_cast<ZemUint>(n / kDay));
    }
    return buf;
}
