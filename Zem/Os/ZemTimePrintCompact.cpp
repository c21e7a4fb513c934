// Durations as text for people.

#include "Zem/Os/ZemTime.h"
#include "Zem/Utils/Private/ZemDigits.h"
#include "Zem/Utils/ZemStdCLib.h"

namespace {

constexpr ZemUint64 kMicrosecond = 1000;
constexpr ZemUint64 kMillisecond = 1000 * kMicrosecond;
constexpr ZemUint64 kSecond = 1000 * kMillisecond;
constexpr ZemUint64 kMinute = 60 * kSecond;
constexpr ZemUint64 kHour = 60 * kMinute;
constexpr ZemUint64 kDay = 24 * kHour;

// Room for every text, with what words write before their end.
constexpr ZemSizeT kCompactRoom = 16;

// Text in a register: up to eight characters, the first in the lowest byte, zeros above them.
struct Word {
    ZemUint64 bytes;
    unsigned size;
};

Word Join(Word a, Word b)
{
    return {a.bytes | b.bytes << (8 * a.size), a.size + b.size};
}

// Stores a text of 4 to 8 characters and its NUL, and nothing behind that.
void Store(char* p, Word text)
{
    unsigned last = text.size - 3;
    ZemStore4(p, static_cast<ZemUint32>(text.bytes));
    p[4] = static_cast<char>(text.bytes >> 32);
    ZemStore4(p + last, static_cast<ZemUint32>(text.bytes >> (8 * last)));
}

// 1 where `value` is above `bound`, else 0; both are below 2^31. How many digits a number has
// cannot be predicted, and of a comparison compilers make a branch.
unsigned Above(ZemUint32 value, ZemUint32 bound)
{
    return (bound - value) >> 31;
}

// A number below 1,000.
Word Number(ZemUint32 value)
{
    unsigned digits = 1 + Above(value, 9) + Above(value, 99);
    return {ZemThreeDigits(value) >> (8 * (3 - digits)), digits};
}

// A number below 1,000, and no text for 0.
Word NumberOrNothing(ZemUint32 value)
{
    unsigned digits = Above(value, 0) + Above(value, 9) + Above(value, 99);
    return {ZemThreeDigits(value) >> (8 * (3 - digits)), digits};
}

// A number below 100.
Word ShortNumber(ZemUint32 value)
{
    unsigned digits = 1 + Above(value, 9);
    return {ZemTwoDigits(value) >> (8 * (2 - digits)), digits};
}

// `thousandths` of a unit, under 1,000,000, as three digits with the point among them.
Word ThreeSignificant(ZemUint32 thousandths)
{
    // 2^32 / 10, / 100 and / 1,000, rounded up: exact quotients of numbers below a million.
    constexpr ZemUint64 kReciprocals[3] = {429496730, 42949673, 4294968};
    unsigned more = Above(thousandths, 9999) + Above(thousandths, 99999);
    ZemUint64 digits =
        ZemThreeDigits(static_cast<ZemUint32>(thousandths * kReciprocals[more] >> 32));
    unsigned shift = 8 * (more + 1);  // past the digits before the point
    unsigned point = more < 2 ? 1 : 0;
    ZemUint64 whole = digits & ((ZemUint64{1} << shift) - 1);
    ZemUint64 rest = digits >> shift << 8;
    return {whole | (rest | ZemUint64{'.'} * point) << shift, 3 + point};
}

// Two numbers below 100, each with a unit of one letter.
void StoreTwo(char* p, ZemUint32 first, char firstUnit, ZemUint32 second, char secondUnit)
{
    Word unit = {ZEM_WORD(' ', firstUnit, ' ', 0, 0, 0, 0, 0), 3};
    Word text = Join(Join(ShortNumber(first), unit), ShortNumber(second));
    text.bytes |= ZemUint64{' '} << (8 * text.size);
    ZemStore8(p, text.bytes);
    p[text.size + 1] = secondUnit;
    p[text.size + 2] = '\0';
}

// Writes a magnitude and its NUL, 10 bytes at most.
void Write(char* p, ZemUint64 n)
{
    constexpr Word kNs = {ZEM_WORD(' ', 'n', 's', 0, 0, 0, 0, 0), 3};
    constexpr Word kUs = {ZEM_WORD(' ', 0xC2, 0xB5, 's', 0, 0, 0, 0), 4};
    constexpr Word kMs = {ZEM_WORD(' ', 'm', 's', 0, 0, 0, 0, 0), 3};
    constexpr Word kS = {ZEM_WORD(' ', 's', 0, 0, 0, 0, 0, 0), 2};
    constexpr Word kD = {ZEM_WORD(' ', 'd', 0, 0, 0, 0, 0, 0), 2};

    if (n < kMicrosecond) {
        Store(p, Join(Number(static_cast<ZemUint32>(n)), kNs));
    } else if (n < kMinute) {
        // Thousandths of a microsecond, a millisecond or a second: by numbers, as a branch could
        // not be predicted. Divides by 1, by 8 * 125 and by 64 * 15625; the factors are 2^40 / 125
        // and 2^46 / 15625, rounded up, which gives exact quotients under a second and a minute.
        constexpr ZemUint64 kFactors[3] = {1, 8796093023, 4503599628};
        constexpr unsigned kShifts[3] = {0, 40, 46};
        constexpr Word kUnits[3] = {kUs, kMs, kS};
        ZemUint64 more = ((kMillisecond - 1 - n) >> 63) + ((kSecond - 1 - n) >> 63);
        auto thousandths =
            static_cast<ZemUint32>((n >> (3 * more)) * kFactors[more] >> kShifts[more]);
        Word unit = kUnits[more];
        Store(p, Join(ThreeSignificant(thousandths), unit));
    } else if (n < kHour) {
        auto s = static_cast<ZemUint32>(n / kSecond);
        StoreTwo(p, s / 60, 'm', s % 60, 's');
    } else if (n < kDay) {
        auto m = static_cast<ZemUint32>(n / kMinute);
        StoreTwo(p, m / 60, 'h', m % 60, 'm');
    } else if (n < 100 * kDay) {
        auto h = static_cast<ZemUint32>(n / kHour);
        StoreTwo(p, h / 24, 'd', h % 24, 'h');
    } else {
        auto days = static_cast<ZemUint32>(n / kDay);
        Word rest = {ZemThreeDigits(days % 1000), 3};
        Store(p, Join(Join(NumberOrNothing(days / 1000), rest), kD));
    }
}

// The text in a buffer that may be too short for it.
[[gnu::noinline]] const char* PrintCut(ZemTime t, char* buf, ZemSizeT len)
{
    char local[kCompactRoom];
    ZemTimePrintCompact(t, local, sizeof local);
    ZemStrLCpy(buf, local, len);
    return buf;
}

}  // namespace

const char* ZemTimePrintCompact(ZemTime t, char* buf, ZemSizeT len)
{
    if (len < kCompactRoom) {
        return PrintCut(t, buf, len);
    }
    // The sign is taken without a branch, which could not be predicted: it is written in any case,
    // and the number goes behind or over it.
    auto bits = static_cast<ZemUint64>(t);
    ZemUint64 negative = bits / 9223372036854775808U;  // 1 or 0
    ZemUint64 n = (bits ^ (0 - negative)) + negative;
    *buf = '-';
    Write(buf + negative, n);
    return buf;
}
