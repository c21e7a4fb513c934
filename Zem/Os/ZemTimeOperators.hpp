// Comparison and hashes of the C records ZemTimeRange and ZemGregorianTime. C++17; <=> from C++20.
//
// The operators stand in the records' own namespace, the global one, where every look-up finds
// them, and are templates: a program's own operators on the records win over them.

#ifndef ZEM_OS_ZEMTIMEOPERATORS_HPP
#define ZEM_OS_ZEMTIMEOPERATORS_HPP

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "Zem/Os/ZemTimeInline.h"

#if defined(__cpp_impl_three_way_comparison) && __has_include(<compare>)
#include <compare>
#endif

namespace zem::detail {

// As ZemTimeRangeEqual and ZemTimeRangeLess, in constant expressions too.
constexpr bool Equal(const ZemTimeRange& a, const ZemTimeRange& b) noexcept
{
    return a.begin == b.begin && a.end == b.end;
}

constexpr bool Less(const ZemTimeRange& a, const ZemTimeRange& b) noexcept
{
    return a.end < b.end || (a.end == b.end && a.begin < b.begin);
}

inline bool Equal(const ZemGregorianTime& a, const ZemGregorianTime& b) noexcept
{
    return ZemGregorianTimeEqual(&a, &b) != 0;
}

inline bool Less(const ZemGregorianTime& a, const ZemGregorianTime& b) noexcept
{
    return ZemGregorianTimeLess(&a, &b) != 0;
}

#if defined(__cpp_lib_three_way_comparison)
constexpr std::strong_ordering Compare(const ZemTimeRange& a, const ZemTimeRange& b) noexcept
{
    return a.end != b.end ? a.end <=> b.end : a.begin <=> b.begin;
}

inline std::weak_ordering Compare(const ZemGregorianTime& a, const ZemGregorianTime& b) noexcept
{
    if (Less(a, b)) {
        return std::weak_ordering::less;
    }
    return Less(b, a) ? std::weak_ordering::greater : std::weak_ordering::equivalent;
}
#endif

template <class T>
using IfRecord =
    std::enable_if_t<std::is_same_v<T, ZemTimeRange> || std::is_same_v<T, ZemGregorianTime>, int>;

// Spreads every bit of both numbers over the result: the two halves of a product with an odd
// constant (2^64 divided by the golden ratio).
constexpr ZemUint64 Mix(ZemUint64 hash, ZemUint64 value) noexcept
{
    __extension__ typedef unsigned __int128 Wide;
    const Wide product = static_cast<Wide>(hash ^ value) * 0x9E3779B97F4A7C15;
    return static_cast<ZemUint64>(product) ^ static_cast<ZemUint64>(product >> 64);
}

}  // namespace zem::detail

// Ranges are ordered by lower bound, then by upper bound. Calendar records are ordered by what a
// wall calendar shows, the offset last: see ZemGregorianTimeLess. Equal records may differ in what
// those eight values leave out (the weekday, the zone's name), so their order is a weak one.

template <class T, zem::detail::IfRecord<T> = 0>
constexpr bool operator==(const T& a, const T& b) noexcept
{
    return zem::detail::Equal(a, b);
}

template <class T, zem::detail::IfRecord<T> = 0>
constexpr bool operator!=(const T& a, const T& b) noexcept
{
    return !zem::detail::Equal(a, b);
}

template <class T, zem::detail::IfRecord<T> = 0>
constexpr bool operator<(const T& a, const T& b) noexcept
{
    return zem::detail::Less(a, b);
}

template <class T, zem::detail::IfRecord<T> = 0>
constexpr bool operator>(const T& a, const T& b) noexcept
{
    return zem::detail::Less(b, a);
}

template <class T, zem::detail::IfRecord<T> = 0>
constexpr bool operator<=(const T& a, const T& b) noexcept
{
    return !zem::detail::Less(b, a);
}

template <class T, zem::detail::IfRecord<T> = 0>
constexpr bool operator>=(const T& a, const T& b) noexcept
{
    return !zem::detail::Less(a, b);
}

#if defined(__cpp_lib_three_way_comparison)
template <class T, zem::detail::IfRecord<T> = 0>
constexpr auto operator<=>(const T& a, const T& b) noexcept
{
    return zem::detail::Compare(a, b);
}
#endif

template <>
struct std::hash<ZemTimeRange> {
    std::size_t operator()(const ZemTimeRange& range) const noexcept
    {
        // Any start that is not 0, which would make the first product 0 for a bound of 0.
        const ZemUint64 upper = zem::detail::Mix(1, static_cast<ZemUint64>(range.begin));
        return zem::detail::Mix(upper, static_cast<ZemUint64>(range.end));
    }
};

// Over the eight values that equality looks at.
template <>
struct std::hash<ZemGregorianTime> {
    std::size_t operator()(const ZemGregorianTime& gt) const noexcept
    {
        ZemUint64 mixed = Both(1, gt.tm.tm_year, gt.tm.tm_mon);
        mixed = Both(mixed, gt.tm.tm_mday, gt.tm.tm_hour);
        mixed = Both(mixed, gt.tm.tm_min, gt.tm.tm_sec);
        mixed = zem::detail::Mix(mixed, static_cast<ZemUint64>(gt.nanosecs));
        return Both(mixed, 0, ZemGregorianTimeGetUTCOffset(&gt));
    }

  private:
    static ZemUint64 Both(ZemUint64 mixed, ZemInt a, ZemInt b) noexcept
    {
        const ZemUint64 high = static_cast<ZemUint>(a);
        return zem::detail::Mix(mixed, high * 4294967296 + static_cast<ZemUint>(b));
    }
};

#endif
