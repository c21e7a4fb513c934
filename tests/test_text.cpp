// Calendar texts, durations, and the text functions of the utility module.

#include <cerrno>

#include "reference_reader.hpp"
#include "support.hpp"

// Holds the parser against the second reader: the verdict, the record, and the storage after a
// refusal. The text, up to its NUL, stands in memory of its exact size.
static bool Parses(const std::string& text)
{
    const std::vector<char> exact(text.c_str(), text.c_str() + std::strlen(text.c_str()) + 1);
    ZemGregorianTime gt[2];
    std::memset(gt, 0x5A, sizeof gt);
    bool ok = ReferenceRead(exact.data(), &gt[0]);
    EXPECT_EQ(ZemGregorianTimeConstructCStr(&gt[1], exact.data()), ok ? &gt[1] : nullptr) << text;
    EXPECT_EQ(std::memcmp(&gt[0], &gt[1], sizeof gt[0]), 0) << text;
    return ok;
}

// Holds both prints of a record against its text with the offset.
static void ExpectPrinted(const ZemGregorianTime& gt, const std::string& text)
{
    for (bool offset : {true, false}) {
        const std::string whole = offset ? text : text.substr(0, text.rfind(' '));
        ExpectBounded(whole, [&](char* buf, std::size_t size) {
            EXPECT_EQ(offset ? ZemGregorianTimeGetAsStringWithOffset(&gt, buf, size)
                             : ZemGregorianTimeGetAsString(&gt, buf, size),
                      size > whole.size() ? buf : nullptr);
        });
    }
}

TEST(Text, ParserAndFormatter)
{
    ZemGregorianTime gt;
    for (const auto& [text, printed] : Table("calendar_texts.txt")) {
        ASSERT_EQ(Parses(text), printed != "refused") << text;
        if (ZemGregorianTimeConstructCStr(&gt, text.c_str()) != nullptr)
            ExpectPrinted(gt, printed);
        for (std::size_t at = 0; at <= text.size() && !HasFailure(); ++at)
            for (int c = 0; c < 256; ++c)
                Parses(std::string(text).replace(at, 1, 1, static_cast<char>(c)));
        for (int i = 0; i < 5000 && !HasFailure(); ++i) {
            std::string edited = text;
            for (auto edits = Between(1, 3); edits > 0; --edits) {
                char c = " \t\v\r+-.:TZ0123456789\xA0"[generator() % 21];
                std::string piece(i % 9 == 0 ? 24 : generator() % 3, c);
                edited.replace(generator() % (edited.size() + 1), generator() % 3, piece);
            }
            Parses(edited);
        }
    }
    ZemGregorianTimeConstructUTC(&gt, -1);
    ExpectPrinted(gt, "1969-12-31 23:59:59.999 +00:00");
    ZemGregorianTimeConstructUTC(&gt, -82800999999999);
    ExpectPrinted(gt, "1969-12-31 00:59:59.000 +00:00");
    gt.nanosecs = -1000000000;  // a second and more is printed as it stands
    ExpectPrinted(gt, "1969-12-31 01:00:00.-1000 +00:00");
    ZemGregorianTimeConstructFields(&gt, INT_MIN, 1, 1, 0, 0, 0, 0);
    gt.nanosecs = -1000000;
    ZemGregorianTimeSetUTCOffset(&gt, INT_MIN);
    ExpectPrinted(gt, "2147483647-12-31 23:59:59.999 -596523:14:08");
}

TEST(Text, PrintParsePrint)
{
    for (int i = 1; i < 106751 && !HasFailure(); ++i) {
        // Years -999 to 9999, offsets below 100 hours.
        ZemGregorianTime gt, read;
        char text[40];
        time_t secs = Between(-93692592000, 253402300799);
        gmtime_r(&secs, &gt.tm);
        gt.tm.tm_gmtoff = Between(-359999, 359999);
        gt.nanosecs = Between(0, 999) * 1000000;
        ZemGregorianTimeGetAsStringWithOffset(&gt, text, sizeof text);
        EXPECT_EQ(ZemGregorianTimeConstructCStr(&read, text), &read) << text;
        EXPECT_EQ(ZemGregorianTimeEqual(&read, &gt), 1) << text;
        EXPECT_EQ(read.tm.tm_gmtoff, gt.tm.tm_gmtoff) << text;
        ExpectPrinted(read, text);
        // Days before 1970, their last moments most of all, print rounded down.
        ZemTime t = i * -86400000000000 - (AnyInt64() & 0x3FFFFFFFFFFF);
        ZemGregorianTimeConstructUTC(&gt, t);
        ZemGregorianTimeGetAsStringWithOffset(&gt, text, sizeof text);
        ZemGregorianTimeConstructCStr(&read, text);
        EXPECT_EQ(ZemGregorianTimeGetTime(&read), (t - 999999) / 1000000 * 1000000) << text;
    }
}

