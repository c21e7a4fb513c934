// Sets of instants: an array of ranges that is always in normal form. C++17.

#ifndef ZEM_OS_ZEMTIMERANGESET_HPP
#define ZEM_OS_ZEMTIMERANGESET_HPP

#include <cstdint>
#include <initializer_list>
#include <utility>

#include "Zem/Os/ZemTimeRangeSet.h"
#include "Zem/Os/ZemTimeRangeVector.hpp"

namespace zem {

// A set of instants, kept as ranges that are valid and in order, with at least one instant missing
// between neighbours: see ZemTimeRangeSet.h, whose functions these are. Ranges include both of
// their bounds; each set has one form, so that equal sets have equal ranges. Iteration gives the
// ranges, which cannot be changed in place.
//
// Questions, moves, join and clear need no memory and throw nothing. Other functions throw
// std::bad_alloc when there is none for the result, or it might be of more ranges than a
// RangeVector can hold, and leave the set as it was; without exceptions they abort. Those whose
// names begin with try_ return false instead. Results of the binary operators are on the allocator
// of the left side.
class RangeSet {
  public:
    using value_type = ZemTimeRange;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = const ZemTimeRange&;
    using const_reference = const ZemTimeRange&;
    using iterator = const ZemTimeRange*;
    using const_iterator = const ZemTimeRange*;

    // The empty set, on the default allocator or on `a`. Allocates nothing.
    RangeSet() noexcept = default;
    explicit RangeSet(ZemAllocator* a) noexcept : ranges_(a) {}

    // The instants of any ranges: in any order, overlapping, and none of those that are not valid.
    // Takes the vector's block: RangeSet(std::move(ranges)).
    explicit RangeSet(RangeVector&& ranges) noexcept : ranges_(std::move(ranges))
    {
        ZemTimeRangeSetNormalize(ranges_.handle());
    }
    ZEM_MAY_THROW_ explicit RangeSet(const RangeVector& ranges) : RangeSet(RangeVector(ranges)) {}
    ZEM_MAY_THROW_ RangeSet(std::initializer_list<ZemTimeRange> ranges,
                            ZemAllocator* a = DefaultAllocator())
        : RangeSet(RangeVector(ranges, a))
    {}

    ZEM_MAY_THROW_ RangeSet(const RangeSet&) = default;
    ZEM_MAY_THROW_ RangeSet& operator=(const RangeSet&) = default;
    RangeSet(RangeSet&&) noexcept = default;
    RangeSet& operator=(RangeSet&&) noexcept = default;
    ~RangeSet() = default;

    void swap(RangeSet& other) noexcept
    {
        ranges_.swap(other.ranges_);
    }
    friend void swap(RangeSet& a, RangeSet& b) noexcept
    {
        a.swap(b);
    }

    // -----------------------------------------------------------------------------------------
    // Ranges
    // -----------------------------------------------------------------------------------------

    const_iterator begin() const noexcept
    {
        return ranges_.begin();
    }
    const_iterator end() const noexcept
    {
        return ranges_.end();
    }
    const ZemTimeRange* data() const noexcept
    {
        return ranges_.data();
    }
    // The number of ranges.
    size_type size() const noexcept
    {
        return ranges_.size();
    }
    bool empty() const noexcept
    {
        return ranges_.empty();
    }
    const_reference operator[](size_type i) const noexcept
    {
        return ranges_[i];
    }
    const_reference front() const noexcept
    {
        return ranges_.front();
    }
    const_reference back() const noexcept
    {
        return ranges_.back();
    }

    // The ranges as a vector, and as a C vector.
    const RangeVector& ranges() const noexcept
    {
        return ranges_;
    }
    const ZemVector_ZemTimeRange* handle() const noexcept
    {
        return ranges_.handle();
    }

    // -----------------------------------------------------------------------------------------
    // Questions
    // -----------------------------------------------------------------------------------------

