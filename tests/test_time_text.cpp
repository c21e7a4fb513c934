// Texts with a length: timestamps and durations, read and printed.

#include <sys/mman.h>
#include <unistd.h>

#include "reference_text.hpp"
#include "support.hpp"

// The text in memory that ends where a page begins that may not be touched.
static const char* AtTheEnd(const std::string& text)
{
    static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    static char* const end = [] {
        void* p =
            mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        EXPECT_EQ(mprotect(static_cast<char*>(p) + page, page, PROT_NONE), 0);
        return static_cast<char*>(p) + page;
    }();
    return text.copy(end - text.size(), text.size()), end - text.size();
}

static void ExpectTimestampReadersAgree(const std::string& text)
{
    EXPECT_TRUE(TimestampReadersAgree(AtTheEnd(text), text.size())) << text;
}

static void ExpectDurationReadersAgree(const std::string& text)
{
    EXPECT_TRUE(DurationReadersAgree(AtTheEnd(text), text.size())) << text;
}

// Every text that `text` begins with, and `text` with each of `characters` at each place.
template <class Expect>
static void Vary(const std::string& text, const std::string& characters, Expect expect)
{
    for (std::size_t at = 0; at <= text.size() && !testing::Test::HasFailure(); ++at) {
        expect(text.substr(0, at));
        for (char c : characters)
            expect(std::string(text).replace(at, 1, 1, c));
    }
}

// Every byte for texts of which something is read, else what may make them one.
static std::string BytesFor(bool read)
{
    std::string bytes("\0 059:.,+-/Zz\xB0", 14);
    for (int c = 0; read && c < 256; ++c)
        bytes += static_cast<char>(c);
    return bytes;
}

TEST(TimeText, TimestampsAndWhatFollows)
{
    for (const auto& [text, expected] : Table("timestamps.txt")) {
        ZemTime t;
        ZemGregorianTime gt;
        std::ostringstream found;
        found << ZemTimeParse(&t, text.data(), text.size()) << ' '
              << ZemGregorianTimeParseLocal(&gt, text.data(), text.size()) << ' '
              << (ZemGregorianTimeConstructCStr(&gt, text.c_str()) == &gt ? "yes" : "no");
        EXPECT_EQ(found.str(), expected) << text;
        Vary(text, BytesFor(expected[0] != '0'), ExpectTimestampReadersAgree);
    }
    ExpectTimestampReadersAgree("");
    EXPECT_TRUE(TimestampReadersAgree(nullptr, 0));
}

TEST(TimeText, EveryFormOfFractionAndZone)
{
    for (const std::string fraction : {"", ".5", ",25", ".123456", ".1234567", ".12345678",
                                       ".123456789", ".1234567891", ",12345678901234567890"})
        for (const std::string space : {"", " "})
            for (const std::string zone :
                 {"", "Z", "+01", "-0130", "+013015", "+01:30", "-23:59:59"})
                for (const std::string rest : {"", " and so on"})
                    Vary("2024-02-29T23:59:58" + fraction + space + zone + rest, BytesFor(false),
                         ExpectTimestampReadersAgree);
}

// Holds the printer of records against its text, in buffers of every size.
static void ExpectPrinted(const ZemGregorianTime& gt, ZemInt digits, const std::string& whole)
{
    auto print = [&](char* buf, std::size_t len) {
        EXPECT_EQ(ZemGregorianTimePrint(&gt, digits, buf, len), whole.size());
    };
    ExpectBounded(whole, print, 60, true);
    print(nullptr, 0);
}

// The record of an instant at an offset, rounded down, by the C library.
static ZemGregorianTime RecordOf(ZemTime t, ZemInt offset)
{
    ZemGregorianTime gt{};
    gt.nanosecs = (t % 1000000000 + 1000000000) % 1000000000;
    const time_t secs = t / 1000000000 - (t % 1000000000 < 0 ? 1 : 0) + offset;
    gmtime_r(&secs, &gt.tm);
    gt.tm.tm_gmtoff = offset;
    return gt;
}

