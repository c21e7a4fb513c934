// The C++ headers against C's functions and exact arithmetic. What holds at compile time, errors
// and waiting are in the mixed program (face_unit.cpp, face_main.cpp); the container's operations
// are in test_vector.cpp.

#if defined(FMT_HEADER_ONLY)  // by CMake, which knows where it is
#include <fmt/format.h>
#endif

#include <iomanip>
#include <list>
#include <map>
#include <set>

#include "Zem/Os/ZemTime.hpp"
#include "Zem/Os/ZemTimeMemory.hpp"
#include "tests/support.hpp"

using namespace std::chrono_literals;
using zem::Lower;
using zem::MakeRange;
using zem::RangeSet;
using zem::RangeVector;

namespace {

// floor(count * num / den), within the bounds of a ZemTime.
template <class Rep, class Period>
void ExpectConverted(Rep count)
{
    // The whole seconds first: the product would not fit.
    const Int128 whole = Int128{count} * Period::num / Period::den;
    const Int128 rest = Int128{count} * Period::num % Period::den * 1000000000;
    Int128 exact = whole * 1000000000 + rest / Period::den - (rest % Period::den < 0 ? 1 : 0);
    const bool fits = exact >= INT64_MIN && exact <= INT64_MAX;
    exact = std::clamp<Int128>(exact, INT64_MIN, INT64_MAX);
    const std::chrono::duration<Rep, Period> d(count);
    ASSERT_EQ(zem::FromChrono(d), static_cast<ZemTime>(exact)) << +count << '/' << Period::den;
    ASSERT_EQ(zem::TryFromChrono(d).has_value(), fits) << +count << '/' << Period::den;
}

template <class Rep>
void ExpectConvertedFrom(ZemInt64 any)
{
    const auto count = static_cast<Rep>(any);
    ExpectConverted<Rep, std::pico>(count);
    ExpectConverted<Rep, std::nano>(count);
    ExpectConverted<Rep, std::micro>(count);
    ExpectConverted<Rep, std::ratio<1>>(count);
    ExpectConverted<Rep, std::ratio<604800>>(count);
    ExpectConverted<Rep, std::ratio<1, 90000>>(count);
    ExpectConverted<Rep, std::ratio<1001, 30000>>(count);
    ExpectConverted<Rep, std::ratio<1, 3>>(count);
}

}  // namespace

TEST(FaceChrono, IntegersAreConvertedExactly)
{
    for (int i = 0; i < 100000; ++i) {
        const ZemInt64 any = AnyInt64();
        ExpectConvertedFrom<std::int64_t>(any);
        ExpectConvertedFrom<std::uint64_t>(any);
        ExpectConvertedFrom<std::int32_t>(any);
        ExpectConvertedFrom<std::uint8_t>(any);
    }
}

TEST(FaceChrono, FloatingNumbersAreRounded)
{
    for (int i = 0; i < 100000; ++i) {
        const auto nanosecs = static_cast<double>(AnyInt64());
        const long double seconds = static_cast<long double>(nanosecs) / 1e9L;
        const ZemTime exact = nanosecs >= 0x1p63 ? INT64_MAX : static_cast<ZemTime>(nanosecs);
        ASSERT_EQ(zem::FromChrono(std::chrono::duration<double, std::nano>(nanosecs)), exact);
        const std::chrono::duration<long double> wide(seconds);
        // 64 bits of a mantissa leave a nanosecond's doubt at the far end.
        ASSERT_LE(std::abs(zem::FromChrono(wide) - exact), 1) << nanosecs;
        ASSERT_EQ(zem::FromChrono(std::chrono::duration<double>(static_cast<float>(i) / 2)),
                  i * 500000000LL);
    }
    using Nanosecs = std::chrono::duration<long double, std::nano>;
    EXPECT_EQ(zem::FromChrono(Nanosecs(0x1p63L - 0.5L)), INT64_MAX);
    EXPECT_EQ(zem::TryFromChrono(Nanosecs(0x1p63L - 0.5L)), std::nullopt);
    EXPECT_EQ(zem::TryFromChrono(Nanosecs(-0x1p63L)), INT64_MIN);
    EXPECT_EQ(zem::FromChrono(Nanosecs(-1.5L)), -2);
}

