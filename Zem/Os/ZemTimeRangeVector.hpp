// Arrays of time ranges as a container: the C vector with its memory managed, under the names that
// std::vector has. C++17.

#ifndef ZEM_OS_ZEMTIMERANGEVECTOR_HPP
#define ZEM_OS_ZEMTIMERANGEVECTOR_HPP

#include <chrono>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <string_view>  // std::reverse_iterator too; <iterator> costs as much as all of this
#include <type_traits>

#include "Zem/Os/ZemTimeChrono.hpp"
#include "Zem/Os/ZemTimeOperators.hpp"
#include "Zem/Utils/ZemAllocator.hpp"

namespace zem {

// ---------------------------------------------------------------------------------------------
// Ranges
// ---------------------------------------------------------------------------------------------

// The two bounds of a range by names that cannot be taken for the other: the record's `end` is the
// lower bound, its `begin` the upper one. Function objects, so that they serve as projections:
// std::ranges::sort(ranges, {}, zem::Lower).
struct LowerBoundOf {
    constexpr ZemTime operator()(const ZemTimeRange& range) const noexcept
    {
        return range.end;
    }
};

struct UpperBoundOf {
    constexpr ZemTime operator()(const ZemTimeRange& range) const noexcept
    {
        return range.begin;
    }
};

inline constexpr LowerBoundOf Lower{};
inline constexpr UpperBoundOf Upper{};

// The range of all instants from `lower` to `upper`, both included. Not valid when `upper` is the
// lesser.
constexpr ZemTimeRange MakeRange(ZemTime lower, ZemTime upper) noexcept
{
    return {upper, lower};
}

// The same between two time points of one clock, saturated as by FromChrono.
template <class Clock, class D1, class D2, detail::IfKnownClock<Clock> = 0>
constexpr ZemTimeRange MakeRange(std::chrono::time_point<Clock, D1> lower,
                                 std::chrono::time_point<Clock, D2> upper) noexcept
{
    return MakeRange(FromChrono(lower), FromChrono(upper));
}

// ---------------------------------------------------------------------------------------------
// Arrays of ranges
// ---------------------------------------------------------------------------------------------

// A growable array of ranges in one block of storage from a ZemAllocator, which must outlive it.
// The size is that of the C record. Empty ones hold no storage; iterators are pointers and hold
// until the block changes or their element moves.
//
// What std::vector asks of callers is asked here (an index below the size, iterators of this
// vector, an element for front, back and pop_back), with one exception: elements and ranges of the
// vector itself may be added to it.
//
// Functions that may need memory throw std::bad_alloc when there is none and std::length_error
// beyond max_size(), and leave the vector as it was; without exceptions they abort. Those whose
// names begin with try_ return false instead. The rest throw nothing.
class RangeVector {
  public:
    using value_type = ZemTimeRange;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = ZemTimeRange&;
    using const_reference = const ZemTimeRange&;
    using pointer = ZemTimeRange*;
    using const_pointer = const ZemTimeRange*;
    using iterator = ZemTimeRange*;
    using const_iterator = const ZemTimeRange*;
    using reverse_iterator = std::reverse_iterator<iterator>;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;

  private:
    // What a loop from `first` to `last` reads ranges from, pointers to ranges apart.
    template <class It>
    using IfIterator = std::enable_if_t<
        std::is_convertible_v<typename std::iterator_traits<It>::reference, ZemTimeRange> &&
            !std::is_convertible_v<It, const_iterator>,
        int>;

  public:
    // -----------------------------------------------------------------------------------------
    // Construction
    // -----------------------------------------------------------------------------------------

    // Empty, on the default allocator or on `a`. Allocates nothing.
    RangeVector() noexcept : RangeVector(DefaultAllocator()) {}
    explicit RangeVector(ZemAllocator* a) noexcept : v_{a, nullptr, nullptr, nullptr} {}

    // `n` copies of `range`.
    ZEM_MAY_THROW_ RangeVector(size_type n, ZemTimeRange range,
                               ZemAllocator* a = DefaultAllocator())
        : RangeVector(a)
    {
        assign(n, range);
    }

