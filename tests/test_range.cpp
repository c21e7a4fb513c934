// Time ranges against their meaning: the instants t with end <= t <= begin.

#include <gtest/gtest.h>

#include <tuple>

#include "Zem/Os/ZemTimeInline.h"

static constexpr ZemTime kInstants[] = {INT64_MIN, -1, 0, 1, ZEM_TIME_INFINITE};

// One bit for each of the instants that the range holds.
static unsigned Held(const ZemTimeRange& x)
{
    unsigned held = 0;
    for (ZemTime t : kInstants) {
        held = 2 * held + (x.end <= t && t <= x.begin);
    }
    return held;
}

static void CheckPair(const ZemTimeRange& x, const ZemTimeRange& y)
{
    ZemTimeRange a = x;
    ZemTimeRange b = y;
    ZemTimeRangeIntersection(&a, &y, &a);
    ZemTimeRangeUnion(&x, &b, &b);
    EXPECT_EQ(Held(a), Held(x) & Held(y));
    EXPECT_TRUE(a.begin == std::min(x.begin, y.begin) && a.end == std::max(x.end, y.end));
    EXPECT_TRUE(b.begin == std::max(x.begin, y.begin) && b.end == std::min(x.end, y.end));
    EXPECT_EQ(ZemTimeRangeIntersects(&x, &y), (Held(x) & Held(y)) != 0);
    EXPECT_EQ(ZemTimeRangeSubsumes(&x, &y), b.begin == x.begin && b.end == x.end);
    EXPECT_EQ(ZemTimeRangeEqual(&x, &y), &x == &y);  // no two of the table are equal
    EXPECT_EQ(ZemTimeRangeLess(&x, &y), std::tie(x.end, x.begin) < std::tie(y.end, y.begin));
    EXPECT_TRUE(ZemTimeRangeConstructCopy(&a, &x) == &a && ZemTimeRangeAssign(&b, &y) == &b);
    ZemTimeRangeSwap(&a, &b);
    ZemTimeRangeSwap(&a, &a);
    EXPECT_TRUE(ZemTimeRangeEqual(&a, &y) && ZemTimeRangeEqual(&b, &x));
}

TEST(Range, EveryPairOfBounds)
{
    ZemTimeRange ranges[25];
    for (std::size_t i = 0; i < std::size(ranges); ++i) {
        ZemTimeRange* x = &ranges[i];
        EXPECT_EQ(ZemTimeRangeConstruct(x, kInstants[i / 5], kInstants[i % 5]), x);
        EXPECT_EQ(ZemTimeRangeBegin(x), kInstants[i / 5]);
        EXPECT_EQ(ZemTimeRangeEnd(x), kInstants[i % 5]);
        EXPECT_EQ(ZemTimeRangeIsValid(x), i / 5 >= i % 5);
        ZemTimeRangeDestruct(x);
    }
    for (std::size_t i = 0; i < 25 * 25; ++i) {
        CheckPair(ranges[i / 25], ranges[i % 25]);
    }
}
