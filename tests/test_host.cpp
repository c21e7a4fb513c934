// The clocks on a host of this program's own, which stands in for the real one when the static
// library is linked.

#include "support.hpp"

static struct {
    ZemUint64 ticks;
    mach_timebase_info_data_t timebase;
    timeval wall;
    int status;  // of the calls that can fail
    int tickReads;
} host;

extern "C" ZemUint64 mach_absolute_time()
{
    ++host.tickReads;
    return host.ticks;
}

extern "C" kern_return_t mach_timebase_info(mach_timebase_info_t info)
{
    *info = host.timebase;
    return host.status;
}

extern "C" int gettimeofday(timeval* tv, void* zone) noexcept
{
    *tv = host.status == 0 && zone == nullptr ? host.wall : *tv;
    return host.status;
}

// First in the program: it needs the factor as it is at load.
TEST(Host, Clocks)
{
    host = {2000000, {3, 2}, {1, 500000}, -1, 0};
    EXPECT_EQ(ZemTimeInitialize(), 0);
    EXPECT_EQ(ZemTimeMachMonotonicTimeClockInterval_, 0.0);
    EXPECT_EQ(ZemTimeGetCurrentMonotonicTime(), 0);
    EXPECT_EQ(ZemTimeGetCurrentWallTime(), 0);
    host.status = 0;
    EXPECT_EQ(ZemTimeInitialize(), 1);
    EXPECT_EQ(ZemTimeMachMonotonicTimeClockInterval_, 1.5);
    EXPECT_EQ(ZemTimeGetElapsed(400), 2999600);
    EXPECT_EQ(ZemTimeGetElapsedMsec(1), 2U);
    EXPECT_EQ(ZemTimeGetCurrentWallTime(), 1500000000);
    EXPECT_EQ(host.tickReads, 3);
}

TEST(Host, Readings)
{
    for (const auto& [row, nanosecs] : Table("readings.txt")) {
        host = {};
        std::istringstream(row) >> host.timebase.numer >> host.timebase.denom >> host.ticks;
        EXPECT_EQ(ZemTimeInitialize(), 1);
        host.timebase = {7, 1};
        host.status = -1;
        EXPECT_EQ(ZemTimeInitialize(), 0) << "and the factor stays";
        EXPECT_EQ(ZemTimeGetCurrentMonotonicTime(), std::stoll(nanosecs)) << row;
    }
}

TEST(Host, TimeOuts)
{
    for (const auto& [row, text] : Table("timeouts.txt")) {
        host = {0, {1, 1}, {}, 0, 0};
        EXPECT_EQ(ZemTimeInitialize(), 1);
        ZemTime timeout;
        std::istringstream(row) >> host.ticks >> timeout;
        timeval tv = {-1, -1};
        timeval* result = ZemTimeGetRelativeTimevalFromMonotonicTime(timeout, &tv);
        ZemInt64 micros = std::stoll(text);
        EXPECT_EQ(result, micros == -1 ? nullptr : &tv) << row;
        EXPECT_EQ(tv.tv_sec, micros == -1 ? -1 : micros / 1000000) << row;
        EXPECT_EQ(tv.tv_usec, micros == -1 ? -1 : micros % 1000000) << row;
        EXPECT_EQ(host.tickReads, timeout == 0 || timeout == ZEM_TIME_INFINITE ? 0 : 1);
    }
}
