// Time values and <chrono>, both ways, and the monotonic clock as one of its clocks. C++17.
//
// <chrono> is the strong type: an instant is an Instant, a duration one of its durations, and a
// reading of the monotonic clock a MonotonicClock::time_point. A ZemTime is any of the three as an
// integer of nanoseconds, and what C functions take.

#ifndef ZEM_OS_ZEMTIMECHRONO_HPP
#define ZEM_OS_ZEMTIMECHRONO_HPP

#include <chrono>
#include <limits>
#include <optional>
#include <type_traits>

#include "Zem/Os/ZemTimeInline.h"

namespace zem {

// An instant of the wall clock with all its nanoseconds: 1677-09-21 to 2262-04-11.
using Instant = std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>;

// The monotonic clock of ZemTimeGetCurrentMonotonicTime as a clock of <chrono>, in nanoseconds from
// an origin of the host's. Meets the requirements of a clock; usable with sleep_until and
// wait_until.
struct MonotonicClock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<MonotonicClock>;
    static constexpr bool is_steady = true;

    // What the clock reads now. The first call in a program sets the clock up, unless
    // ZemTimeInitialize has been called before; a program that calls both from several threads
    // calls ZemTimeInitialize before it starts them. Reads 0 for ever on a host without a timebase.
    static time_point now() noexcept;
};

// ---------------------------------------------------------------------------------------------
// From a ZemTime
// ---------------------------------------------------------------------------------------------

// The instant that a wall-clock time names. ZEM_TIME_INFINITE is Instant::max().
constexpr Instant ToInstant(ZemTime t) noexcept
{
    return Instant(std::chrono::nanoseconds(t));
}

// The duration of `t` nanoseconds.
constexpr std::chrono::nanoseconds ToDuration(ZemTime t) noexcept
{
    return std::chrono::nanoseconds(t);
}

// The reading `t` of the monotonic clock.
constexpr MonotonicClock::time_point ToMonotonic(ZemTime t) noexcept
{
    return MonotonicClock::time_point(MonotonicClock::duration(t));
}

// The monotonic deadline `t` for sleep_until and wait_until, brought into 0 to 146 years after the
// clock's origin. Standard libraries add and subtract readings without a test: with
// ZEM_TIME_INFINITE as it is, their sum overflows, and a wait for ever ends at once.
constexpr MonotonicClock::time_point ToDeadline(ZemTime t) noexcept
{
    return ToMonotonic(t < 0 ? 0 : (t < ZEM_TIME_INFINITE / 2 ? t : ZEM_TIME_INFINITE / 2));
}

// The instant at the system clock's own resolution (microseconds in libc++, nanoseconds in
// libstdc++), rounded down.
constexpr std::chrono::system_clock::time_point ToSystem(ZemTime t) noexcept
{
    return std::chrono::floor<std::chrono::system_clock::duration>(ToInstant(t));
}

// ---------------------------------------------------------------------------------------------
// To a ZemTime
// ---------------------------------------------------------------------------------------------

