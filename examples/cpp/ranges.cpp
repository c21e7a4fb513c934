// When were both services up, and when was none? Sets of ranges: services.c in C++, with two.

#include <Zem/Os/ZemTime.hpp>
#include <iostream>

// The range between two timestamps. A range holds both of its bounds, so that "until" is the
// nanosecond after the last.
static ZemTimeRange Between(std::string_view from, std::string_view until)
{
    return zem::MakeRange(zem::ParseInstant(from).value(),
                          zem::ParseInstant(until).value() - std::chrono::nanoseconds(1));
}

static void Print(const char* title, const zem::RangeSet& set)
{
    std::cout << title << ':';
    for (const ZemTimeRange& range : set) {
        std::cout << ' ' << zem::Print(zem::ToInstant(zem::Lower(range)), 0).view().substr(11, 5)
                  << '-'
                  << zem::Print(zem::ToInstant(zem::Upper(range) + 1), 0).view().substr(11, 5);
    }
    std::cout << '\n';
}

int main()
{
    const zem::RangeSet web = {
        Between("2024-03-01T08:30:00Z", "2024-03-01T16:00:00Z"),
        Between("2024-03-01T00:00:00Z", "2024-03-01T09:00:00Z"),
        Between("2024-03-01T17:15:00Z", "2024-03-02T00:00:00Z"),
    };
    const zem::RangeSet mail = {
        Between("2024-03-01T06:00:00Z", "2024-03-01T16:00:00Z"),
        Between("2024-03-01T16:45:00Z", "2024-03-01T20:00:00Z"),
    };
    const ZemTimeRange day = Between("2024-03-01T00:00:00Z", "2024-03-02T00:00:00Z");
    Print("both were up", web & mail);
    Print("none was up", (web | mail).gaps(day));
    Print("just one", web ^ mail);
    std::cout << "at 16:30 "
              << (web.contains(*zem::ParseInstant("2024-03-01T16:30:00Z")) ? "" : "no ") << "web\n";
}
