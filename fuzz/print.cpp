// Both texts of any calendar record against snprintf's, and the compact text of any duration, in
// buffers of every size.
#include "fuzz/fuzz.hpp"

static void Target(FuzzedDataProvider& in)
{
    char whole[100];
    ZemTime t = in.ConsumeIntegral<ZemTime>();
    RequireBounded(ZemTimePrintCompact(t, whole, 16), [&](char* buf, std::size_t len) {
        Require(ZemTimePrintCompact(t, buf, len) == buf);
    });

    ZemGregorianTime gt{};
    struct tm& tm = gt.tm;
    for (int* field : {&tm.tm_year, &tm.tm_mon, &tm.tm_mday, &tm.tm_hour, &tm.tm_min, &tm.tm_sec})
        *field = in.ConsumeBool() ? in.ConsumeIntegralInRange(0, 60) : in.ConsumeIntegral<int>();
    gt.nanosecs = in.ConsumeIntegralInRange<ZemInt64>(0, 999999999);
    tm.tm_gmtoff = in.ConsumeIntegral<ZemInt>();
    const ZemInt64 offset = std::abs(tm.tm_gmtoff);
    const std::string seconds = ":" + std::to_string(100 + offset % 60).substr(1);
    std::snprintf(whole, sizeof whole, "%04d-%02d-%02d %02d:%02d:%02d.%03ld %c%02ld:%02ld%s",
                  ZemGregorianTimeGetYear(&gt), ZemGregorianTimeGetMonth(&gt), tm.tm_mday,
                  tm.tm_hour, tm.tm_min, tm.tm_sec, gt.nanosecs / 1000000,
                  tm.tm_gmtoff < 0 ? '-' : '+', offset / 3600, offset / 60 % 60,
                  offset % 60 != 0 ? seconds.c_str() : "");
    for (auto* print : {ZemGregorianTimeGetAsStringWithOffset, ZemGregorianTimeGetAsString}) {
        RequireBounded(whole, [&](char* buf, std::size_t len) {
            Require(print(&gt, buf, len) == (len > std::strlen(whole) ? buf : nullptr));
        });
        *std::strrchr(whole, ' ') = '\0';
    }
}
