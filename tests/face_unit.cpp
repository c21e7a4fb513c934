// One source of a program that is made of several: compiled as C++17, 20 and 23, with exceptions
// and without, and linked in both orders. UNIT names its function, NUMBER is what it appends.

#include "tests/face_unit.hpp"

#include <string>
#include <unordered_set>
#include <vector>

#include "Zem/Os/ZemTimeMemory.hpp"
#if __cplusplus >= 202002L
#include <concepts>
#include <iterator>
#endif
#if defined(__cpp_lib_ranges)
#include <algorithm>
#include <ranges>
#include <span>
#endif

using namespace std::chrono_literals;

#if defined(OWN_OPERATORS)
// A program's own operators win, without a word.
static int ownCalls;
static bool operator==(const ZemTimeRange& a, const ZemTimeRange& b)
{
    ++ownCalls;
    return a.begin == b.begin && a.end == b.end;
}
static bool operator<(const ZemGregorianTime& /*a*/, const ZemGregorianTime& /*b*/)
{
    return ++ownCalls != 0;
}
#endif

namespace {

// ---------------------------------------------------------------------------------------------
// What must hold before anything runs
// ---------------------------------------------------------------------------------------------

using zem::FromChrono;
using zem::TryFromChrono;
template <class Rep, class Period>
using D = std::chrono::duration<Rep, Period>;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

static_assert(zem::ToInstant(INT64_MAX) == zem::Instant::max());
static_assert(FromChrono(zem::ToMonotonic(INT64_MIN)) == INT64_MIN);
static_assert(FromChrono(zem::ToDuration(-7)) == -7 && FromChrono(zem::ToSystem(999)) <= 999);
static_assert(FromChrono(9223372036s) == 9223372036000000000 && FromChrono(-1h) == -3600000000000);
static_assert(FromChrono(9223372037s) == INT64_MAX && FromChrono(-9223372037s) == INT64_MIN);
static_assert(FromChrono(std::chrono::hours::max()) == INT64_MAX && !TryFromChrono(10000000h));
static_assert(FromChrono(D<int, std::exa>(-1)) == INT64_MIN &&
              FromChrono(D<int, std::exa>(0)) == 0);
static_assert(FromChrono(D<int, std::pico>(-1)) == -1 && FromChrono(D<int, std::pico>(999)) == 0);
static_assert(FromChrono(D<unsigned long, std::nano>(1UL << 63)) == INT64_MAX);
static_assert(FromChrono(D<unsigned, std::atto>(4294967295)) == 4);
static_assert(FromChrono(D<long, std::ratio<1, 3>>(-1)) == -333333334);
static_assert(FromChrono(D<double, std::ratio<1>>(0.3)) == 300000000);
static_assert(FromChrono(D<float, std::milli>(-0.5f)) == -500000);
static_assert(FromChrono(D<double, std::ratio<1>>(kNan)) == ZEM_TIME_INFINITE);
static_assert(!TryFromChrono(D<double, std::ratio<1>>(kNan)));
static_assert(FromChrono(D<double, std::exa>(1e300)) == INT64_MAX);
static_assert(FromChrono(D<double, std::ratio<1>>(-kInfinity)) == INT64_MIN);
static_assert(zem::ToDeadline(INT64_MIN).time_since_epoch() == 0ns);

// Time points of other clocks and counts that are no built-in numbers are not taken.
template <class T, class = void>
constexpr bool kConverts = false;
template <class T>
constexpr bool kConverts<T, std::void_t<decltype(FromChrono(std::declval<T>()))>> = true;
struct Number {};
static_assert(kConverts<std::chrono::system_clock::time_point> && kConverts<zem::Instant>);
static_assert(!kConverts<std::chrono::steady_clock::time_point> && !kConverts<ZemTime>);
static_assert(!kConverts<D<Number, std::milli>>);

static_assert(sizeof(zem::RangeVector) == 32 && sizeof(zem::RangeSet) == 32);
static_assert(sizeof(zem::Zone) == 24 && sizeof(zem::Text<42>) == 44);
static_assert(std::is_trivially_copyable_v<zem::Text<42>>);
static_assert(!std::is_copy_constructible_v<zem::Zone>);
static_assert(std::is_nothrow_swappable_v<zem::RangeSet>);

constexpr ZemTimeRange kRange = zem::MakeRange(1, 5);
static_assert(zem::Lower(kRange) == 1 && zem::Upper(kRange) == 5 && kRange.end == 1);
static_assert(zem::MakeRange(zem::Instant(1ns), zem::Instant(5ns)).begin == 5);
constexpr zem::Text<3> kText("abcd");
static_assert(kText == "abc" && "abc" == kText && kText < "b" && kText == zem::Text<9>("abc"));
static_assert(kText.size() == 3 && kText.c_str()[3] == '\0' && kText >= std::string_view("ab"));
#if !defined(OWN_OPERATORS)
static_assert(kRange == kRange && kRange < zem::MakeRange(1, 6) && kRange >= kRange);
#endif

#if defined(__cpp_lib_three_way_comparison)
static_assert((kText <=> zem::Text<9>("abd")) < 0 && (kText <=> "abc") == 0);
#if !defined(OWN_OPERATORS)
static_assert(std::is_same_v<std::compare_three_way_result_t<ZemTimeRange>, std::strong_ordering>);
static_assert(
    std::is_same_v<std::compare_three_way_result_t<ZemGregorianTime>, std::weak_ordering>);
static_assert((kRange <=> zem::MakeRange(0, 9)) > 0);
#endif
#endif
#if defined(__cpp_lib_concepts) && __cplusplus >= 202002L
static_assert(std::totally_ordered<zem::Text<3>> && std::regular<zem::RangeVector>);
static_assert(std::contiguous_iterator<zem::RangeVector::iterator>);
#endif
#if defined(__cpp_lib_ranges)
static_assert(std::ranges::contiguous_range<zem::RangeVector>);
static_assert(std::ranges::sized_range<const zem::RangeSet>);
static_assert(std::ranges::common_range<zem::RangeSet> && !std::ranges::range<zem::Text<3>>);
#endif
#if defined(__cpp_lib_chrono) && defined(__cpp_lib_concepts) && defined(__GLIBCXX__) && \
    __cplusplus >= 202002L
static_assert(std::chrono::is_clock_v<zem::MonotonicClock>);
#endif

// ---------------------------------------------------------------------------------------------
// What is left to run
// ---------------------------------------------------------------------------------------------

void CheckTexts()
{
    std::string_view line = "2024-03-01T12:30:45.250+01:00 started";
    const auto t = zem::ReadInstant(line);
    CHECK(t && line == " started" && !zem::ReadInstant(line) && line == " started");
    CHECK(zem::Print(*t) == "2024-03-01T11:30:45.250000000Z");
    CHECK(zem::Print(*t, 3, 1h) == "2024-03-01T12:30:45.250+01:00");
    CHECK(zem::Print(90min) == "1h30m" && zem::Compact(90min) == std::string("1 h 30 m"));
    CHECK(zem::ParseDuration(zem::Print(-1500us)) == -1500us);
    CHECK(std::hash<zem::Text<25>>()(zem::Print(1s)) == std::hash<std::string_view>()("1s"));
    CHECK(zem::Text<4>::Printed([](char* buffer, std::size_t size) {
              return std::snprintf(buffer, size, "%d", 123456);
          }) == "1234");
}

#if defined(__cpp_lib_format)
void CheckFormatting()
{
    CHECK(std::format("{:>6}|{}", zem::Print(90s), zem::Compact(1500us)) == " 1m30s|1.50 ms");
}
#else
void CheckFormatting() {}
#endif

void CheckRecords()
{
    const ZemGregorianTime gt = zem::ToRecord(zem::Instant(-1ns));
    CHECK(zem::TryToInstant(gt) == zem::Instant(-1ns));
    CHECK(zem::Print(gt) == "1969-12-31T23:59:59.999999999Z");
    ZemGregorianTime later = gt;
    later.tm.tm_sec = 60;
#if defined(OWN_OPERATORS)
    ownCalls = 0;
    CHECK(kRange == kRange && later < gt && ownCalls == 2);
#else
    CHECK(gt == gt && gt != later && gt < later && later >= gt);
    std::unordered_set<ZemTimeRange> set = {kRange, zem::MakeRange(5, 1), kRange};
    CHECK(set.size() == 2 &&
          std::hash<ZemGregorianTime>()(gt) != std::hash<ZemGregorianTime>()(later));
#endif
}

void CheckMemory()
{
    ZemAllocator a;
    std::vector<int, zem::Allocator<int>> numbers({1, 2, 3}, ZemAllocatorConstructMalloc(&a, 4096));
    CHECK(numbers.get_allocator() == zem::Allocator<char>(&a));
    struct alignas(64) Wide {
        char bytes[64];
    };
    std::vector<Wide, zem::Allocator<Wide>> wide(3, &a);
    CHECK(reinterpret_cast<std::uintptr_t>(wide.data()) % 64 == 0);
#if __has_include(<memory_resource>)
    zem::MemoryResource resource(&a);
    zem::ResourceAllocator again(&resource);
    zem::RangeVector ranges({kRange, kRange}, again.handle());
    CHECK(ranges.size() == 2 && ranges.try_reserve(100));
#if ZEM_UNIT_THROWS
    CHECK(!ranges.try_reserve(1000));
#endif
#endif
}

#if ZEM_UNIT_THROWS
template <class Exception, class Call>
bool Throws(Call call)
{
    try {
        call();
        return false;
    } catch (const Exception&) {
        return true;
    }
}
#endif

void CheckErrors()
{
    const std::size_t most = zem::RangeVector::max_size();
    zem::RangeVector ranges(&empty);
    CHECK(!ranges.try_push_back(kRange) && !ranges.try_resize(most + 1) && ranges.empty());
#if ZEM_UNIT_THROWS
    zem::RangeSet set(&empty);
    CHECK(Throws<std::bad_alloc>([&] { ranges.push_back(kRange); }));
    CHECK(Throws<std::bad_alloc>([&] { ranges.insert(ranges.end(), 2, kRange); }));
    CHECK(Throws<std::bad_alloc>([&] { set |= zem::RangeSet{kRange}; }));
    CHECK(Throws<std::bad_alloc>([&] { (void)set.gaps(kRange); }));
    CHECK(Throws<std::bad_alloc>([&] { (void)zem::Allocator<int>(&empty).allocate(1); }));
    CHECK(Throws<std::length_error>([&] { ranges.reserve(most + 1); }));
    CHECK(Throws<std::length_error>([&] { ranges.resize(SIZE_MAX, kRange); }));
    CHECK(Throws<std::length_error>([&] { ranges.insert(ranges.end(), most + 1, kRange); }));
    CHECK(Throws<std::out_of_range>([&] { (void)ranges.at(0); }));
#endif
}

}  // namespace

void UNIT(zem::RangeVector& ranges, zem::RangeSet& set)
{
    CheckTexts();
    CheckFormatting();
    CheckRecords();
    CheckMemory();
    CheckErrors();
    ranges.push_back(zem::MakeRange(NUMBER, NUMBER));
    set.add(zem::MakeRange(NUMBER, NUMBER));
#if defined(__cpp_lib_ranges)
    const std::span<const ZemTimeRange> view(ranges);
    CHECK(std::ranges::is_sorted(view, {}, zem::Lower) && set.size() == 1);
#endif
}