template <class... Args>
static void ExpectLikeSnprintf(const char* format, Args... args)
{
    char whole[100];
    auto length = static_cast<std::size_t>(std::snprintf(whole, sizeof whole, format, args...));
    ExpectBounded(whole, [&](char* buf, std::size_t size) {
        EXPECT_EQ(ZemSNPrintf(buf, size, format, args...), length) << format;
    });
}

TEST(Text, BoundedPrinting)
{
    std::vector<int> numbers = {0, 7, -7, -99, 12345, INT_MAX, INT_MIN};
    for (int power = 10; power <= INT_MAX / 10; power *= 10)
        numbers.insert(numbers.end(), {power - 1, power});
    numbers.insert(numbers.end(), {999999999, 1000000000});
    for (const auto& [format, type] : Table("formats.txt"))
        for (int n : numbers)
            if (type == "int")
                ExpectLikeSnprintf(format.c_str(), n);
            else if (type == "unsigned")
                ExpectLikeSnprintf(format.c_str(), static_cast<unsigned>(n));
            else if (type == "date")
                for (int i = 0; i < 7; ++i) {
                    int f[] = {2024, 1, 2, 3, 4, 5, 6};
                    f[i] = n;
                    ExpectLikeSnprintf(format.c_str(), f[0], f[1], f[2], f[3], f[4], f[5], f[6],
                                       7L);
                }
            else
                ExpectLikeSnprintf(format.c_str(), n == 0    ? ""
                                                   : n == -7 ? nullptr
                                                             : std::to_string(n).c_str());
    for (const auto& [nanosecs, text] : Table("durations.txt")) {
        ExpectBounded(text, [&source = text](char* buf, std::size_t size) {
            EXPECT_EQ(ZemStrLCpy(buf, source.c_str(), size), source.size());
        });
        auto print = [t = std::stoll(nanosecs)](char* buf, std::size_t size) {
            EXPECT_EQ(ZemTimePrintCompact(t, buf, size), buf);
        };
        ExpectBounded(text, print, 20);
    }
}

TEST(Text, MemSet)
{
    std::string bytes(4, 'a');
    for (std::size_t size = 0; size < 4; ++size) {
        EXPECT_EQ(ZemMemSet(bytes.data(), 'b', size), bytes.data());
        EXPECT_EQ(bytes, std::string(size, 'b') + std::string(4 - size, 'a'));
    }
    EXPECT_EQ(ZemMemSet(nullptr, 'b', 0), nullptr);
}

TEST(Text, StrToUint32IsStrtoul)
{
    for (int i = 0; i < 500000 && !HasFailure(); ++i) {
        std::string text(generator() % 30, '0');
        for (char& c : text)
            c = "01234567890123456789abfxXzZ+- \t\v."[generator() % (i % 3 == 0 ? 33 : 10)];
        int base = i % 2 == 0 ? 10 : static_cast<int>(Between(-1, 37));
        char* ends[] = {nullptr, nullptr};
        errno = 0;
        auto expected = static_cast<ZemUint32>(std::strtoul(text.c_str(), &ends[0], base));
        int error = std::exchange(errno, 0);
        EXPECT_EQ(ZemStrToUint32(text.c_str(), &ends[1], base), expected) << text << ", " << base;
        EXPECT_TRUE(ends[0] == ends[1] && errno == error) << text << ", " << base;
        EXPECT_EQ(ZemStrToUint32(text.c_str(), nullptr, base), expected) << text << ", " << base;
    }
}