    // Copies of the ranges from `first` up to `last`.
    ZEM_MAY_THROW_ RangeVector(const_iterator first, const_iterator last,
                               ZemAllocator* a = DefaultAllocator())
        : RangeVector(a)
    {
        assign(first, last);
    }
    template <class It, IfIterator<It> = 0>
    ZEM_MAY_THROW_ RangeVector(It first, It last, ZemAllocator* a = DefaultAllocator())
        : RangeVector(a)
    {
        for (; first != last; ++first) {
            push_back(*first);
        }
    }
    ZEM_MAY_THROW_ RangeVector(std::initializer_list<ZemTimeRange> ranges,
                               ZemAllocator* a = DefaultAllocator())
        : RangeVector(ranges.begin(), ranges.end(), a)
    {}

    // A copy on the same allocator, or on `a`.
    ZEM_MAY_THROW_ RangeVector(const RangeVector& other) : RangeVector(other, other.v_.allocator) {}
    ZEM_MAY_THROW_ RangeVector(const RangeVector& other, ZemAllocator* a)
        : RangeVector(other.begin(), other.end(), a)
    {}

    // Takes block and allocator; `other` is then empty, on the same allocator.
    RangeVector(RangeVector&& other) noexcept : v_(other.v_)
    {
        other.DropStorage();
    }

    ~RangeVector()
    {
        ZemVector_ZemTimeRangeDestruct(&v_);
    }

    // -----------------------------------------------------------------------------------------
    // Assignment
    // -----------------------------------------------------------------------------------------

    // Copies the elements. Keeps its own allocator, and its block where that is large enough;
    // another one is there before the old one goes.
    ZEM_MAY_THROW_ RangeVector& operator=(const RangeVector& other)
    {
        assign(other.begin(), other.end());
        return *this;
    }
    ZEM_MAY_THROW_ RangeVector& operator=(std::initializer_list<ZemTimeRange> ranges)
    {
        assign(ranges.begin(), ranges.end());
        return *this;
    }

    // Takes block and allocator; `other` is then empty, on the same allocator.
    RangeVector& operator=(RangeVector&& other) noexcept
    {
        if (this != &other) {
            ZemVector_ZemTimeRangeDestruct(&v_);
            v_ = other.v_;
            other.DropStorage();
        }
        return *this;
    }

    // Replaces the elements, by copies of others or of its own.
    ZEM_MAY_THROW_ void assign(const_iterator first, const_iterator last)
    {
        if (!try_assign(first, last)) {
            Fail(static_cast<size_type>(last - first));
        }
    }
    template <class It, IfIterator<It> = 0>
    ZEM_MAY_THROW_ void assign(It first, It last)
    {
        *this = RangeVector(first, last, v_.allocator);
    }
    ZEM_MAY_THROW_ void assign(size_type n, ZemTimeRange range)
    {
        if (!try_assign(n, range)) {
            Fail(n);
        }
    }
    ZEM_MAY_THROW_ void assign(std::initializer_list<ZemTimeRange> ranges)
    {
        assign(ranges.begin(), ranges.end());
    }

    bool try_assign(const_iterator first, const_iterator last) noexcept
    {
        const auto n = static_cast<size_type>(last - first);
        if (n > capacity()) {
            ZemVector_ZemTimeRange made;
            if (n > max_size() ||
                ZemVector_ZemTimeRangeConstructRange(&made, first, last, v_.allocator) == nullptr) {
                return false;
            }
            ZemVector_ZemTimeRangeDestruct(&v_);
            v_ = made;
        } else if (n != 0) {
            std::memmove(v_.begin, first, n * sizeof *first);
        }
        v_.end = v_.begin + n;
        return true;
    }
    bool try_assign(size_type n, ZemTimeRange range) noexcept
    {
        if (n > capacity()) {
            ZemVector_ZemTimeRange made;
            if (n > max_size() ||
                ZemVector_ZemTimeRangeConstructN(&made, n, &range, v_.allocator) == nullptr) {
                return false;
            }
            ZemVector_ZemTimeRangeDestruct(&v_);
            v_ = made;
            return true;
        }
        clear();
        return try_insert(v_.end, n, range);
    }