TEST(TimeText, InstantsPrint)
{
    for (int i = 0; i < 4000 && !HasFailure(); ++i) {
        const ZemInt extremes[] = {INT_MIN, INT_MAX, -360000, -359999, 359999, 360000, 0, 60, -1};
        const auto offset = i % 4 == 0 ? extremes[i / 4 % 9] : static_cast<ZemInt>(AnyInt64());
        const auto digits = static_cast<ZemInt>(Between(-1, 10));
        const ZemTime t = i % 3 == 0 ? (i % 2 == 0 ? INT64_MIN : INT64_MAX) : AnyInt64();
        const ZemGregorianTime gt = RecordOf(t, offset);
        const std::string whole = ReferencePrint(gt, digits);
        ExpectPrinted(gt, digits, whole);
        auto print = [&](char* buf, std::size_t len) {
            EXPECT_EQ(ZemTimePrint(t, offset, digits, buf, len), whole.size());
        };
        ExpectBounded(whole, print, 60, true);
        print(nullptr, 0);
    }
}

TEST(TimeText, InstantsReadBack)
{
    for (int i = 0; i < 172799 && !HasFailure(); ++i) {
        // Every offset under a day; either end of the instants and times around days.
        const ZemInt offset = i - 86399, digits = i % 10;
        const ZemTime t = i % 8 == 0   ? INT64_MAX - Between(0, 2000000000)
                          : i % 8 == 1 ? INT64_MIN + Between(0, 2000000000)
                          : i % 8 == 2 ? Between(-106751, 106751) * 86400000000000 + Between(-2, 2)
                                       : AnyInt64();
        char text[64];
        const std::size_t size = ZemTimePrint(t, offset, digits, text, sizeof text);
        ZemGregorianTime gt = RecordOf(t, offset);
        EXPECT_EQ(text, ReferencePrint(gt, digits));
        ZemInt64 unit = 1000000000;
        for (ZemInt digit = 0; digit < digits; ++digit)
            unit /= 10;
        const Int128 cut = Int128{t} - gt.nanosecs % unit;
        ZemTime back;
        EXPECT_EQ(ZemTimeParse(&back, AtTheEnd(text), size), size) << text;
        EXPECT_EQ(back, cut < INT64_MIN ? ZEM_TIME_INFINITE : cut) << text;
        EXPECT_EQ(ZemGregorianTimeParse(&gt, AtTheEnd(text), size), size) << text;
        char again[64];
        EXPECT_EQ(ZemGregorianTimePrint(&gt, digits, again, sizeof again), size) << text;
        EXPECT_STREQ(again, text);
    }
}

TEST(TimeText, InstantsAtBothEnds)
{
    for (const auto& [text, expected] : Table("instants.txt")) {
        ZemTime t = 7;
        EXPECT_EQ(ZemTimeParse(&t, text.data(), text.size()), text.size()) << text;
        EXPECT_EQ(t, expected == "infinite" ? ZEM_TIME_INFINITE : std::stoll(expected)) << text;
    }
}

TEST(TimeText, AnyRecordPrints)
{
    for (int i = 0; i < 4000 && !HasFailure(); ++i) {
        ZemGregorianTime gt{};
        struct tm& tm = gt.tm;
        for (int* f : {&tm.tm_year, &tm.tm_mon, &tm.tm_mday, &tm.tm_hour, &tm.tm_min, &tm.tm_sec})
            *f = static_cast<int>(i % 2 == 0 ? Between(-2, 110) : AnyInt64());
        tm.tm_gmtoff = static_cast<ZemInt>(AnyInt64());
        gt.nanosecs = Between(0, 999999999);
        const auto digits = static_cast<ZemInt>(AnyInt64() >> (i % 60));
        ExpectPrinted(gt, digits, ReferencePrint(gt, digits));
        gt.nanosecs =
            generator() % 2 == 0 ? -Between(1000000000, INT64_MAX) : Between(1000000000, INT64_MAX);
        char text[64] = "x";
        EXPECT_EQ(ZemGregorianTimePrint(&gt, 9, text, sizeof text), 0U);
        EXPECT_STREQ(text, "");
    }
    // Records that count back from the second they name.
    for (ZemTime t = -1; t > -INT64_MAX / 3; t *= 3) {
        ZemGregorianTime gt;
        ZemGregorianTimeConstructUTC(&gt, t);
        ExpectPrinted(gt, 9, ReferencePrint(RecordOf(t, 0), 9));
    }
}

