// Calendar records: validation, order, and every conversion held against the C library's.

#include "support.hpp"

static constexpr ZemInt64 kSecond = 1000000000;

static bool Same(const ZemGregorianTime& a, const ZemGregorianTime& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// The instant `nanosecs` after `secs`: none where the C library failed or it does not fit.
static ZemTime Instant(time_t secs, Int128 nanosecs)
{
    Int128 t = Int128{secs} * kSecond + nanosecs;
    bool fits = secs != -1 && t >= INT64_MIN && t <= INT64_MAX;
    return fits ? static_cast<ZemTime>(t) : ZEM_TIME_INFINITE;
}

// Holds the conversions of any record against timegm and mktime.
static void ExpectConversions(const ZemGregorianTime& gt)
{
    tm copy = gt.tm;
    time_t secs = timegm(&copy);
    Int128 offset = Int128{kSecond} * gt.tm.tm_gmtoff;
    EXPECT_EQ(ZemTimeGm(&gt.tm), secs);
    EXPECT_EQ(ZemGregorianTimeGetUTCTime(&gt), Instant(secs, gt.nanosecs));
    EXPECT_EQ(ZemGregorianTimeGetTime(&gt), Instant(secs, gt.nanosecs - offset));
    copy = gt.tm;
    copy.tm_isdst = -1;
    EXPECT_EQ(ZemGregorianTimeGetLocalTime(&gt), Instant(mktime(&copy), gt.nanosecs));
}

// Holds the record of `t` and its way back against the C library, and returns it.
static ZemGregorianTime ExpectRecord(ZemTime t, bool local)
{
    ZemGregorianTime gt;
    std::memset(&gt, 0x5A, sizeof gt);
    tm expected;
    time_t secs = t / kSecond;
    (local ? localtime_r : gmtime_r)(&secs, &expected);
    local ? ZemGregorianTimeConstruct(&gt, t) : ZemGregorianTimeConstructUTC(&gt, t);
    EXPECT_EQ(std::memcmp(&gt.tm, &expected, offsetof(tm, tm_isdst) + sizeof(int)), 0) << t;
    EXPECT_TRUE(gt.tm.tm_gmtoff == expected.tm_gmtoff && gt.nanosecs == t % kSecond) << t;
    EXPECT_STREQ(gt.tm.tm_zone, expected.tm_zone) << t;
    ExpectConversions(gt);
    return gt;
}

TEST(Calendar, EveryDayAndEverySecondInUtc)
{
    for (ZemTime second = 0; second < 86400 && !HasFailure(); ++second)
        ExpectRecord(second * kSecond, false);
    const Int128 day = 86400 * kSecond;
    for (Int128 start = -106752 * day; start <= INT64_MAX && !HasFailure(); start += day)
        for (Int128 t : {start, start + day - kSecond, start + day - 1})
            ExpectRecord(static_cast<ZemTime>(std::clamp<Int128>(t, INT64_MIN, INT64_MAX)), false);
}

TEST(Calendar, AnyFields)
{
    for (int i = 0; i < 200000 && !HasFailure(); ++i) {
        // Left alone, then anything, then near by.
        auto [t, nanosecs] = ExpectRecord(AnyInt64(), false);
        for (int* field : {&t.tm_sec, &t.tm_min, &t.tm_hour, &t.tm_mday, &t.tm_mon, &t.tm_year})
            *field = static_cast<int>(i % 3 == 1 ? Between(INT_MIN, INT_MAX)
                                                 : *field + i % 3 * Between(-40, 40));
        nanosecs = i % 3 == 0 ? nanosecs + Between(-2, 2) : AnyInt64();
        t.tm_gmtoff = AnyInt64();
        ExpectConversions({t, nanosecs});
    }
    // The first and the last second of a ZemTime, each in part, and their neighbours.
    for (time_t secs : {-9223372038, -9223372037, -9223372036, 9223372035, 9223372036, 9223372037})
        for (ZemTime nanosecs : {-1, 0, 145224191, 145224192, 854775807, 854775808, 999999999}) {
            ZemGregorianTime gt = {{}, nanosecs};
            gmtime_r(&secs, &gt.tm);
            ExpectConversions(gt);
        }
    // Any second whose year fits an int; then the first and the last of them.
    for (int i = 0; i < 200000 && !HasFailure(); ++i) {
        time_t secs = Between(-67768040609740800, 67768036191676799);
        tm t, expected;
        gmtime_r(&secs, &expected);
        EXPECT_EQ(ZemTimeGm(ZemGmTimeR(&secs, &t)), secs);
        EXPECT_EQ(std::memcmp(&t, &expected, offsetof(tm, tm_isdst)), 0) << secs;
    }
    for (time_t secs : {-67768040609740800, 67768036191676799}) {
        tm t;
        EXPECT_EQ(ZemTimeGm(ZemGmTimeR(&secs, &t)), secs);
        secs += secs < 0 ? -1 : 1;
        EXPECT_EQ(ZemGmTimeR(&secs, &t), nullptr);
    }
}

TEST(Calendar, LocalTime)
{
    for (const auto& [zone, expected] : Table("zones.txt")) {
        zone == "unset" ? unsetenv("TZ") : setenv("TZ", zone.c_str(), 1);
        tzset();
        long changes = 0, offset = ExpectRecord(1514764800 * kSecond, true).tm.tm_gmtoff;
        for (ZemTime day = 1514764800; day < 1767225600 && !HasFailure(); day += 86400) {
            long next = ExpectRecord((day + 86400) * kSecond, true).tm.tm_gmtoff;
            for (ZemTime t = day; next != offset && t < day + 86400; t += 600) {
                ZemGregorianTime gt = ExpectRecord(t * kSecond + 999999999, true);
                gt.tm.tm_min += 60;  // perhaps into an hour that is left out
                ExpectConversions(gt);
            }
            changes += std::exchange(offset, next) != next ? 1 : 0;
        }
        for (int i = 0; i < 10000 && !HasFailure(); ++i)
            ExpectRecord(AnyInt64(), true);
        const auto found = std::to_string(changes) + " changes to " + std::to_string(offset);
        EXPECT_TRUE(found == expected || zone == "unset")
            << zone << ": " << found << "; is the zone data missing (package tzdata)?";
    }
}

// A zone whose clock counts leap seconds: our UTC does not, the C library's does.
TEST(Calendar, ZonesThatCountLeapSeconds)
{
    setenv("TZ", "right/Europe/Berlin", 1);
    tzset();
    const ZemTime t = 1709292645 * kSecond;
    ZemGregorianTime gt, utc, plain;
    ZemGregorianTimeConstruct(&gt, t);
    ZemGregorianTimeConstructUTC(&utc, t);
    const ZemTime back = ZemGregorianTimeGetTime(&gt), backUtc = ZemGregorianTimeGetTime(&utc);
    setenv("TZ", "UTC0", 1);
    tzset();
    ZemGregorianTimeConstructUTC(&plain, t);
#if defined(ZEMTIME_LIBC_CALENDAR)
    EXPECT_EQ(t - back, 0);
    EXPECT_FALSE(ZemGregorianTimeEqual(&utc, &plain))
        << "is the zone data missing (package tzdata, or tzdata-legacy)?";
#else
    EXPECT_EQ(t - back, 27 * kSecond)
        << "is the zone data missing (package tzdata, or tzdata-legacy)?";
    EXPECT_TRUE(ZemGregorianTimeEqual(&utc, &plain));
#endif
    EXPECT_EQ(backUtc, t);
}

TEST(Calendar, FieldsAreValidated)
{
    for (const auto& [text, verdict] : Table("fields.txt")) {
        int f[6];
        ZemTime n;
        std::istringstream(text) >> f[0] >> f[1] >> f[2] >> f[3] >> f[4] >> f[5] >> n;
        ZemGregorianTime gt;
        std::memset(&gt, 0x5A, sizeof gt);
        const ZemGregorianTime before = gt;
        auto* made = ZemGregorianTimeConstructFields(&gt, f[0], f[1], f[2], f[3], f[4], f[5], n);
        EXPECT_EQ(made, verdict == "valid" ? &gt : nullptr) << text;
        std::ostringstream back;
        back << ZemGregorianTimeGetYear(&gt) << ' ' << ZemGregorianTimeGetMonth(&gt) << ' '
             << ZemGregorianTimeGetMonthDay(&gt) << ' ' << ZemGregorianTimeGetHour(&gt) << ' '
             << ZemGregorianTimeGetMinute(&gt) << ' ' << ZemGregorianTimeGetSecond(&gt) << ' '
             << ZemGregorianTimeGetNanosecond(&gt) << ' ' << ZemGregorianTimeGetUTCOffset(&gt)
             << gt.tm.tm_wday << gt.tm.tm_yday << gt.tm.tm_isdst << (gt.tm.tm_zone == nullptr);
        EXPECT_TRUE(made == nullptr ? Same(gt, before) : back.str() == text + " 00001") << text;
    }
}

// Copies of records whose fields a compiler knows, where it might copy those and no padding.
TEST(Calendar, CopiesKeepPadding)
{
    using Copy = void (*)(ZemGregorianTime*, ZemGregorianTime*);
    const Copy copies[] = {[](ZemGregorianTime* to, ZemGregorianTime* from) {
                               ZemGregorianTime known;
                               std::memset(&known, 0x11, sizeof known);
                               ZemGregorianTimeConstructFields(&known, 2024, 2, 29, 12, 30, 45, 5);
                               ZemGregorianTimeConstructCopy(to, &known);
                               ZemGregorianTimeConstructFields(from, 2024, 2, 29, 12, 30, 45, 5);
                           },
                           [](ZemGregorianTime* to, ZemGregorianTime* from) {
                               ZemGregorianTime known;
                               ZemGregorianTimeConstructCopy(&known, from);
                               ZemGregorianTimeSetUTCOffset(&known, 3600);
                               ZemGregorianTimeAssign(to, &known);
                               ZemGregorianTimeSetUTCOffset(from, 3600);
                           },
                           [](ZemGregorianTime* to, ZemGregorianTime* from) {
                               ZemGregorianTime known;
                               ZemGregorianTimeAssign(&known, from);
                               ZemGregorianTimeSetUTCOffset(&known, 3600);
                               ZemGregorianTimeSwap(to, &known);
                               ZemGregorianTimeSetUTCOffset(from, 3600);
                           }};
    for (const Copy& copy : copies) {
        ZemGregorianTime from, to;
        std::memset(&from, 0x22, sizeof from);
        std::memset(&to, 0x5A, sizeof to);
        copy(&to, &from);
        EXPECT_TRUE(Same(to, from)) << &copy - copies;
    }
}

TEST(Calendar, OrderAndCopies)
{
    // Records may be compared as bytes, padding and all.
    ZemGregorianTime records[2], swapped[2];
    std::memset(&records[0], 0x11, sizeof records[0]);
    std::memset(&records[1], 0x22, sizeof records[1]);
    std::memcpy(swapped, records, sizeof records);
    ZemGregorianTimeSwap(&swapped[0], &swapped[1]);
    EXPECT_TRUE(Same(swapped[0], records[1]) && Same(swapped[1], records[0]));

    std::vector<ZemGregorianTime> ascending(1);
    ascending[0].tm.tm_year = INT_MIN;
    for (const auto& [text, reason] : Table("order.txt"))
        ZemGregorianTimeConstructCStr(&ascending.emplace_back(), text.c_str());
    ascending.emplace_back().tm.tm_year = INT_MAX;
    for (const auto& a : ascending)
        for (const auto& b : ascending) {
            ZemGregorianTime x, y;
            EXPECT_TRUE(ZemGregorianTimeConstructCopy(&x, &a) == &x &&
                        ZemGregorianTimeAssign(&y, &b) == &y);
            EXPECT_TRUE(ZemGregorianTimeSwap(&x, &y) == 1 && Same(x, b) && Same(y, a));
            EXPECT_TRUE(ZemGregorianTimeSwap(&x, &x) == 1 && Same(x, b));
            ZemGregorianTimeDestruct(&x);
            x.tm.tm_wday = 9;
            x.tm.tm_gmtoff += 1L << 32;  // above what counts
            EXPECT_EQ(ZemGregorianTimeLess(&a, &x), &a < &b);
            EXPECT_EQ(ZemGregorianTimeEqual(&a, &x), &a == &b);
        }
}