TEST(FaceRecords, ConvertAsCDoes)
{
    for (int i = 0; i < 100000; ++i) {
        const ZemTime t = i == 0 ? -1 : AnyInt64();
        ZemGregorianTime gt = zem::ToRecord(zem::ToInstant(t));
        const auto back = zem::TryToInstant(gt);
        ASSERT_EQ(back.has_value(), t != ZEM_TIME_INFINITE) << t;
        ASSERT_TRUE(!back || *back == zem::ToInstant(t)) << t;
        gt.nanosecs += Between(-5000000000, 5000000000);
        gt.tm.tm_sec += static_cast<int>(Between(-9, 9));
        const ZemTime c = ZemGregorianTimeGetTime(&gt);
        ASSERT_TRUE(c == ZEM_TIME_INFINITE || zem::TryToInstant(gt) == zem::ToInstant(c)) << t;
        ZemGregorianTime other = gt;
        other.tm.tm_min += i % 3 - 1;
        ASSERT_EQ(gt == other, ZemGregorianTimeEqual(&gt, &other) != 0);
        ASSERT_EQ(gt < other, ZemGregorianTimeLess(&gt, &other) != 0);
        ASSERT_EQ((gt <=> other) == 0, gt == other);
        ASSERT_EQ((gt <=> other) > 0, other < gt);
        ASSERT_EQ(std::hash<ZemGregorianTime>()(gt) == std::hash<ZemGregorianTime>()(other),
                  gt == other);
    }
}

// Ranges whose bounds are small or differ in one bit are the ones that programs have.
TEST(FaceRecords, HashesOfNeighboursDiffer)
{
    std::set<std::size_t> hashes;
    for (ZemTime lower = -100; lower < 100; ++lower)
        for (ZemTime upper = -100; upper < 100; ++upper)
            hashes.insert(std::hash<ZemTimeRange>()(MakeRange(lower * 1000000000, upper)));
    EXPECT_EQ(hashes.size(), 40000);
}

// The longest texts there are fit, and every other is that of C.
TEST(FaceText, PrintsWhatCDoes)
{
    const int extremes[] = {INT_MIN, -1, 0, 1, INT_MAX};
    for (int i = 0; i < 100000; ++i) {
        ZemGregorianTime gt = zem::ToRecord(zem::Instant());
        for (int* field : {&gt.tm.tm_year, &gt.tm.tm_mon, &gt.tm.tm_mday, &gt.tm.tm_hour,
                           &gt.tm.tm_min, &gt.tm.tm_sec})
            *field = extremes[Between(0, 4)];
        gt.nanosecs = Between(-999999999, 999999999);
        gt.tm.tm_gmtoff = extremes[Between(0, 4)];
        char whole[200];
        const ZemSizeT size = ZemGregorianTimePrint(&gt, 9, whole, sizeof whole);
        ASSERT_EQ(zem::Print(gt), std::string_view(whole, size));
        const ZemTime t = AnyInt64();
        const int digits = static_cast<int>(Between(-1, 10));
        ZemTimePrint(t, gt.tm.tm_gmtoff == INT_MIN ? -INT_MAX : static_cast<int>(gt.tm.tm_gmtoff),
                     digits, whole, sizeof whole);
        ASSERT_EQ(zem::Print(zem::ToInstant(t), digits, std::chrono::seconds(gt.tm.tm_gmtoff)),
                  std::string_view(whole));
        ASSERT_EQ(zem::Compact(zem::ToDuration(t)),
                  std::string(ZemTimePrintCompact(t, whole, sizeof whole)));
        ASSERT_EQ(zem::ParseDuration(zem::Print(zem::ToDuration(t))), zem::ToDuration(t));
        ASSERT_TRUE(t == INT64_MAX ||
                    zem::ParseInstant(zem::Print(zem::ToInstant(t))) == zem::ToInstant(t));
    }
    EXPECT_EQ(zem::Print(std::chrono::sys_days(std::chrono::year(9999) / 1 / 1)),
              "2262-04-11T23:47:16.854775807Z");
    EXPECT_EQ(zem::Print(zem::Instant(), 0, std::chrono::seconds::max()),
              "2038-01-19T03:14:07+596523:14:07");
}