    // Exchanges blocks and allocators: nothing is copied, and nothing lost.
    void swap(RangeVector& other) noexcept
    {
        ZemVector_ZemTimeRange old = v_;
        v_ = other.v_;
        other.v_ = old;
    }
    friend void swap(RangeVector& a, RangeVector& b) noexcept
    {
        a.swap(b);
    }

    // -----------------------------------------------------------------------------------------
    // Elements
    // -----------------------------------------------------------------------------------------

    iterator begin() noexcept
    {
        return v_.begin;
    }
    const_iterator begin() const noexcept
    {
        return v_.begin;
    }
    const_iterator cbegin() const noexcept
    {
        return v_.begin;
    }
    iterator end() noexcept
    {
        return v_.end;
    }
    const_iterator end() const noexcept
    {
        return v_.end;
    }
    const_iterator cend() const noexcept
    {
        return v_.end;
    }
    reverse_iterator rbegin() noexcept
    {
        return reverse_iterator(v_.end);
    }
    const_reverse_iterator rbegin() const noexcept
    {
        return const_reverse_iterator(v_.end);
    }
    const_reverse_iterator crbegin() const noexcept
    {
        return rbegin();
    }
    reverse_iterator rend() noexcept
    {
        return reverse_iterator(v_.begin);
    }
    const_reverse_iterator rend() const noexcept
    {
        return const_reverse_iterator(v_.begin);
    }
    const_reverse_iterator crend() const noexcept
    {
        return rend();
    }

    // The first of size() elements in a row; null without storage.
    pointer data() noexcept
    {
        return v_.begin;
    }
    const_pointer data() const noexcept
    {
        return v_.begin;
    }

    reference operator[](size_type i) noexcept
    {
        return v_.begin[i];
    }
    const_reference operator[](size_type i) const noexcept
    {
        return v_.begin[i];
    }

    // Throws std::out_of_range when there is no element `i`; without exceptions it aborts.
    ZEM_MAY_THROW_ reference at(size_type i)
    {
        if (i >= size()) {
            detail::OutOfRange();
        }
        return v_.begin[i];
    }
    ZEM_MAY_THROW_ const_reference at(size_type i) const
    {
        if (i >= size()) {
            detail::OutOfRange();
        }
        return v_.begin[i];
    }

    reference front() noexcept
    {
        return *v_.begin;
    }
    const_reference front() const noexcept
    {
        return *v_.begin;
    }
    reference back() noexcept
    {
        return v_.end[-1];
    }
    const_reference back() const noexcept
    {
        return v_.end[-1];
    }

    // -----------------------------------------------------------------------------------------
    // Sizes
    // -----------------------------------------------------------------------------------------

    bool empty() const noexcept
    {
        return v_.begin == v_.end;
    }
    size_type size() const noexcept
    {
        return static_cast<size_type>(v_.end - v_.begin);
    }
    size_type capacity() const noexcept
    {
        return static_cast<size_type>(v_.endBuf - v_.begin);
    }

    // The largest size there may be: 4 GiB of ranges.
    static constexpr size_type max_size() noexcept
    {
        return 268435455;
    }

    // Makes the capacity `n` where it is less.
    ZEM_MAY_THROW_ void reserve(size_type n)
    {
        if (!try_reserve(n)) {
            Fail(n);
        }
    }
    bool try_reserve(size_type n) noexcept
    {
        return n <= max_size() && ZemVector_ZemTimeRangeReserve(&v_, n) != 0;
    }

