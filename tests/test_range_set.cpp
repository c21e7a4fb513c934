// Sets of ranges against sets of bits, and where those do not reach: laws on large sets, and the
// limit of the size.

#include <sys/mman.h>

#include "range_set_model.hpp"
#include "support.hpp"

using Vector = ZemVector_ZemTimeRange;
using Ranges = std::vector<ZemTimeRange>;
using Operation = ZemBool (*)(const Vector*, const Vector*, Vector*);

static const Operation kUnion = ZemTimeRangeSetUnion;
static const Operation kIntersection = ZemTimeRangeSetIntersection;
static const Operation kDifference = ZemTimeRangeSetDifference;
static const Operation kSymmetricDifference = ZemTimeRangeSetSymmetricDifference;

TEST(RangeSet, DoesAsSetsOfBitsDo)
{
    for (unsigned seed = 0; seed < 1000; ++seed) {
        std::vector<std::uint8_t> bytes(1 + 2 * seed);
        std::ranges::generate(bytes, std::mt19937(seed));
        RangeSetModel model(bytes.data(), bytes.data() + bytes.size());
        ASSERT_TRUE(model.Run()) << "seed " << seed << ", byte " << model.next - bytes.data();
    }
}

// ---------------------------------------------------------------------------------------------
// All pairs of small sets, in every place, in memory that is just enough or one range short
// ---------------------------------------------------------------------------------------------

// The instants whose bits are set, from `base` on, as ranges at `out`; returns their end.
static ZemTimeRange* Decode(unsigned bits, ZemTime base, ZemTimeRange* out)
{
    for (int k = 0; k < 7; ++k) {
        const ZemTime t = base + k;
        if ((bits >> k & 1) != 0 && k != 0 && (bits >> (k - 1) & 1) != 0) {
            out[-1].begin = t;
        } else if ((bits >> k & 1) != 0) {
            *out++ = {t, t};
        }
    }
    return out;
}

static int g_requests = 0;
static ZemAllocator g_refusing = {
    [](ZemAllocator*, ZemSizeT) { return static_cast<void*>(++g_requests, nullptr); }, nullptr, 0,
    nullptr};

struct SmallSet {
    ZemTimeRange slots[9];
    Vector v;

    SmallSet(unsigned bits, ZemTime base) : slots(), v{&g_refusing, slots, slots, slots}
    {
        v.end = v.endBuf = Decode(bits, base, slots);
    }
    bool Holds(unsigned bits, ZemTime base) const
    {
        ZemTimeRange right[8];
        return std::equal(v.begin, v.end, right, Decode(bits, base, right),
                          [](auto& p, auto& q) { return ZemTimeRangeEqual(&p, &q) != 0; });
    }
};

static void CheckSmall(Operation operation, unsigned a, unsigned b, unsigned right, ZemTime base)
{
    for (int aliased : {0, 1, 2}) {
        SmallSet x(a, base);
        SmallSet y(b, base);
        SmallSet other(0, base);
        SmallSet& result = aliased == 0 ? other : aliased == 1 ? x : y;
        const auto xn = x.v.end - x.v.begin;
        const auto yn = y.v.end - y.v.begin;
        const auto needed = operation == kIntersection ? (xn == 0 || yn == 0 ? 0 : xn + yn - 1)
                            : operation == kDifference ? (xn == 0 ? 0 : xn + yn)
                                                       : xn + yn;
        g_requests = 0;
        if (needed > result.v.end - result.v.begin) {
            const unsigned was = aliased == 0 ? 0 : aliased == 1 ? a : b;
            result.v.endBuf = result.v.begin + needed - 1;
            EXPECT_EQ(operation(&x.v, &y.v, &result.v), 0);
            EXPECT_TRUE(g_requests == 1 && result.Holds(was, base)) << a << " " << b;
            result.v.endBuf = result.v.begin + needed;
        }
        EXPECT_EQ(operation(&x.v, &y.v, &result.v), 1);
        EXPECT_TRUE(g_requests <= 1 && result.Holds(right, base)) << a << " " << b;
        EXPECT_TRUE(&result == &x || x.Holds(a, base));
        EXPECT_TRUE(&result == &y || y.Holds(b, base));
    }
}