    // The range that holds `t`; end() when none does. O(log n).
    const_iterator find(ZemTime t) const noexcept
    {
        const_iterator found = ZemTimeRangeSetFind(handle(), t);
        return found != nullptr ? found : end();
    }

    // The range that holds `t`, or else the first one after it; end() when there is none. O(log n).
    const_iterator lower_bound(ZemTime t) const noexcept
    {
        return ZemTimeRangeSetLowerBound(handle(), t);
    }

    // Whether the instant, every instant of the range (none, if it is not valid), or every instant
    // of the other set is in the set.
    bool contains(ZemTime t) const noexcept
    {
        return ZemTimeRangeSetFind(handle(), t) != nullptr;
    }
    bool contains(const ZemTimeRange& range) const noexcept
    {
        const_iterator found = lower_bound(Lower(range));
        return (found != end() && ZemTimeRangeSubsumes(found, &range) != 0) ||
               ZemTimeRangeIsValid(&range) == 0;
    }
    bool contains(const RangeSet& other) const noexcept
    {
        return ZemTimeRangeSetSubsumes(handle(), other.handle()) != 0;
    }

    // The same for time points, saturated as by FromChrono.
    template <class Clock, class Duration, detail::IfKnownClock<Clock> = 0>
    const_iterator find(std::chrono::time_point<Clock, Duration> t) const noexcept
    {
        return find(FromChrono(t));
    }
    template <class Clock, class Duration, detail::IfKnownClock<Clock> = 0>
    const_iterator lower_bound(std::chrono::time_point<Clock, Duration> t) const noexcept
    {
        return lower_bound(FromChrono(t));
    }
    template <class Clock, class Duration, detail::IfKnownClock<Clock> = 0>
    bool contains(std::chrono::time_point<Clock, Duration> t) const noexcept
    {
        return contains(FromChrono(t));
    }

    // Whether the two have an instant in common.
    bool intersects(const RangeSet& other) const noexcept
    {
        return ZemTimeRangeSetIntersects(handle(), other.handle()) != 0;
    }

    // How long the ranges are together, in nanoseconds: the sum of upper - lower bound, up to
    // 2^64 - 1 for all instants.
    std::uint64_t length() const noexcept
    {
        return ZemTimeRangeSetLength(handle());
    }

    friend bool operator==(const RangeSet& a, const RangeSet& b) noexcept
    {
        return a.ranges_ == b.ranges_;
    }
    friend bool operator!=(const RangeSet& a, const RangeSet& b) noexcept
    {
        return !(a == b);
    }

    // -----------------------------------------------------------------------------------------
    // Changes
    // -----------------------------------------------------------------------------------------

    // Adds the instants of a range, or takes them out. O(log n), and O(n) to move what follows.
    ZEM_MAY_THROW_ void add(ZemTimeRange range)
    {
        if (!try_add(range)) {
            detail::OutOfMemory();
        }
    }
    bool try_add(ZemTimeRange range) noexcept
    {
        return ZemTimeRangeSetAdd(ranges_.handle(), &range) != 0;
    }
    ZEM_MAY_THROW_ void remove(ZemTimeRange range)
    {
        if (!try_remove(range)) {
            detail::OutOfMemory();
        }
    }
    bool try_remove(ZemTimeRange range) noexcept
    {
        return ZemTimeRangeSetRemove(ranges_.handle(), &range) != 0;
    }

    // Closes the gaps to ranges that begin at most `reach` nanoseconds after the end of the one
    // before: see ZemTimeRangeSetJoin.
    void join(std::chrono::nanoseconds reach) noexcept
    {
        ZemTimeRangeSetJoin(ranges_.handle(), reach.count());
    }

    void clear() noexcept
    {
        ranges_.clear();
    }
    ZEM_MAY_THROW_ void reserve(size_type n)
    {
        ranges_.reserve(n);
    }
    bool try_reserve(size_type n) noexcept
    {
        return ranges_.try_reserve(n);
    }

    // -----------------------------------------------------------------------------------------
    // Algebra
    // -----------------------------------------------------------------------------------------

