// Timestamps and durations out of the lines of a log, without a copy.

#include <Zem/Os/ZemTime.hpp>
#include <iostream>

int main()
{
    const std::string_view lines[] = {
        "2024-03-01T12:30:45.250+01:00 request took 1.5s",
        "2024-03-01 11:30:47Z request took 250ms",
        "yesterday, about noon: nothing happened",
    };
    zem::Instant last{};
    for (std::string_view line : lines) {
        // Takes the timestamp off the line.
        const auto instant = zem::ReadInstant(line);
        if (!instant) {
            std::cout << "no time: " << line << '\n';
            continue;
        }
        const auto took = zem::ParseDuration(line.substr(line.rfind(' ') + 1));
        std::cout << zem::Print(*instant, 3) << line.substr(0, line.rfind(' ')) << ' '
                  << zem::Compact(took.value_or(std::chrono::nanoseconds(0)));
        if (last != zem::Instant{}) {
            std::cout << ", " << zem::Print(*instant - last) << " later";
        }
        std::cout << '\n';
        last = *instant;
    }
}
