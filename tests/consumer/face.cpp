// A user's program over the C++ headers: succeeds when what it uses gives the right results.
#include <Zem/Os/ZemTime.hpp>
#include <Zem/Os/ZemTimeMemory.hpp>

int main()
{
    const auto instant = zem::ParseInstant("2024-03-01T12:30:45.250+01:00");
    zem::RangeSet set = {zem::MakeRange(1, 2), zem::MakeRange(3, 4)};
    const bool ok = instant && zem::Print(*instant, 3) == "2024-03-01T11:30:45.250Z" &&
                    set == zem::RangeSet{zem::MakeRange(1, 4)} && zem::Zone::named("UTC") &&
                    zem::MonotonicClock::now() > zem::ToMonotonic(0);
    return ok ? 0 : 1;
}
