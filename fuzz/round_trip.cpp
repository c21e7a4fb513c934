// What is printed with its offset parses back to the same record, cut to whole milliseconds; what
// is built from an instant leads back to it; and no record makes a conversion overflow.
#include "fuzz/fuzz.hpp"

static void Target(FuzzedDataProvider& in)
{
    auto number = [&](ZemInt low, ZemInt high) { return in.ConsumeIntegralInRange(low, high); };
    ZemGregorianTime gt, read;
    char text[64];
    const ZemInt offset = number(-359999, 359999);
    const ZemInt f[] = {number(-999, 9999), number(0, 13), number(0, 32),         number(-1, 24),
                        number(0, 60),      number(0, 61), number(-1, 1000000000)};
    if (ZemGregorianTimeConstructFields(&gt, f[0], f[1], f[2], f[3], f[4], f[5], f[6]) == &gt) {
        ZemGregorianTimeSetUTCOffset(&gt, offset);
        Require(ZemGregorianTimeGetAsStringWithOffset(&gt, text, sizeof text) == text);
        Require(ZemGregorianTimeConstructCStr(&read, Exact(text).data()) == &read);
        gt.nanosecs -= gt.nanosecs % 1000000;
        Require(std::memcmp(&read, &gt, sizeof gt) == 0);
    }

    const ZemTime t = in.ConsumeIntegral<ZemTime>();
    Require(ZemGregorianTimeConstructUTC(&gt, t) == &gt);
    ZemGregorianTimeSetUTCOffset(&gt, offset);
    ZemTime instant;
    bool fails = t / 1000000000 == -1;  // what timegm reports as a failure
    bool overflows = __builtin_sub_overflow(t, ZemTimeSecs(offset), &instant);
    Require(ZemGregorianTimeGetUTCTime(&gt) == (fails ? ZEM_TIME_INFINITE : t));
    Require(ZemGregorianTimeGetTime(&gt) == (fails || overflows ? ZEM_TIME_INFINITE : instant));

    in.ConsumeData(&gt.tm, offsetof(struct tm, tm_zone));
    gt.nanosecs = in.ConsumeIntegral<ZemInt64>();
    ZemGregorianTimeGetTime(&gt);
    ZemGregorianTimeGetAsStringWithOffset(&gt, text, sizeof text);
}
