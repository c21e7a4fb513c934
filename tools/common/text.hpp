// Instants and durations as people write and read them, built on the library's own texts.

#ifndef ZEMTIME_TOOLS_TEXT_HPP
#define ZEMTIME_TOOLS_TEXT_HPP

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Zem/Os/ZemTimeInline.h"
#include "Zem/Os/ZemTimeZone.h"

// A zone of the library's, with its storage.
class NamedZone {
  public:
    NamedZone();
    ~NamedZone();
    NamedZone(const NamedZone&) = delete;
    NamedZone& operator=(const NamedZone&) = delete;

    // Each makes it that zone, once; false when there is none.
    bool Find(const std::string& name);
    bool FindLocal();

    [[nodiscard]] const ZemTimeZone& Get() const
    {
        return zone_;
    }

  private:
    ZemAllocator heap_;
    ZemTimeZone zone_ = {};
};

// UTC, a fixed offset in seconds east of UTC, a zone with its rules, or what the C library takes
// for local time.
struct Zone {
    enum class Kind { kUtc, kFixed, kNamed, kLibc };

    Kind kind = Kind::kUtc;
    ZemInt offset = 0;                       // for kFixed
    std::shared_ptr<const NamedZone> named;  // for kNamed
};

// Local time as TZ or the machine has it now. The C library's where its data are none of the
// library's, as where they count leap seconds.
Zone LocalZone();

// All of `digits` as a number, without a sign.
std::optional<ZemUint64> ParseNumber(std::string_view digits, int base);

// Seconds east of UTC, from Z or a sign and hh, hh:mm, hh:mm:ss, hhmm or hhmmss: hours to 23,
// minutes and seconds to 59.
std::optional<ZemInt> ParseOffset(std::string_view text);

// "utc", "local", an offset, or the name of a zone such as Europe/Berlin.
std::optional<Zone> ParseZone(std::string_view text);

// The record of an instant in `zone`. In UTC where a fixed offset leads out of what a ZemTime
// holds.
ZemGregorianTime RecordIn(const Zone& zone, ZemTime t);

// The instant of a record's fields, read as time of `zone`; ZEM_TIME_INFINITE when there is none.
// The earlier one of a time that occurs twice; one that is skipped is moved on with the clock.
ZemTime InstantIn(const Zone& zone, ZemGregorianTime record);

// An instant as 2024-03-01 12:30:45.250 +01:00 in `zone`.
std::string PrintInstant(ZemTime t, const Zone& zone);

// The text of a record, in the same form.
std::string PrintRecord(const ZemGregorianTime& record);

// All of `text` as a duration in the forms that ZemTimeParseDuration takes: 30m, 1.5h, 1h 30m.
// Nothing where it stands for one that a ZemTime does not hold.
std::optional<ZemTime> ParseDuration(std::string_view text);

// For people, cut: 1 h 30 m.
std::string PrintDuration(ZemTime t);

// What reads back as the same: 1h30m0.5s.
std::string PrintExactDuration(ZemTime t);

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
