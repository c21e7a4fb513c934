// Both texts of calendar records against snprintf's, and the compact text of any duration against
// plain arithmetic on its digits, in buffers of every size. A record has any fields, or it is that
// of an instant around midnight, where before 1970 a fraction borrows from all fields.
#include "fuzz/fuzz.hpp"

static std::string CompactText(ZemTime t)
{
    const std::string sign = t < 0 ? "-" : "";
    const ZemUint64 n = t < 0 ? -static_cast<ZemUint64>(t) : static_cast<ZemUint64>(t);
    const ZemUint64 secs = n / 1000000000;
    auto two = [](ZemUint64 value, ZemUint64 radix, const char* first, const char* second) {
        return std::to_string(value / radix) + first + std::to_string(value % radix) + second;
    };
    if (secs >= 8640000)
        return sign + std::to_string(secs / 86400) + " d";
    if (secs >= 60)
        return sign + (secs < 3600    ? two(secs, 60, " m ", " s")
                       : secs < 86400 ? two(secs / 60, 60, " h ", " m")
                                      : two(secs / 3600, 24, " d ", " h"));
    std::string digits = std::to_string(n);
    const std::size_t thousands = (digits.size() - 1) / 3;
    if (thousands > 0) {
        digits.resize(digits.size() - 3 * thousands + 3);
        digits.insert(digits.size() - 3, ".");
        digits.resize(digits[3] == '.' ? 3 : 4);
    }
    const char* const units[] = {" ns", " \xC2\xB5s", " ms", " s"};
    return sign + digits + units[thousands];
}

static void Target(FuzzedDataProvider& in)
{
    char whole[100];
    const ZemTime duration = in.ConsumeIntegral<ZemTime>() >> in.ConsumeIntegralInRange(0, 63);
    RequireBounded(
        CompactText(duration),
        [&](char* buf, std::size_t len) {
            Require(ZemTimePrintCompact(duration, buf, len) == buf);
        },
        17);

    ZemGregorianTime gt{}, printed{};
    struct tm& tm = printed.tm;
    if (in.ConsumeBool()) {
        const ZemInt64 day = in.ConsumeIntegralInRange<ZemInt64>(-106751, 106751);
        const ZemTime t = day * 86400000000000 + in.ConsumeIntegralInRange(-2000000000, 2000000000);
        Require(ZemGregorianTimeConstructUTC(&gt, t) == &gt);
        printed.nanosecs = (t % 1000000000 + 1000000000) % 1000000000;
        const time_t secs = (t - printed.nanosecs) / 1000000000;
        gmtime_r(&secs, &tm);
    } else {
        for (int* f : {&tm.tm_year, &tm.tm_mon, &tm.tm_mday, &tm.tm_hour, &tm.tm_min, &tm.tm_sec})
            *f = in.ConsumeBool() ? in.ConsumeIntegralInRange(0, 60) : in.ConsumeIntegral<int>();
        printed.nanosecs = in.ConsumeIntegralInRange<ZemInt64>(0, 999999999);
        gt = printed;
    }
    gt.tm.tm_gmtoff = tm.tm_gmtoff = in.ConsumeIntegral<ZemInt>();
    const ZemInt64 offset = std::abs(tm.tm_gmtoff);
    const std::string seconds = ":" + std::to_string(100 + offset % 60).substr(1);
    std::snprintf(whole, sizeof whole, "%04d-%02d-%02d %02d:%02d:%02d.%03ld %c%02ld:%02ld%s",
                  ZemGregorianTimeGetYear(&printed), ZemGregorianTimeGetMonth(&printed), tm.tm_mday,
                  tm.tm_hour, tm.tm_min, tm.tm_sec, printed.nanosecs / 1000000,
                  tm.tm_gmtoff < 0 ? '-' : '+', offset / 3600, offset / 60 % 60,
                  offset % 60 != 0 ? seconds.c_str() : "");
    for (auto* print : {ZemGregorianTimeGetAsStringWithOffset, ZemGregorianTimeGetAsString}) {
        RequireBounded(whole, [&](char* buf, std::size_t len) {
            Require(print(&gt, buf, len) == (len > std::strlen(whole) ? buf : nullptr));
        });
        *std::strrchr(whole, ' ') = '\0';
    }
}