    // In place: what either has, both have, only the left side has, exactly one has. The other
    // side may be the set itself. O(n + m).
    ZEM_MAY_THROW_ RangeSet& operator|=(const RangeSet& other)
    {
        return Combine(ZemTimeRangeSetUnion, *this, other);
    }
    ZEM_MAY_THROW_ RangeSet& operator&=(const RangeSet& other)
    {
        return Combine(ZemTimeRangeSetIntersection, *this, other);
    }
    ZEM_MAY_THROW_ RangeSet& operator-=(const RangeSet& other)
    {
        return Combine(ZemTimeRangeSetDifference, *this, other);
    }
    ZEM_MAY_THROW_ RangeSet& operator^=(const RangeSet& other)
    {
        return Combine(ZemTimeRangeSetSymmetricDifference, *this, other);
    }

    bool try_union(const RangeSet& other) noexcept
    {
        return ZemTimeRangeSetUnion(handle(), other.handle(), ranges_.handle()) != 0;
    }
    bool try_intersection(const RangeSet& other) noexcept
    {
        return ZemTimeRangeSetIntersection(handle(), other.handle(), ranges_.handle()) != 0;
    }
    bool try_difference(const RangeSet& other) noexcept
    {
        return ZemTimeRangeSetDifference(handle(), other.handle(), ranges_.handle()) != 0;
    }
    bool try_symmetric_difference(const RangeSet& other) noexcept
    {
        return ZemTimeRangeSetSymmetricDifference(handle(), other.handle(), ranges_.handle()) != 0;
    }

    ZEM_MAY_THROW_ friend RangeSet operator|(const RangeSet& a, const RangeSet& b)
    {
        RangeSet result(a.ranges_.allocator());
        result.Combine(ZemTimeRangeSetUnion, a, b);
        return result;
    }
    ZEM_MAY_THROW_ friend RangeSet operator&(const RangeSet& a, const RangeSet& b)
    {
        RangeSet result(a.ranges_.allocator());
        result.Combine(ZemTimeRangeSetIntersection, a, b);
        return result;
    }
    ZEM_MAY_THROW_ friend RangeSet operator-(const RangeSet& a, const RangeSet& b)
    {
        RangeSet result(a.ranges_.allocator());
        result.Combine(ZemTimeRangeSetDifference, a, b);
        return result;
    }
    ZEM_MAY_THROW_ friend RangeSet operator^(const RangeSet& a, const RangeSet& b)
    {
        RangeSet result(a.ranges_.allocator());
        result.Combine(ZemTimeRangeSetSymmetricDifference, a, b);
        return result;
    }

    // The instants of `window` that are not in the set, on the set's allocator.
    ZEM_MAY_THROW_ RangeSet gaps(ZemTimeRange window) const
    {
        RangeSet result(ranges_.allocator());
        if (!try_gaps(window, result)) {
            detail::OutOfMemory();
        }
        return result;
    }
    // The same into `result`, which may be the set itself.
    bool try_gaps(ZemTimeRange window, RangeSet& result) const noexcept
    {
        return ZemTimeRangeSetGaps(handle(), &window, result.ranges_.handle()) != 0;
    }

  private:
    using Operation = ZemBool(const ZemVector_ZemTimeRange*, const ZemVector_ZemTimeRange*,
                              ZemVector_ZemTimeRange*);

    // Makes this set what the operation gives for `a` and `b`.
    ZEM_MAY_THROW_ RangeSet& Combine(Operation* operation, const RangeSet& a, const RangeSet& b)
    {
        if (operation(a.handle(), b.handle(), ranges_.handle()) == 0) {
            detail::OutOfMemory();
        }
        return *this;
    }

    RangeVector ranges_;
};

static_assert(sizeof(RangeSet) == sizeof(ZemVector_ZemTimeRange));
static_assert(std::is_nothrow_move_constructible_v<RangeSet>);
static_assert(std::is_nothrow_move_assignable_v<RangeSet>);

}  // namespace zem

#endif
