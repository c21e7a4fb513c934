// Readings of the monotonic and the wall clock, in nanoseconds.

#include <absl/time/clock.h>
#include <glib.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

#include "Zem/Os/ZemTime.hpp"
#include "harness.h"

namespace bench {

namespace {

ZemTime Nanos(const timespec& ts)
{
    return ts.tv_sec * 1000000000 + ts.tv_nsec;
}

ZemTime Read(clockid_t clock)
{
    timespec ts;
    clock_gettime(clock, &ts);
    return Nanos(ts);
}

// A reading is right when the kernel, asked directly, agrees to within a second.
auto NearKernel(long clock)
{
    return [clock](std::size_t, ZemTime reading) {
        timespec ts;
        syscall(SYS_clock_gettime, clock, &ts);
        return std::llabs(Nanos(ts) - reading) < 1000000000;
    };
}

template <class Clock>
ZemTime ReadStd()
{
    return std::chrono::nanoseconds(Clock::now().time_since_epoch()).count();
}

template <class Accept>
auto Adder(const char* name, Accept accept)
{
    return [=](const char* column, auto read) {
        Job(name, [](std::size_t) { return 0; })
            .AddOther(
                column, "", [=](std::size_t) { return read(); }, accept);
    };
}

}  // namespace

void RegisterClocks()
{
    auto addMonotonic = Adder("monotonic reading", NearKernel(CLOCK_MONOTONIC));
    addMonotonic("ours inline", [] { return ZemTimeGetCurrentMonotonicTime(); });
    addMonotonic("ours exported", [] { return Exported(ZemTimeGetCurrentMonotonicTime)(); });
    addMonotonic("C++ face", [] { return ReadStd<zem::MonotonicClock>(); });
    addMonotonic("hand kernel", [] { return Read(CLOCK_MONOTONIC); });
    addMonotonic("steady_clock", [] { return ReadStd<std::chrono::steady_clock>(); });
    addMonotonic("GLib", [] { return g_get_monotonic_time() * ZemTime{1000}; });

    auto addWall = Adder("wall reading", NearKernel(CLOCK_REALTIME));
    addWall("ours inline", [] { return ZemTimeGetCurrentWallTime(); });
    addWall("ours exported", [] { return Exported(ZemTimeGetCurrentWallTime)(); });
    addWall("hand kernel", [] {
        timeval tv;
        gettimeofday(&tv, nullptr);
        return tv.tv_sec * ZemTime{1000000000} + tv.tv_usec * ZemTime{1000};
    });
    addWall("clock_gettime", [] { return Read(CLOCK_REALTIME); });
    addWall("system_clock", [] { return ReadStd<std::chrono::system_clock>(); });
    addWall("Abseil", [] { return absl::GetCurrentTimeNanos(); });
    addWall("GLib", [] { return g_get_real_time() * ZemTime{1000}; });
}

}  // namespace bench