TEST(TimeText, Durations)
{
    for (const auto& [text, expected] : Table("duration_texts.txt")) {
        ZemTime t = 0;
        const std::size_t taken = ZemTimeParseDuration(&t, text.data(), text.size());
        EXPECT_EQ(std::to_string(taken) + " " + std::to_string(t), expected) << text;
        Vary(text, BytesFor(taken != 0), ExpectDurationReadersAgree);
    }
    EXPECT_TRUE(DurationReadersAgree(nullptr, 0));
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        const char* const pieces[] = {"1", "23", "0",  "9999999", ".",         ".5",        " ",
                                      "-", "+",  "ns", "us",      "\xC2\xB5s", "\xCE\xBCs", "ms",
                                      "s", "m",  "h",  "d",       "w",         "x"};
        std::string text;
        for (auto count = Between(1, 9); count > 0; --count)
            text += pieces[static_cast<std::size_t>(Between(0, count % 2 == 0 ? 19 : 4))];
        ExpectDurationReadersAgree(text);
    }
}

TEST(TimeText, DurationsPrintAndReadBack)
{
    for (const auto& [nanosecs, whole] : Table("exact_durations.txt")) {
        char text[26];
        const ZemTime t = std::stoll(nanosecs);
        EXPECT_EQ(ZemTimePrintDuration(t, text, sizeof text), whole.size());
        EXPECT_EQ(text, whole);
        EXPECT_EQ(ZemTimePrintDuration(t, nullptr, 0), whole.size());
    }
    const ZemInt64 units[] = {1, 1000, 1000000, 1000000000, 60000000000, 3600000000000};
    for (int i = 0; i < 100000 && !HasFailure(); ++i) {
        const ZemTime t =
            i % 2 == 0 ? AnyInt64() : Between(-999, 999) * units[i % 6] + units[i / 6 % 6];
        char text[32];
        const std::size_t size = ZemTimePrintDuration(t, text, sizeof text);
        ZemTime back;
        EXPECT_EQ(ZemTimeParseDuration(&back, AtTheEnd(text), size), size) << text;
        EXPECT_EQ(back, t) << text;
        if (i % 16 < 2)
            ExpectBounded(text, [t, size](char* buf, std::size_t len) {
                EXPECT_EQ(ZemTimePrintDuration(t, buf, len), size);
            });
        // The compact text reads back as what it says: it prints the same again.
        const std::string compact = ZemTimePrintCompact(t, text, sizeof text);
        EXPECT_EQ(ZemTimeParseDuration(&back, AtTheEnd(compact), compact.size()), compact.size());
        EXPECT_EQ(ZemTimePrintCompact(back, text, sizeof text), compact);
    }
}

// The sizes that the headers name hold the longest texts, and not a byte more.
TEST(TimeText, SizesThatAreEnough)
{
    EXPECT_EQ(ZemTimePrint(INT64_MIN, INT32_MIN, 9, nullptr, 0) + 1, ZEM_TIME_PRINT_SIZE);
    EXPECT_EQ(ZemTimePrintDuration(INT64_MIN, nullptr, 0) + 1, ZEM_TIME_DURATION_SIZE);
    ZemGregorianTime gt;
    ASSERT_TRUE(ZemGregorianTimeConstructFields(&gt, 9999, 12, 31, 23, 59, 59, 999999999));
    ZemGregorianTimeSetUTCOffset(&gt, -359999);
    EXPECT_EQ(ZemGregorianTimePrint(&gt, 9, nullptr, 0) + 1, ZEM_GREGORIAN_TIME_PRINT_SIZE);
    char text[ZEM_GREGORIAN_TIME_STRING_WITH_OFFSET_SIZE];
    EXPECT_TRUE(ZemGregorianTimeGetAsString(&gt, text, ZEM_GREGORIAN_TIME_STRING_SIZE));
    EXPECT_FALSE(ZemGregorianTimeGetAsString(&gt, text, ZEM_GREGORIAN_TIME_STRING_SIZE - 1));
    EXPECT_TRUE(ZemGregorianTimeGetAsStringWithOffset(&gt, text, sizeof text));
    EXPECT_FALSE(ZemGregorianTimeGetAsStringWithOffset(&gt, text, sizeof text - 1));
}