TEST(FaceText, ReadsAllOrTheBeginning)
{
    EXPECT_FALSE(zem::ParseInstant({}) || zem::ParseInstant("2024-03-01T12:30:45Z "));
    EXPECT_FALSE(zem::ParseInstant("2263-01-01T00:00:00Z"));
    EXPECT_EQ(zem::ParseInstant("1969-12-31T23:59:59Z"), zem::Instant(-1s));
    EXPECT_EQ(zem::ParseRecord("2263-01-01 00:00:00+01")->tm.tm_gmtoff, 3600);
    EXPECT_FALSE(zem::ParseLocalRecord("2024-03-01 12:30:45Z"));
    EXPECT_EQ(zem::ParseDuration("300000y"), std::nullopt);
    EXPECT_EQ(zem::ParseDuration("300000w"), std::chrono::nanoseconds::max());
    std::string_view text = "2024-03-01 12:30:45 2024-03-01 12:30:45Z 1.5s, 2 m.";
    EXPECT_EQ(zem::Print(*zem::ReadLocalRecord(text), 0), "2024-03-01T12:30:45Z");
    text.remove_prefix(1);
    EXPECT_EQ(zem::Print(*zem::ReadRecord(text), 0), "2024-03-01T12:30:45Z");
    text.remove_prefix(1);
    EXPECT_EQ(zem::ReadDuration(text), 1500ms);
    EXPECT_EQ(zem::ReadDuration(text), std::nullopt);
    EXPECT_EQ(text, ", 2 m.");
    text = "9999-01-01T00:00:00Z";
    EXPECT_FALSE(zem::ReadInstant(text));
    EXPECT_EQ(text.size(), 20);
}

TEST(FaceText, StreamsAndFormats)
{
    const auto text = zem::Print(90s);
    std::ostringstream stream;
    stream << std::setw(8) << std::setfill('.') << text << text;
    EXPECT_EQ(stream.str(), "...1m30s1m30s");
#if defined(FMT_HEADER_ONLY)
    EXPECT_EQ(fmt::format("{:>6}|{}", text, zem::Compact(1500us)), " 1m30s|1.50 ms");
#endif
    EXPECT_EQ(format_as(text), "1m30s");
}

// What the C vector leaves to its callers: own elements, other containers, sizes.
TEST(FaceVector, AddsItsOwnElements)
{
    for (int size = 1; size < 6; ++size)
        for (int spare : {0, 1, 20})
            for (int from = 0; from <= size; ++from)
                for (int to = from; to <= size; ++to)
                    for (int at = 0; at <= size; ++at) {
                        std::vector<ZemTimeRange> model;
                        for (int i = 0; i < size; ++i)
                            model.push_back(MakeRange(i, 9));
                        RangeVector v(model.begin(), model.end());
                        v.shrink_to_fit();
                        v.reserve(static_cast<std::size_t>(size + spare));
                        const auto copy = model;
                        model.insert(model.begin() + at, copy.begin() + from, copy.begin() + to);
                        auto it = v.insert(v.begin() + at, v.begin() + from, v.begin() + to);
                        ASSERT_EQ(it - v.begin(), at);
                        ASSERT_TRUE(std::ranges::equal(v, model));
                        v.push_back(v.front());
                        v.assign(v.begin() + from, v.end());
                        model.push_back(model.front());
                        model.erase(model.begin(), model.begin() + from);
                        ASSERT_TRUE(std::ranges::equal(v, model));
                    }
}

TEST(FaceVector, TakesOtherContainers)
{
    const std::list<ZemTimeRange> list = {MakeRange(3, 4), MakeRange(1, 2), MakeRange(5, 5)};
    RangeVector v(list.begin(), list.end());
    v.insert(v.begin() + 1, list.begin(), list.end());
    v.append_range(v);
    EXPECT_EQ(v.size(), 12);
    std::ranges::sort(v, {}, Lower);
    EXPECT_EQ(erase_if(v, [](const ZemTimeRange& r) { return Lower(r) == 3; }), 4);
    v.assign(list.begin(), list.end());
    EXPECT_EQ(v, (RangeVector{MakeRange(3, 4), MakeRange(1, 2), MakeRange(5, 5)}));
    v.assign(2, v.back());
    EXPECT_EQ(v, RangeVector(2, MakeRange(5, 5)));
    v.shrink_to_fit();
    EXPECT_EQ(v.capacity(), 2);
    const RangeVector moved = std::move(v);
    v = {MakeRange(1, 1)};
    EXPECT_EQ(v.size() + moved.size(), 3);
}

