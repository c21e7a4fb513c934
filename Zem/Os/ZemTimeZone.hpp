// Named time zones that hand their memory back by themselves. C++17.

#ifndef ZEM_OS_ZEMTIMEZONE_HPP
#define ZEM_OS_ZEMTIMEZONE_HPP

#include <chrono>
#include <optional>
#include <string_view>
#include <type_traits>

#include "Zem/Os/ZemTimeChrono.hpp"
#include "Zem/Os/ZemTimeText.hpp"
#include "Zem/Os/ZemTimeZone.h"
#include "Zem/Utils/ZemAllocator.hpp"

namespace zem {

// A time zone: see ZemTimeZone.h, whose functions these are. Read only once it is made, so that any
// number of threads may share one. Can be moved but not copied; one that was moved from may only be
// assigned to or destructed. Records that it filled point into it for the zone's name (tm_zone).
// Nothing here throws.
class Zone {
  public:
    // The zone of that name, such as Europe/Berlin; nothing when there is none, its data are not
    // what they should be, or there is no memory. `a` must outlive the zone.
    static std::optional<Zone> named(std::string_view name,
                                     ZemAllocator* a = DefaultAllocator()) noexcept
    {
        return OfText(ZemTimeZoneConstruct, name, a);
    }

    // The zone of the process, as TZ and the machine have it now; nothing as above, and when TZ is
    // no zone.
    static std::optional<Zone> local(ZemAllocator* a = DefaultAllocator()) noexcept
    {
        ZemTimeZone made;
        return Made(ZemTimeZoneConstructLocal(&made, a));
    }

    // The zone of a rule as POSIX has them, such as CET-1CEST,M3.5.0,M10.5.0/3; nothing when the
    // text is none, is longer than 1,023 bytes, or there is no memory.
    static std::optional<Zone> from_rule(std::string_view rule,
                                         ZemAllocator* a = DefaultAllocator()) noexcept
    {
        return OfText(ZemTimeZoneConstructRule, rule, a);
    }

    // The zone of the `size` bytes of TZif data at `tzif`, of which nothing is kept; nothing when
    // they are not that, or there is no memory.
    static std::optional<Zone> from_data(const void* tzif, std::size_t size,
                                         ZemAllocator* a = DefaultAllocator()) noexcept
    {
        ZemTimeZone made;
        return Made(ZemTimeZoneConstructData(&made, tzif, size, a));
    }

    Zone(Zone&& other) noexcept : z_(other.z_)
    {
        other.z_.table = nullptr;
    }
    Zone& operator=(Zone&& other) noexcept
    {
        const ZemTimeZone old = z_;
        z_ = other.z_;
        other.z_ = old;
        return *this;
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;
    ~Zone()
    {
        if (z_.table != nullptr) {
            ZemTimeZoneDestruct(&z_);
        }
    }

    // The zone's calendar time of an instant (saturated, as by FromChrono): see
    // ZemGregorianTimeConstructInZone.
    template <class Duration>
    ZemGregorianTime record(
        std::chrono::time_point<std::chrono::system_clock, Duration> t) const noexcept
    {
        ZemGregorianTime gt;
        ZemGregorianTimeConstructInZone(&gt, FromChrono(t), &z_);
        return gt;
    }

    // The instant of the record's fields, read as time of the zone: the first of two, and moved on
    // where the time is skipped. Nothing where an Instant does not reach it, which is also said of
    // the very last nanosecond. See ZemGregorianTimeGetTimeInZone.
    std::optional<Instant> instant(const ZemGregorianTime& gt) const noexcept
    {
        return detail::Reached(ZemGregorianTimeGetTimeInZone(&gt, &z_));
    }

    // Whether the time of the fields occurs once, twice or not at all, and the instants that it may
    // be: see ZemLocalTime.
    ZemLocalTime resolve(const ZemGregorianTime& gt) const noexcept
    {
        ZemLocalTime result;
        ZemGregorianTimeResolve(&gt, &z_, &result);
        return result;
    }

    // The first instant after `t`, or the last one before it, at which the zone's time changes;
    // nothing when there is none.
    template <class Duration>
    std::optional<Instant> next_transition(
        std::chrono::time_point<std::chrono::system_clock, Duration> t) const noexcept
    {
        ZemTime at = 0;
        return ZemTimeZoneNextTransition(&z_, FromChrono(t), &at) != 0
                   ? std::optional<Instant>(ToInstant(at))
                   : std::nullopt;
    }
    template <class Duration>
    std::optional<Instant> previous_transition(
        std::chrono::time_point<std::chrono::system_clock, Duration> t) const noexcept
    {
        ZemTime at = 0;
        return ZemTimeZonePreviousTransition(&z_, FromChrono(t), &at) != 0
                   ? std::optional<Instant>(ToInstant(at))
                   : std::nullopt;
    }

    // The C zone, for the functions of ZemTimeZone.h. It stays this object's.
    const ZemTimeZone* handle() const noexcept
    {
        return &z_;
    }

  private:
    explicit Zone(const ZemTimeZone& made) noexcept : z_(made) {}

    static std::optional<Zone> Made(const ZemTimeZone* made) noexcept
    {
        return made != nullptr ? std::optional<Zone>(Zone(*made)) : std::nullopt;
    }

    // With a NUL behind the text. Longer ones are no names: their paths would not fit either.
    static std::optional<Zone> OfText(ZemTimeZone* (*construct)(ZemTimeZone*, const char*,
                                                                ZemAllocator*),
                                      std::string_view text, ZemAllocator* a) noexcept
    {
        char copy[1024];
        if (text.size() >= sizeof copy || text.find('\0') != std::string_view::npos) {
            return std::nullopt;
        }
        copy[text.copy(copy, text.size())] = '\0';
        ZemTimeZone made;
        return Made(construct(&made, copy, a));
    }

    ZemTimeZone z_;
};

static_assert(sizeof(Zone) == sizeof(ZemTimeZone));
static_assert(std::is_nothrow_move_constructible_v<Zone>);
static_assert(std::is_nothrow_move_assignable_v<Zone>);

// The instant as RFC 3339 has it, at the zone's offset: 2024-03-01T12:30:45.250+01:00.
template <class Duration>
Text<94> Print(std::chrono::time_point<std::chrono::system_clock, Duration> t, const Zone& zone,
               int digits = 9) noexcept
{
    return Print(zone.record(t), digits);
}

}  // namespace zem

#endif
