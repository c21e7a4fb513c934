// A time value to an NTP timestamp and back. None of the peers has this conversion.

#include "Zem/Os/ZemTimeInline.h"
#include "values.h"

namespace bench {

namespace {

constexpr std::int64_t kEpochSecs = 2208988800;  // from 1900 to 1970

// Instants of era 0 with any nanoseconds, before 1970 too, and timestamps with any fraction.
ZemTime g_times[kValues];
ZemUint64 g_stamps[kValues];
struct {
    ZemUint64 stamps[kValues];  // of g_times
    ZemTime times[kValues];     // of g_stamps
} g_expected;

// The reference works a bit at a time.
ZemUint64 FractionOf(std::int64_t nanos)
{
    ZemUint64 fraction = 0;
    for (int bit = 0; bit < 32; ++bit) {
        nanos *= 2;
        fraction = fraction * 2 + (nanos >= 1000000000);
        nanos -= nanos >= 1000000000 ? 1000000000 : 0;
    }
    return fraction;
}

// The most nanoseconds whose product with 2^32 does not exceed the fraction's with a billion.
std::int64_t NanosOf(ZemUint64 fraction)
{
    std::int64_t nanos = 0;
    for (std::int64_t step = 536870912; step != 0; step /= 2) {
        auto tried = static_cast<ZemUint64>(nanos + step);
        nanos += tried << 32 <= fraction * 1000000000 ? step : 0;
    }
    return nanos;
}

void MakeValues()
{
    for (std::size_t i = 0; i < kValues; ++i) {
        std::int64_t secs = Between(0, 4294967295);
        std::int64_t nanos = Between(0, 999999999);
        g_times[i] = (secs - kEpochSecs) * 1000000000 + nanos;
        g_expected.stamps[i] = static_cast<ZemUint64>(secs) << 32 | FractionOf(nanos);
        g_stamps[i] = Random()();
        g_expected.times[i] =
            (static_cast<std::int64_t>(g_stamps[i] >> 32) - kEpochSecs) * 1000000000 +
            NanosOf(g_stamps[i] & 0xFFFFFFFF);
    }
}

}  // namespace

void RegisterNtp()
{
    MakeValues();
    Job to("time value to NTP", [](std::size_t i) { return g_expected.stamps[i]; });
    to.Add("ours inline", [](std::size_t i) { return ZemTimeGetNtp(g_times[i]); });
    to.Add("ours exported", [](std::size_t i) { return Exported(ZemTimeGetNtp)(g_times[i]); });
    // Floor division without a branch on the sign.
    to.Add("hand kernel", [](std::size_t i) {
        std::int64_t secs = g_times[i] / 1000000000;
        std::int64_t nanos = g_times[i] % 1000000000;
        std::int64_t below = nanos >> 63;
        nanos += below & 1000000000;
        return static_cast<ZemUint64>(secs + below + kEpochSecs) << 32 |
               (static_cast<ZemUint64>(nanos) << 32) / 1000000000;
    });

    Job from("NTP to time value", [](std::size_t i) { return g_expected.times[i]; });
    from.Add("ours inline", [](std::size_t i) {
        ZemTime t;
        return *ZemTimeConstructFromNtp(&t, g_stamps[i]);
    });
    from.Add("ours exported", [](std::size_t i) {
        ZemTime t;
        return *Exported(ZemTimeConstructFromNtp)(&t, g_stamps[i]);
    });
    from.Add("hand kernel", [](std::size_t i) {
        auto secs = static_cast<std::int64_t>(g_stamps[i] >> 32);
        ZemUint64 fraction = g_stamps[i] & 0xFFFFFFFF;
        return (secs - kEpochSecs) * 1000000000 +
               static_cast<std::int64_t>(fraction * 1000000000 >> 32);
    });
}

}  // namespace bench
