// A job at half past two every night in Berlin, over the nights on which the clocks change:
// schedule.c in C++.

#include <Zem/Os/ZemTime.hpp>
#include <iostream>
#include <string>

int main()
{
    const auto zone = zem::Zone::named("Europe/Berlin");
    if (!zone) {
        std::cerr << "schedule: no zone Europe/Berlin on this machine\n";
        return 1;
    }
    const char* const kinds[] = {"", ", skipped: moved on", ", twice: the first"};
    for (const char* night : {"2024-03-30", "2024-03-31", "2024-10-26", "2024-10-27"}) {
        auto local = zem::ParseLocalRecord(std::string(night) + " 02:30:00");
        const auto instant = zone->instant(*local);
        std::cout << zem::Print(*instant, 0) << " = " << zem::Print(*instant, *zone, 0)
                  << kinds[zone->resolve(*local).kind] << '\n';
    }
    const auto change = zone->next_transition(*zem::ParseInstant("2024-07-01T00:00:00Z"));
    std::cout << "the clocks change at " << zem::Print(*change, 0) << '\n';
}