namespace detail {

__extension__ typedef unsigned __int128 Uint128;

// The nearest ZemTime, and whether it is the value itself (rounding apart).
struct Converted {
    ZemTime t;
    bool fits;
};

inline constexpr Converted kAbove = {std::numeric_limits<ZemTime>::max(), false};
inline constexpr Converted kBelow = {std::numeric_limits<ZemTime>::min(), false};

constexpr std::intmax_t GreatestCommonDivisor(std::intmax_t a, std::intmax_t b) noexcept
{
    while (b != 0) {
        std::intmax_t rest = a % b;
        a = b;
        b = rest;
    }
    return a;
}

// A tick of `Period` is num * mul / den nanoseconds. (As one std::ratio, exa would not compile.)
template <class Period>
struct Nanosecs {
    static constexpr std::intmax_t kCommon = GreatestCommonDivisor(1000000000, Period::den);
    static constexpr std::intmax_t num = Period::num;
    static constexpr std::intmax_t mul = 1000000000 / kCommon;  // 1 .. 10^9
    static constexpr std::intmax_t den = Period::den / kCommon;
    static constexpr bool areWhole = den == 1 && num <= INT64_MAX / mul;
    static constexpr bool areParts = den <= INT32_MAX && num == 1 && mul == 1;
};

// Counts of any period: rounded down, exact in 128 bits.
template <class Period, class Rep>
constexpr Converted ConvertRatio(Rep count) noexcept
{
    using Tick = Nanosecs<Period>;
    constexpr auto den = static_cast<Uint128>(Tick::den);
    const bool negative = count < Rep(0);
    // Below 2^64 * 2^63.
    Uint128 product = negative ? Uint128(0) - static_cast<Uint128>(count) : Uint128(count);
    product *= static_cast<Uint128>(Tick::num);
    const Uint128 whole = product / den;
    const Uint128 rest = product % den * static_cast<Uint128>(Tick::mul);  // below 2^63 * 2^30
    if (whole > Uint128(1) << 64) {
        return negative ? kBelow : kAbove;
    }
    Uint128 nanosecs = whole * static_cast<Uint128>(Tick::mul) + rest / den;
    if (!negative) {
        return nanosecs < Uint128(1) << 63 ? Converted{static_cast<ZemTime>(nanosecs), true}
                                           : kAbove;
    }
    nanosecs += rest % den != 0 ? 1 : 0;
    return nanosecs <= Uint128(1) << 63 ? Converted{static_cast<ZemTime>(-nanosecs), true} : kBelow;
}

template <class Period, class Rep>
constexpr Converted ConvertInteger(Rep count) noexcept
{
    using Tick = Nanosecs<Period>;
    if constexpr (Tick::areWhole) {
        ZemTime t = 0;
        if (__builtin_expect(__builtin_mul_overflow(count, Tick::num * Tick::mul, &t), 0)) {
            return count < Rep(0) ? kBelow : kAbove;
        }
        return {t, true};
    } else if constexpr (Tick::areParts && std::is_signed_v<Rep>) {
        constexpr ZemInt64 den = Tick::den;
        const ZemInt64 wide = count;
        return {wide / den - (wide % den < 0 ? 1 : 0), true};
    } else {
        return ConvertRatio<Period>(count);
    }
}

// To the nearest nanosecond, halves away from 0, computed in Rep or double, the wider. (Rounded
// down, 0.3 s would be 299,999,999 ns.)
template <class Period, class Rep>
constexpr Converted ConvertFloating(Rep count) noexcept
{
    using Float = std::common_type_t<Rep, double>;
    using Tick = Nanosecs<Period>;
    constexpr auto num = static_cast<Float>(Tick::num) * static_cast<Float>(Tick::mul);
    constexpr auto den = static_cast<Float>(Tick::den);
    constexpr auto bound = Float(9223372036854775808.0);
    // Tested before the product, since one that overflows is no constant expression; a little more
    // than the bound, which rounding may move. The first comparison fails for what is not a number.
    constexpr Float far = bound / num * den * Float(1.001);
    const auto value = static_cast<Float>(count);
    if (!(value < far)) {
        return kAbove;
    }
    if (value < -far) {
        return kBelow;
    }
    const Float nanosecs = value * num / den;
    if (nanosecs >= bound) {
        return kAbove;
    }
    if (nanosecs < -bound) {
        return kBelow;
    }
    const auto t = static_cast<ZemTime>(nanosecs);
    const Float rest = nanosecs - static_cast<Float>(t);
    if (rest >= Float(0.5)) {
        return t == kAbove.t ? kAbove : Converted{t + 1, true};
    }
    if (rest <= Float(-0.5)) {
        return t == kBelow.t ? kBelow : Converted{t - 1, true};
    }
    return {t, true};
}

template <class Rep, class Period>
constexpr Converted Convert(std::chrono::duration<Rep, Period> d) noexcept
{
    if constexpr (std::is_floating_point_v<Rep>) {
        return ConvertFloating<Period>(d.count());
    } else {
        return ConvertInteger<Period>(d.count());
    }
}

// Counts that have an exact conversion; wider integers and classes have none here.
template <class Rep>
using IfNumber = std::enable_if_t<
    std::is_arithmetic_v<Rep> && (std::is_floating_point_v<Rep> || sizeof(Rep) <= 8), int>;

// Clocks whose origin is known to be that of a ZemTime.
template <class Clock>
using IfKnownClock = std::enable_if_t<
    std::is_same_v<Clock, std::chrono::system_clock> || std::is_same_v<Clock, MonotonicClock>, int>;

}  // namespace detail

