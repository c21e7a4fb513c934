// Time values, units, elapsed time and NTP timestamps.

#include <chrono>

#include "support.hpp"

TEST(Values, AllNumbers)
{
    for (int i = 0; i < 300000 && !HasFailure(); ++i) {
        ZemTime t = AnyInt64(), u = AnyInt64(), v = u, x;
        EXPECT_EQ(ZemTimeSecs(t), static_cast<ZemInt64>(Int128{t} * 1000000000));
        EXPECT_EQ(ZemTimeMsecs(t), static_cast<ZemInt64>(Int128{t} * 1000000));
        EXPECT_EQ(ZemTimeUsecs(t), static_cast<ZemInt64>(Int128{t} * 1000));
        Int128 elapsed = std::clamp<Int128>(Int128{t} - u, 0, INT64_MAX);
        EXPECT_EQ(ZemTimeGetElapsedRelativeTo(t, u), static_cast<ZemTime>(elapsed));
        EXPECT_EQ(ZemTimeGetElapsedMsecRelativeTo(t, u), static_cast<ZemUint>(elapsed / 1000000));
        // Eras of 2^32 s are added to divide a positive number; they leave the low 64 bits alone.
        Int128 nanosecs = t + (2208988800 + Int128{4294967296} * 4) * 1000000000;
        EXPECT_EQ(ZemTimeGetNtp(t), static_cast<ZemUint64>(nanosecs * 4294967296 / 1000000000));
        nanosecs = Int128{static_cast<ZemUint64>(t)} * 1000000000 / 4294967296;
        EXPECT_EQ(*ZemTimeConstructFromNtp(&x, static_cast<ZemUint64>(t)),
                  static_cast<ZemTime>(nanosecs) - 2208988800000000000);
        EXPECT_TRUE(ZemTimeLess(&t, &u) == (t < u) && ZemTimeEqual(&t, &u) == (t == u));
        EXPECT_TRUE(ZemTimeConstructCopy(&x, &t) == &x && x == t && ZemTimeEqual(&x, &t) == 1);
        EXPECT_TRUE(ZemTimeSwap(&x, &u) == 1 && ZemTimeSwap(&x, &x) == 1 && u == t && x == v);
        EXPECT_TRUE(ZemTimeAssign(&u, &x) == &u && u == x && ZemTimeLess(&x, &u) == 0);
        ZemTimeDestruct(&x);
        EXPECT_TRUE(x == u && ZemTimeConstruct(&x) == &x && x == 0);
    }
}

// The host's own clocks: a reading lies between two by the standard library, all of them rounded as
// a reading is.
TEST(Values, RealClocks)
{
    using namespace std::chrono;
    auto nanosecs = [](auto now) { return duration<double, std::nano>(now.time_since_epoch()); };
    EXPECT_EQ(ZemTimeInitialize(), 1);
    // Some of the readings follow each other closely enough to show a wrong scale.
    for (int i = 0; i < 1000; ++i) {
        auto before = nanosecs(steady_clock::now());
        ZemTime t = ZemTimeGetCurrentMonotonicTime();
        auto after = nanosecs(steady_clock::now());
        ASSERT_TRUE(before.count() <= static_cast<double>(t) &&
                    static_cast<double>(t) <= after.count());
        before = nanosecs(floor<microseconds>(system_clock::now()));
        t = ZemTimeGetCurrentWallTime();
        after = nanosecs(system_clock::now());
        ASSERT_TRUE(before.count() <= static_cast<double>(t) &&
                    static_cast<double>(t) <= after.count());
    }
}

TEST(Values, NtpTable)
{
    for (const auto& [nanosecs, ntpAndBack] : Table("ntp.txt")) {
        std::size_t size;
        ZemUint64 ntp = std::stoull(ntpAndBack, &size, 16);
        ZemTime t = std::stoll(nanosecs);
        EXPECT_EQ(ZemTimeGetNtp(t), ntp) << nanosecs;
        EXPECT_EQ(*ZemTimeConstructFromNtp(&t, ntp), std::stoll(ntpAndBack.substr(size)));
    }
}
