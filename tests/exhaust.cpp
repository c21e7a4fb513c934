// Sweeps that visit every case: too long for every build, run by scripts/exhaust. Each ends the run
// at its first difference.

#include <cstdio>
#include <thread>

#include "Zem/Os/Private/ZemTimeReader.h"
#include "Zem/Os/ZemTimeInline.h"
#include "fuzz/readers_agree.hpp"
#include "tests/reference_text.hpp"

static void Require(bool right, const char* what, ZemInt64 value)
{
    if (!right) {
        std::fprintf(stderr, "%s differs at %ld\n", what, value);
        std::_Exit(1);
    }
}

struct Date {
    ZemInt64 number, year, month, day, weekday, yearDay;
};

// One day after the other up to day `end`, with no arithmetic beyond the length of a month, at
// another second every day.
static Date SweepDays(Date d, ZemInt64 end)
{
    static const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int second = 0; d.number < end; ++d.number, second = (second + 7919) % 86400) {
        const time_t secs = d.number * 86400 + second;
        struct tm tm;
        bool right = ZemGmTimeR(&secs, &tm) == &tm && tm.tm_year == d.year - 1900 &&
                     tm.tm_mon == d.month && tm.tm_mday == d.day && tm.tm_wday == d.weekday &&
                     tm.tm_yday == d.yearDay && tm.tm_hour == second / 3600 &&
                     tm.tm_min == second / 60 % 60 && tm.tm_sec == second % 60;
        Require(right && ZemTimeGm(&tm) == secs, "Day", d.number);
        d.weekday = (d.weekday + 1) % 7;
        d.yearDay += 1;
        bool leap = d.year % 4 == 0 && (d.year % 100 != 0 || d.year % 400 == 0);
        if (++d.day > lengths[d.month] + (d.month == 1 && leap)) {
            d.month = (d.month + 1) % 12;
            d.day = 1;
            d.yearDay = d.month == 0 ? 0 : d.yearDay;
            d.year += d.month == 0;
        }
    }
    return d;
}

// Every nanosecond of a second to NTP and back.
static void SweepNanoseconds(ZemInt64 second)
{
    for (ZemTime t = second * 1000000000, end = t + 1000000000; t < end; ++t) {
        const __int128 since1900 = t + __int128{2208988800} * 1000000000;
        const ZemUint64 ntp = ZemTimeGetNtp(t);
        Require(ntp == static_cast<ZemUint64>(since1900 * 4294967296 / 1000000000), "To NTP", t);
        ZemTime back;
        Require(*ZemTimeConstructFromNtp(&back, ntp) == t - (since1900 % 1953125 != 0), "From NTP",
                t);
    }
}

// The arithmetic on all bytes of a word: every number of eight digits; and which byte is the first
// that is no digit, for every pair of bytes at every place, among equal ones.
static void SweepWords()
{
    for (ZemUint32 n = 0; n < 100000000; ++n) {
        ZemUint64 word = 0;
        for (ZemUint32 i = 0, rest = n; i < 8; ++i, rest /= 10)
            word = word << 8 | rest % 10;
        Require(ZemNumberOf8(word) == n, "Number", n);
    }
    for (int others : {0, 9, 10, 127, 128, 255})
        for (int at = 0; at < 7; ++at)
            for (int pair = 0; pair < 65536; ++pair) {
                ZemUint64 word = 0;
                int first = 8;
                bool pairs = true;
                for (int i = 7; i >= 0; --i) {
                    const int byte = i == at ? pair / 256 : i == at + 1 ? pair % 256 : others;
                    word = word << 8 | static_cast<ZemUint64>(byte);
                    first = byte > 9 ? i : first;
                    pairs = pairs && byte <= (i % 3 == 2 ? 0 : 9);
                }
                const ZemUint64 wrong = ZemNotDigits(word);
                Require(
                    wrong != 0 ? ZemCountBytes(wrong) == static_cast<ZemUint32>(first) : first == 8,
                    "Digits", pair);
                Require((ZemNotPairs(word) == 0) == pairs, "Pairs", pair);
            }
}

// Holds every parser against its second reader.
static void RequireRead(const std::string& text, ZemInt64 value)
{
    Require(ReadersAgree(text.c_str()), text.c_str(), value);
    Require(TimestampReadersAgree(text.data(), text.size()), text.c_str(), value);
}

// Every day that an instant can have, printed and read back; every day that a text can name.
static void SweepDates()
{
    for (ZemInt64 day = -719528, second = 0; day <= 2932896;
         ++day, second = (second + 7919) % 86400) {
        const time_t secs = day * 86400 + second;
        const bool reached = secs >= -9223372036 && secs <= 9223372036;
        ZemGregorianTime gt{};
        gmtime_r(&secs, &gt.tm);
        const std::string whole = ReferencePrint(gt, 0);
        char text[64];
        ZemTime t;
        Require(ZemGregorianTimePrint(&gt, 0, text, sizeof text) == 20 && text == whole, "Text",
                day);
        Require(ZemTimeParse(&t, text, 20) == 20, "Size", day);
        Require(t == (reached ? secs * 1000000000 : ZEM_TIME_INFINITE), "Instant", day);
        if (reached)
            Require(ZemTimePrint(t, 0, 0, text, sizeof text) == 20 && text == whole, "Print", day);
    }
}

// Every offset of two, four and six digits, with colons and without.
static void SweepOffsets()
{
    for (const std::string sign : {"+", "-", " +", " -"})
        for (int n = 0; n < 1000000; ++n) {
            const std::string s = std::to_string(1000000 + n).substr(1);
            const std::string hours = s.substr(0, 2), minutes = s.substr(2, 2), rest = s.substr(4);
            for (const std::string& offset : {rest, minutes + rest, minutes + ":" + rest, s,
                                              hours + ":" + minutes + ":" + rest})
                RequireRead("2024-03-01T12:30:45" + sign + offset, n);
        }
}

// Every pair of bytes at every place.
static void SweepPairs()
{
    for (const std::string text : {"2024-03-01T12:30:45.5+01:02:03", "2024-03-01 12:30:45 -0102",
                                   "2024-03-01 12:30:45Z", "2024-02-29T23:59:60-010203"})
        for (size_t at = 0; at + 2 <= text.size(); ++at)
            for (ZemUint32 pair = 0; pair < 65536; ++pair) {
                const char bytes[] = {static_cast<char>(pair / 256), static_cast<char>(pair)};
                RequireRead(std::string(text).replace(at, 2, bytes, 2), pair);
            }
}

int main()
{
    const Date epoch = {0, 1970, 0, 1, 4, 0};
    std::thread other([&] {
        SweepDays(epoch, 2147483648);
        SweepNanoseconds(2085978495);
        SweepPairs();
    });
    // Whether the first day is the right one shows where the sweep ends.
    Date d = SweepDays({-2147483648, -5877641, 5, 23, 2, 173}, 0);
    Require(std::memcmp(&d, &epoch, sizeof d) == 0, "Epoch", d.year);
    SweepNanoseconds(-1);
    SweepWords();
    SweepDates();
    SweepOffsets();
    other.join();
    std::puts(
        "All days of 2^32, nanoseconds of two seconds, numbers, dates, offsets, pairs of bytes");
}