// The duration in nanoseconds, for any period and any built-in number. Integers are rounded down,
// floating-point numbers to the nearest nanosecond. Durations that do not fit give the largest or
// the smallest ZemTime; what is not a number gives ZEM_TIME_INFINITE (but -ffast-math, or
// -ffinite-math-only, makes that any value).
template <class Rep, class Period, detail::IfNumber<Rep> = 0>
constexpr ZemTime FromChrono(std::chrono::duration<Rep, Period> d) noexcept
{
    return detail::Convert(d).t;
}

// The wall-clock time or monotonic reading in nanoseconds, likewise. Time points of other clocks
// have other origins and are not taken.
template <class Clock, class Duration, detail::IfKnownClock<Clock> = 0>
constexpr ZemTime FromChrono(std::chrono::time_point<Clock, Duration> t) noexcept
{
    return FromChrono(t.time_since_epoch());
}

// The same, but nothing where it does not fit or is not a number.
template <class Rep, class Period, detail::IfNumber<Rep> = 0>
constexpr std::optional<ZemTime> TryFromChrono(std::chrono::duration<Rep, Period> d) noexcept
{
    const detail::Converted converted = detail::Convert(d);
    return converted.fits ? std::optional<ZemTime>(converted.t) : std::nullopt;
}

template <class Clock, class Duration, detail::IfKnownClock<Clock> = 0>
constexpr std::optional<ZemTime> TryFromChrono(std::chrono::time_point<Clock, Duration> t) noexcept
{
    return TryFromChrono(t.time_since_epoch());
}

// ---------------------------------------------------------------------------------------------
// Calendar records
// ---------------------------------------------------------------------------------------------

// The UTC record of an instant (saturated, as by FromChrono): see ZemGregorianTimeConstructUTC.
template <class Duration>
ZemGregorianTime ToRecord(std::chrono::time_point<std::chrono::system_clock, Duration> t) noexcept
{
    ZemGregorianTime gt;
    ZemGregorianTimeConstructUTC(&gt, FromChrono(t));
    return gt;
}

// The instant that a record denotes, at its own UTC offset; nothing where an Instant does not reach
// it, which is also said of the very last nanosecond. The second before 1970, which
// ZemGregorianTimeGetTime does not tell from a failure, is a second like any other.
inline std::optional<Instant> TryToInstant(const ZemGregorianTime& gt) noexcept
{
    ZemTime t = ZemGregorianTimeGetTime(&gt);
    if (t == ZEM_TIME_INFINITE && gt.tm.tm_sec != std::numeric_limits<int>::min()) {
        ZemGregorianTime before = gt;
        before.tm.tm_sec -= 1;
        t = ZemGregorianTimeGetTime(&before);
        // Right before the last nanosecond the sum does not fit either.
        t = t < ZEM_TIME_INFINITE - 1000000000 ? t + 1000000000 : ZEM_TIME_INFINITE;
    }
    return t != ZEM_TIME_INFINITE ? std::optional<Instant>(ToInstant(t)) : std::nullopt;
}

// ---------------------------------------------------------------------------------------------
// The clock
// ---------------------------------------------------------------------------------------------

namespace detail {

inline void SetUpMonotonicClock() noexcept
{
    // Written only where nobody has: a program's own call at start-up stays the only one.
    static const bool ready =
        ZemTimeMachMonotonicTimeClockInterval_ != 0.0 || ZemTimeInitialize() != 0;
    (void)ready;
}

}  // namespace detail

inline MonotonicClock::time_point MonotonicClock::now() noexcept
{
    detail::SetUpMonotonicClock();
    return ToMonotonic(ZemTimeGetCurrentMonotonicTime());
}

}  // namespace zem

#endif