// Beyond the maximum nothing is asked for, and doubling stops there.
TEST(FaceVector, StopsAtTheMaximum)
{
    static ZemSizeT asked;
    asked = 0;
    ZemAllocator a = {
        [](ZemAllocator*, ZemSizeT size) -> ZemVoidPtr { return asked = size, nullptr; }, nullptr,
        0, nullptr};
    const ZemSizeT most = RangeVector::max_size();
    RangeVector v(&a);
    EXPECT_FALSE(v.try_reserve(most + 1) || v.try_resize(most + 1) ||
                 v.try_assign(SIZE_MAX, ZemTimeRange{}) ||
                 v.try_insert(v.end(), SIZE_MAX, ZemTimeRange{}));
    EXPECT_EQ(asked, 0);
    EXPECT_FALSE(v.try_insert(v.end(), most / 2 + 1, ZemTimeRange{}));
    EXPECT_EQ(asked, most * sizeof(ZemTimeRange));
    EXPECT_FALSE(v.try_insert(v.end(), most / 2, ZemTimeRange{}));
    EXPECT_EQ(asked, most / 2 * 2 * sizeof(ZemTimeRange));
}

TEST(FaceSet, IsAlwaysNormal)
{
    for (int i = 0; i < 20000; ++i) {
        RangeSet sets[2];
        std::set<ZemTime> models[2];
        for (int k = 0; k < 2; ++k) {
            RangeVector ranges;
            for (ZemInt64 n = Between(0, 6); n > 0; --n) {
                ranges.push_back(MakeRange(Between(0, 30), Between(0, 30)));
                for (ZemTime t = Lower(ranges.back()); t <= zem::Upper(ranges.back()); ++t)
                    models[k].insert(t);
            }
            sets[k] = RangeSet(std::move(ranges));
        }
        const auto& [a, b] = sets;
        const auto& [p, q] = models;
        const RangeSet results[] = {a | b, a & b, a - b, a ^ b, a.gaps(MakeRange(0, 30))};
        RangeSet in_place[] = {a, a, a, a, a};
        in_place[0] |= b;
        in_place[1] &= b;
        in_place[2] -= b;
        in_place[3] ^= b;
        ASSERT_TRUE(a.try_gaps(MakeRange(0, 30), in_place[4]));
        for (ZemTime t = 0; t <= 30; ++t) {
            const bool x = p.count(t) != 0;
            const bool y = q.count(t) != 0;
            const bool expected[] = {x || y, x && y, x && !y, x != y, !x};
            for (int k = 0; k < 5; ++k)
                ASSERT_EQ(results[k].contains(t), expected[k]) << k;
            ASSERT_EQ(a.find(zem::ToInstant(t)) != a.end(), x);
            ASSERT_TRUE(a.lower_bound(t) == a.end() || zem::Upper(*a.lower_bound(t)) >= t);
            RangeSet with = a;
            with.add(MakeRange(t, t));
            RangeSet without = a;
            without.remove(MakeRange(t, t));
            ASSERT_EQ(with == a, x);
            ASSERT_EQ(without == a, !x);
            ASSERT_TRUE(with.contains(without) && with.contains(MakeRange(t, t)));
        }
        for (int k = 0; k < 5; ++k) {
            ASSERT_EQ(results[k], in_place[k]);
            ASSERT_NE(ZemTimeRangeSetIsNormal(results[k].handle()), 0);
        }
        ASSERT_EQ(a.intersects(b), !(a & b).empty());
        ASSERT_EQ(a.length() + a.size(), p.size());
        const ZemTimeRange range = MakeRange(Between(0, 30), Between(0, 30));
        ASSERT_EQ(a.contains(range),
                  RangeSet{range}.gaps(range).empty() && (RangeSet{range} - a).empty());
    }
    RangeSet joined = {MakeRange(0, 1), MakeRange(6, 7)};
    joined.join(5ns);
    EXPECT_EQ(joined, RangeSet{MakeRange(0, 7)});
}

