// The C++ headers in sources of several language versions, with exceptions and without; and waiting
// on the monotonic clock that nobody has set up.

#include <condition_variable>
#include <mutex>
#include <thread>

#include "tests/face_unit.hpp"

using namespace std::chrono_literals;

// Sleeps and waits as they should: not at all, for a while, and until somebody says so.
static void CheckWaiting()
{
    const auto start = zem::MonotonicClock::now();
    CHECK(start.time_since_epoch() > 0ns);
    std::this_thread::sleep_until(start + 2ms);
    std::this_thread::sleep_until(zem::ToDeadline(INT64_MIN));
    CHECK(zem::MonotonicClock::now() - start >= 2ms);
    CHECK(zem::MonotonicClock::now() - start < 1h);

    std::mutex mutex;
    std::condition_variable condition;
    bool said = false;
    std::thread other([&] {
        std::this_thread::sleep_for(5ms);
        const std::lock_guard lock(mutex);
        said = true;
        condition.notify_one();
    });
    std::unique_lock lock(mutex);
    CHECK(condition.wait_until(lock, zem::ToDeadline(ZEM_TIME_INFINITE), [&] { return said; }));
    lock.unlock();
    other.join();
}

int main()
{
    CheckWaiting();
    zem::RangeVector ranges;
    zem::RangeSet set;
    Unit17WithoutExceptions(ranges, set);
    Unit17(ranges, set);
    Unit20(ranges, set);
    Unit20WithoutExceptions(ranges, set);
    Unit23(ranges, set);
    // Neighbouring instants are one range of the set.
    CHECK(ranges.size() == 5 && set.size() == 1 && set.front() == zem::MakeRange(0, 4));
    return failures != 0;
}
