// Instants and durations as people write and read them, built on the library's own texts.

#ifndef ZEMTIME_TOOLS_TEXT_HPP
#define ZEMTIME_TOOLS_TEXT_HPP

#include <optional>
#include <string>
#include <string_view>

#include "Zem/Os/ZemTimeInline.h"

// UTC, the process's local time, or a fixed offset in seconds east of UTC.
struct Zone {
    enum class Kind { kUtc, kLocal, kFixed };

    Kind kind = Kind::kLocal;
    ZemInt offset = 0;  // for kFixed
};

// "utc", "local", or an offset in any form that may end a timestamp: +01:00, -0530, Z.
std::optional<Zone> ParseZone(std::string_view text);

// An instant as 2024-03-01 12:30:45.250 +01:00 in `zone`. In UTC where the zone's own time cannot
// be told: at the ends of what a ZemTime holds.
std::string PrintInstant(ZemTime t, const Zone& zone);

// The text of a record, in the same form.
std::string PrintRecord(const ZemGregorianTime& record);

// A duration of one or more counts with units (ns, us, ms, s, m, h, d): 30m, 1h30m, 250ms.
std::optional<ZemTime> ParseDuration(std::string_view text);

std::string PrintDuration(ZemTime t);

// The sum, held at the nearest value that a ZemTime has.
inline ZemTime AddSaturating(ZemTime a, ZemTime b)
{
    ZemTime sum;
    if (!__builtin_add_overflow(a, b, &sum)) {
        return sum;
    }
    return a < 0 ? INT64_MIN : INT64_MAX;
}

#endif