TEST(RangeSet, EveryPairOfSmallSets)
{
    for (ZemTime base : {INT64_MIN, ZemTime{-3}, INT64_MAX - 6}) {
        for (unsigned a = 0; a < 128; ++a) {
            for (unsigned b = 0; b < 128; ++b) {
                CheckSmall(kUnion, a, b, a | b, base);
                CheckSmall(kIntersection, a, b, a & b, base);
                CheckSmall(kDifference, a, b, a & ~b, base);
                CheckSmall(kSymmetricDifference, a, b, a ^ b, base);
            }
        }
        ASSERT_FALSE(HasFailure());
    }
}

// ---------------------------------------------------------------------------------------------
// Large sets
// ---------------------------------------------------------------------------------------------

static ZemAllocator* Heap()
{
    static ZemAllocator heap;
    return ZemAllocatorConstructMalloc(&heap, SIZE_MAX);
}

// A vector that is handed back.
struct Owned {
    Vector v;

    Owned()
    {
        ZemVector_ZemTimeRangeConstructDefault(&v, Heap());
    }
    Owned(const Owned& other)
    {
        ZemVector_ZemTimeRangeConstructCopy(&v, &other.v);
    }
    Owned& operator=(const Owned&) = delete;
    ~Owned()
    {
        ZemVector_ZemTimeRangeDestruct(&v);
    }
    bool operator==(const Owned& other) const
    {
        return ZemVector_ZemTimeRangeEqual(&v, &other.v) != 0;
    }
};

static Owned Do(Operation operation, const Owned& x, const Owned& y)
{
    Owned result;
    EXPECT_TRUE(operation(&x.v, &y.v, &result.v) && ZemTimeRangeSetIsNormal(&result.v));
    return result;
}

static Owned Complement(const Owned& x)
{
    const ZemTimeRange all = {INT64_MAX, INT64_MIN};
    Owned result;
    EXPECT_TRUE(ZemTimeRangeSetGaps(&x.v, &all, &result.v) && ZemTimeRangeSetIsNormal(&result.v));
    return result;
}

// Ranges in clusters of up to so many, with room for as many between clusters.
static Owned Clustered(ZemTime cluster, ZemTime spread)
{
    Owned x;
    ZemTime t = Between(-1000000, 1000000);
    for (int i = Between(0, 40) == 0 ? 5000 : 0; i < 5000;) {
        for (ZemTime left = Between(1, cluster); left > 0; --left, ++i) {
            const ZemTimeRange r = {t + Between(0, spread), t};
            t = r.begin + Between(2, 2 + spread);
            ZemVector_ZemTimeRangePushBack(&x.v, &r);
        }
        t += Between(0, 2 * spread * cluster);
    }
    EXPECT_TRUE(ZemTimeRangeSetIsNormal(&x.v));
    return x;
}

TEST(RangeSet, KeepsTheLawsOnLargeSets)
{
    for (int i = 0; i < 150; ++i) {
        const ZemTime clusters[] = {1, 4, 20, 300, 3000};
        const Owned x = Clustered(clusters[Between(0, 4)], 10);
        const Owned y = Clustered(clusters[Between(0, 4)], Between(1, 3000));
        const Owned either = Do(kUnion, x, y);
        const Owned both = Do(kIntersection, x, y);
        const Owned onlyX = Do(kDifference, x, y);
        const Owned onlyY = Do(kDifference, y, x);
        const Owned one = Do(kSymmetricDifference, x, y);
        EXPECT_EQ(either, Do(kUnion, y, x));
        EXPECT_EQ(both, Do(kIntersection, y, x));
        EXPECT_EQ(one, Do(kUnion, onlyX, onlyY));
        EXPECT_EQ(one, Do(kDifference, either, both));
        EXPECT_EQ(x, Do(kUnion, onlyX, both));
        EXPECT_EQ(onlyX, Do(kIntersection, x, Complement(y)));
        EXPECT_EQ(Complement(either), Do(kIntersection, Complement(x), Complement(y)));
        EXPECT_EQ(x, Complement(Complement(x)));
        EXPECT_EQ(ZemTimeRangeSetIntersects(&x.v, &y.v), both.v.begin != both.v.end);
        EXPECT_FALSE(ZemTimeRangeSetIntersects(&onlyX.v, &y.v));
        EXPECT_TRUE(ZemTimeRangeSetSubsumes(&either.v, &x.v) &&
                    ZemTimeRangeSetSubsumes(&x.v, &both.v));
        EXPECT_EQ(ZemTimeRangeSetSubsumes(&both.v, &either.v), x == y);

        // In the place of an argument, and built up in another way.
        Owned inPlace = x;
        EXPECT_TRUE(kSymmetricDifference(&inPlace.v, &y.v, &inPlace.v) && inPlace == one);
        EXPECT_TRUE(kUnion(&both.v, &inPlace.v, &inPlace.v) && inPlace == either);
        Owned added = x;
        Owned removed = x;
        for (const ZemTimeRange* p = y.v.begin; p != y.v.end; ++p) {
            ASSERT_TRUE(ZemTimeRangeSetAdd(&added.v, p) && ZemTimeRangeSetRemove(&removed.v, p));
        }
        EXPECT_EQ(added, either);
        EXPECT_EQ(removed, onlyX);
        ASSERT_FALSE(HasFailure()) << i;
    }
}