    // Makes the size `n`, by dropping elements at the end or adding copies of `range` there.
    ZEM_MAY_THROW_ void resize(size_type n, ZemTimeRange range = {})
    {
        if (!try_resize(n, range)) {
            Fail(n);
        }
    }
    bool try_resize(size_type n, ZemTimeRange range = {}) noexcept
    {
        if (n > size()) {
            return try_insert(v_.end, n - size(), range);
        }
        v_.end = v_.begin + n;
        return true;
    }

    // Gives up slots that hold no element; all stays as it is when there is no memory for that.
    void shrink_to_fit() noexcept
    {
        RangeVector fitting(v_.allocator);
        if (size() != capacity() && fitting.try_assign(begin(), end())) {
            swap(fitting);
        }
    }

    // -----------------------------------------------------------------------------------------
    // Changes
    // -----------------------------------------------------------------------------------------

    // Ranges are added by value, which they may have been in the vector itself. The vector grows to
    // twice its size, so that adding one takes constant time on average.

    ZEM_MAY_THROW_ void push_back(ZemTimeRange range)
    {
        if (!try_push_back(range)) {
            FailToAdd(1);
        }
    }
    bool try_push_back(ZemTimeRange range) noexcept
    {
        if (v_.end == v_.endBuf && !MakeRoom(1)) {
            return false;
        }
        // Bound by bound: as a whole, g++ would store it and read it again.
        v_.end->begin = range.begin;
        v_.end->end = range.end;
        ++v_.end;
        return true;
    }

    void pop_back() noexcept
    {
        --v_.end;
    }

    void clear() noexcept
    {
        v_.end = v_.begin;
    }

    // Inserts before `position` and returns where the first inserted element is, or would be. The
    // try_ twins leave that for the caller to count: the block may have changed.
    ZEM_MAY_THROW_ iterator insert(const_iterator position, ZemTimeRange range)
    {
        return insert(position, 1, range);
    }
    ZEM_MAY_THROW_ iterator insert(const_iterator position, size_type n, ZemTimeRange range)
    {
        const difference_type i = position - v_.begin;
        if (!try_insert(position, n, range)) {
            FailToAdd(n);
        }
        return v_.begin + i;
    }
    ZEM_MAY_THROW_ iterator insert(const_iterator position, const_iterator first,
                                   const_iterator last)
    {
        const difference_type i = position - v_.begin;
        if (!try_insert(position, first, last)) {
            FailToAdd(static_cast<size_type>(last - first));
        }
        return v_.begin + i;
    }
    template <class It, IfIterator<It> = 0>
    ZEM_MAY_THROW_ iterator insert(const_iterator position, It first, It last)
    {
        const RangeVector added(first, last, v_.allocator);
        return insert(position, added.begin(), added.end());
    }
    ZEM_MAY_THROW_ iterator insert(const_iterator position,
                                   std::initializer_list<ZemTimeRange> ranges)
    {
        return insert(position, ranges.begin(), ranges.end());
    }

    bool try_insert(const_iterator position, ZemTimeRange range) noexcept
    {
        return try_insert(position, 1, range);
    }
    bool try_insert(const_iterator position, size_type n, ZemTimeRange range) noexcept
    {
        const difference_type i = position - v_.begin;
        return MakeRoom(n) && ZemVector_ZemTimeRangeInsertN(&v_, v_.begin + i, n, &range) != 0;
    }
    bool try_insert(const_iterator position, const_iterator first, const_iterator last) noexcept
    {
        const auto n = static_cast<size_type>(last - first);
        const auto i = static_cast<size_type>(position - v_.begin);
        // As integers, since they may point into two arrays.
        const auto offset =
            reinterpret_cast<std::uintptr_t>(first) - reinterpret_cast<std::uintptr_t>(v_.begin);
        if (offset >= size() * sizeof(ZemTimeRange)) {
            const bool ok = MakeRoom(n);
            return ok && ZemVector_ZemTimeRangeInsertRange(&v_, v_.begin + i, first, last) != 0;
        }
        // Its own elements: make room, and find those behind the position moved on by it.
        const size_type from = offset / sizeof(ZemTimeRange);
        if (!try_insert(position, n, ZemTimeRange{})) {
            return false;
        }
        for (size_type k = 0; k < n; ++k) {
            v_.begin[i + k] = v_.begin[from + k < i ? from + k : from + k + n];
        }
        return true;
    }

