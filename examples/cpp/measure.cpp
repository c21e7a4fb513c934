// Measuring work, and waiting until a deadline.

#include <Zem/Os/ZemTime.hpp>
#include <condition_variable>
#include <iostream>
#include <mutex>
#include <numeric>
#include <thread>
#include <vector>

// The time that `work` takes, with all that <chrono> knows to do with it.
template <class Work>
std::chrono::nanoseconds Measure(Work work)
{
    const auto start = zem::MonotonicClock::now();
    work();
    return zem::MonotonicClock::now() - start;
}

int main()
{
    using namespace std::chrono_literals;
    std::vector<double> numbers(100000, 1.5);
    double sum = 0;
    const auto took = Measure([&] { sum = std::accumulate(numbers.begin(), numbers.end(), 0.0); });
    std::cout << "sum " << sum << " in " << zem::Compact(took) << '\n';

    // Until somebody says so, for 20 ms at most.
    std::mutex mutex;
    std::condition_variable changed;
    bool ready = false;
    std::unique_lock lock(mutex);
    const bool inTime =
        changed.wait_until(lock, zem::MonotonicClock::now() + 20ms, [&] { return ready; });
    std::cout << (inTime ? "ready" : "nothing came") << '\n';

    // ZEM_TIME_INFINITE, what C functions take for a deadline that never comes.
    std::thread other([&] {
        const std::lock_guard guard(mutex);
        ready = true;
        changed.notify_one();
    });
    changed.wait_until(lock, zem::ToDeadline(ZEM_TIME_INFINITE), [&] { return ready; });
    lock.unlock();
    other.join();
    std::cout << "something came\n";
}