// ---------------------------------------------------------------------------------------------
// The limits
// ---------------------------------------------------------------------------------------------

TEST(RangeSet, AllInstants)
{
    const ZemTimeRange all = {INT64_MAX, INT64_MIN};
    const Owned none;
    const Owned whole = Complement(none);
    ASSERT_TRUE(whole.v.end - whole.v.begin == 1 && ZemTimeRangeEqual(whole.v.begin, &all));
    EXPECT_EQ(ZemTimeRangeSetLength(&whole.v), UINT64_MAX);
    EXPECT_EQ(Complement(whole), none);
    EXPECT_EQ(ZemTimeRangeSetFind(&whole.v, ZEM_TIME_INFINITE), whole.v.begin);
    EXPECT_EQ(ZemTimeRangeSetFind(&none.v, 0), nullptr);
    // A gap of 2^63 - 1 is within an infinite reach, one of 2^63 is not.
    for (ZemTime t : {INT64_MIN, INT64_MIN + 1}) {
        const ZemTimeRange ends[] = {{t, INT64_MIN}, {INT64_MAX, 0}};
        Owned x;
        ZemVector_ZemTimeRangeInsertRange(&x.v, x.v.end, ends, ends + 2);
        EXPECT_EQ(ZemTimeRangeSetJoin(&x.v, ZEM_TIME_INFINITE), 1);
        EXPECT_EQ(x.v.end - x.v.begin, t == INT64_MIN ? 2 : 1);
    }
}

TEST(RangeSet, NeverAsksForMoreThanTheMaximum)
{
    static std::size_t request;
    ZemAllocator refusing = {[](ZemAllocator*, ZemSizeT size) {
                                 request = size / sizeof(ZemTimeRange);
                                 return static_cast<void*>(nullptr);
                             },
                             nullptr, 0, nullptr};
    const ZemSizeT most = 268435455;
    const std::size_t bytes = 16 * most;
    // Zeros that take no memory: not sets, but that shows only in ranges that are not looked at.
    void* memory =
        mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    auto* const zeros = static_cast<ZemTimeRange*>(memory);
    auto ofSize = [&](ZemSizeT size) {
        return Vector{&refusing, zeros, zeros + size, zeros + size};
    };
    auto asks = [](ZemSizeT size, ZemBool done) {
        return done == 0 && std::exchange(request, 0) == size;
    };
    const Vector x = ofSize(most / 2 + 1);
    Vector result = ofSize(0);
    for (Operation operation : {kUnion, kDifference, kSymmetricDifference}) {
        EXPECT_TRUE(asks(0, operation(&x, &x, &result)));
    }
    EXPECT_TRUE(asks(most, kIntersection(&x, &x, &result)));
    const ZemTimeRange apart = {5, 5};
    for (ZemSizeT size : {most / 2, most / 2 + 1, most}) {
        Vector full = ofSize(size);
        const ZemSizeT grown = size == most ? 0 : size == most / 2 ? 2 * size : most;
        EXPECT_TRUE(asks(grown, ZemTimeRangeSetAdd(&full, &apart))) << size;
    }
    munmap(memory, bytes);
}