    // Appends what a loop over `ranges` gives.
    template <class Ranges>
    ZEM_MAY_THROW_ void append_range(const Ranges& ranges)
    {
        RangeVector added(v_.allocator);
        for (const ZemTimeRange& range : ranges) {
            added.push_back(range);
        }
        insert(end(), added.begin(), added.end());
    }

    // Removes elements and returns where those that followed are.
    iterator erase(const_iterator position) noexcept
    {
        return ZemVector_ZemTimeRangeErase(&v_, const_cast<iterator>(position));
    }
    iterator erase(const_iterator first, const_iterator last) noexcept
    {
        return ZemVector_ZemTimeRangeEraseRange(&v_, const_cast<iterator>(first),
                                                const_cast<iterator>(last));
    }

    // Removes the elements of which `predicate` says true, and returns their number.
    template <class Predicate>
    friend size_type erase_if(RangeVector& ranges, Predicate predicate)
    {
        iterator kept = ranges.begin();
        for (const ZemTimeRange& range : ranges) {
            if (!predicate(range)) {
                *kept++ = range;
            }
        }
        const auto removed = static_cast<size_type>(ranges.end() - kept);
        ranges.erase(kept, ranges.end());
        return removed;
    }

    // -----------------------------------------------------------------------------------------
    // The rest
    // -----------------------------------------------------------------------------------------

    friend bool operator==(const RangeVector& a, const RangeVector& b) noexcept
    {
        return ZemVector_ZemTimeRangeEqual(&a.v_, &b.v_) != 0;
    }
    friend bool operator!=(const RangeVector& a, const RangeVector& b) noexcept
    {
        return !(a == b);
    }

    ZemAllocator* allocator() const noexcept
    {
        return v_.allocator;
    }

    // The C vector itself, for the functions of ZemTime.h, which may change it. It stays this
    // object's, and has to be a vector again afterwards.
    ZemVector_ZemTimeRange* handle() noexcept
    {
        return &v_;
    }
    const ZemVector_ZemTimeRange* handle() const noexcept
    {
        return &v_;
    }

  private:
    void DropStorage() noexcept
    {
        v_.begin = nullptr;
        v_.end = nullptr;
        v_.endBuf = nullptr;
    }

    // Says whether `n` more may be added, and keeps the C functions from doubling beyond the
    // maximum. Otherwise growing is left to them, but for one element.
    [[gnu::noinline]] bool MakeRoom(size_type n) noexcept
    {
        if (n > max_size() || size() > max_size() - n) {
            return false;
        }
        if (n <= static_cast<size_type>(v_.endBuf - v_.end)) {
            return true;
        }
        if (2 * (v_.begin != nullptr ? capacity() : n) > max_size()) {
            return try_reserve(max_size());
        }
        return n != 1 || ZemVector_ZemTimeRangeGrow_(&v_) != 0;
    }

    [[noreturn, gnu::cold, gnu::noinline]] ZEM_MAY_THROW_ static void Fail(size_type n)
    {
        if (n > max_size()) {
            detail::TooLarge();
        }
        detail::OutOfMemory();
    }

    [[noreturn, gnu::cold, gnu::noinline]] ZEM_MAY_THROW_ void FailToAdd(size_type n) const
    {
        Fail(n > max_size() ? n : size() + n);
    }

    ZemVector_ZemTimeRange v_;
};

static_assert(sizeof(RangeVector) == sizeof(ZemVector_ZemTimeRange));
static_assert(std::is_nothrow_default_constructible_v<RangeVector>);
static_assert(std::is_nothrow_move_constructible_v<RangeVector>);
static_assert(std::is_nothrow_move_assignable_v<RangeVector>);
static_assert(std::is_nothrow_swappable_v<RangeVector>);

}  // namespace zem

#endif
