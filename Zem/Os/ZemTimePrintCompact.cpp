// Durations as text for people.

#include "Zem/Os/ZemTime.h"
#include "Zem/Utils/ZemStdCLib.h"

namespace
{

constexpr ZemUint64 kMicrosecond = 1000;
constexpr ZemUint64 kMillisecond = 1000 * kMicrosecond;
constexpr ZemUint64 kSecond = 1000 * kMillisecond;
constexpr ZemUint64 kMinute = 60 * kSecond;
constexpr ZemUint64 kHour = 60 * kMinute;
constexpr ZemUint64 kDay = 24 * kHour;

// Prints `whole` units and `frac` thousandths with as many decimals as three digits allow.
void PrintFrac_(char* buf, ZemSizeT len, const char* unit, ZemUint whole, ZemUint frac)
{
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
    char* wp = buf;
    auto n = static_cast<ZemUint64>(t);
    if (t < 0) {
        n = 0 - n;
        ZemStrLCpy(buf, "-", len);
        if (len > 0) {
            wp = buf + 1;
            --len;
        }
    }

    auto ns = static_cast<ZemUint>(n % 1000);
    auto us = static_cast<ZemUint>(n / kMicrosecond % 1000);
    auto ms = static_cast<ZemUint>(n / kMillisecond % 1000);
    auto s = static_cast<ZemUint>(n / kSecond % 60);
    auto m = static_cast<ZemUint>(n / kMinute % 60);
    auto h = static_cast<ZemUint>(n / kHour % 24);
    auto days = static_cast<ZemUint>(n / kDay);

    if (n < kMicrosecond) {
        ZemSNPrintf(wp, len, "%u ns", ns);
    } else if (n < kMillisecond) {
        PrintFrac_(wp, len, "\xC2\xB5s", us, ns);
    } else if (n < kSecond) {
        PrintFrac_(wp, len, "ms", ms, us);
    } else if (n < kMinute) {
        PrintFrac_(wp, len, "s", s, ms);
    } else if (n < kHour) {
        ZemSNPrintf(wp, len, "%u m %u s", m, s);
    } else if (n < kDay) {
        ZemSNPrintf(wp, len, "%u h %u m", h, m);
    } else if (n < 100 * kDay) {
        ZemSNPrintf(wp, len, "%u d %u h", days, h);
    } else {
        ZemSNPrintf(wp, len, "%u d", days);
    }
    return buf;
}