TEST(FaceZone, IsThatOfC)
{
    auto zone = zem::Zone::from_rule("CET-1CEST,M3.5.0,M10.5.0/3");
    ASSERT_TRUE(zone);
    const auto t = *zem::ParseInstant("2024-03-31T00:59:59Z");
    EXPECT_EQ(zem::Print(t, *zone, 0), "2024-03-31T01:59:59+01:00");
    EXPECT_EQ(zone->next_transition(t), t + 1s);
    EXPECT_EQ(zone->previous_transition(t + 2s), t + 1s);
    EXPECT_EQ(zone->instant(zone->record(t + 1s)), t + 1s);
    EXPECT_EQ(zone->resolve(*zem::ParseLocalRecord("2024-03-31 02:30:00")).kind, 1);
    EXPECT_FALSE(zone->instant(*zem::ParseLocalRecord("2263-01-01 00:00:00")));
    zem::Zone moved = std::move(*zone);
    *zone = *zem::Zone::from_rule("UTC0");
    EXPECT_EQ(zone->next_transition(t), std::nullopt);
    EXPECT_EQ(zem::Print(t + 1s, moved, 0), "2024-03-31T03:00:00+02:00");
    // Texts that end early, and those that are too long to be kept with a NUL behind them.
    EXPECT_TRUE(zem::Zone::named(std::string_view("UTCx").substr(0, 3)));
    EXPECT_FALSE(zem::Zone::named(std::string_view("UTC\0", 4)));
    EXPECT_FALSE(zem::Zone::named(std::string(1023, 'x')) ||
                 zem::Zone::named(std::string(100000, 'x')));
    EXPECT_TRUE(zem::Zone::from_rule(std::string(1021, 'x') + "-1"));
    EXPECT_FALSE(zem::Zone::from_rule(std::string(1022, 'x') + "-1"));
    EXPECT_FALSE(zem::Zone::from_data("TZif", 4) || !zem::Zone::local());
}

// Whatever is taken goes back, with the size that was asked for, at every alignment.
TEST(FaceMemory, IsHandedBack)
{
    struct Ledger {
        std::map<void*, ZemSizeT> blocks;
        // Blocks at odd multiples of 8, which is all that is promised.
        static ZemVoidPtr Allocate(ZemAllocator* a, ZemSizeT size)
        {
            char* block = static_cast<char*>(std::aligned_alloc(256, (size + 8 + 255) / 256 * 256));
            static_cast<Ledger*>(a->userData)->blocks[block + 8] = size;
            return block + 8;
        }
        static void Deallocate(ZemAllocator* a, ZemVoidPtr block, ZemSizeT size)
        {
            auto& blocks = static_cast<Ledger*>(a->userData)->blocks;
            ASSERT_EQ(blocks.at(block), size);
            blocks.erase(block);
            std::free(static_cast<char*>(block) - 8);
        }
    } ledger;
    ZemAllocator a = {Ledger::Allocate, Ledger::Deallocate, 0, &ledger};
    {
        zem::MemoryResource resource(&a);
        for (std::size_t alignment = 1; alignment <= 256; alignment *= 2)
            for (std::size_t size : {0U, 1U, 100U}) {
                void* block = resource.allocate(size, alignment);
                ASSERT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignment, 0);
                std::memset(block, 1, size);
                resource.deallocate(block, size, alignment);
            }
        zem::ResourceAllocator again(&resource);
        RangeVector ranges(10, MakeRange(1, 2), again.handle());
        std::pmr::vector<long double> numbers(10, 1.5L, &resource);
        std::map<int, long double, std::less<>, zem::Allocator<std::pair<const int, long double>>>
            map({{1, 2.5L}, {2, 3.5L}}, &a);
        auto moved = std::move(map);
        EXPECT_EQ(moved.get_allocator().handle(), &a);
        EXPECT_FALSE(resource.is_equal(zem::MemoryResource(&a)) || ledger.blocks.empty());
        auto zone = zem::Zone::from_rule("CET-1", &a);
        zone = zem::Zone::from_rule("CET-1", &a);
    }
    EXPECT_TRUE(ledger.blocks.empty());
}
