// From a text to an instant and back, and the time that this takes: tour.c in C++.

#include <Zem/Os/ZemTime.hpp>
#include <iostream>

int main()
{
    using namespace std::chrono_literals;
    const auto start = zem::MonotonicClock::now();

    const auto instant = zem::ParseInstant("2024-03-01T12:30:45.250+01:00");
    if (!instant) {
        std::cerr << "tour: not a date and time\n";
        return 1;
    }
    std::cout << zem::FromChrono(*instant) << " ns since 1970\n"
              << zem::Print(*instant, 3, 1h) << '\n'
              << zem::Print(*instant + 90min) << '\n'
              << "took " << zem::Compact(zem::MonotonicClock::now() - start) << '\n';
}
