// Texts with a length: timestamps and durations, read and printed.

#include "Zem/Os/ZemTimeText.h"

#include <cstring>

#include "Zem/Os/Private/ZemTimeReader.h"
#include "Zem/Os/Private/ZemTimeWriter.h"
#include "Zem/Os/ZemTimeInline.h"

// ---------------------------------------------------------------------------------------------
// Reading timestamps
// ---------------------------------------------------------------------------------------------

ZemSizeT ZemTimeParse(ZemTime* t, const char* s, ZemSizeT size)
{
    ZemTimestamp_ x;
    ZemSizeT taken = ZemReadTimestamp(s, size, 0, &x);
    if (taken == 0) {
        return 0;
    }
    // Days that a ZemTime reaches with any time of day and offset take no test of the sum.
    constexpr ZemInt kSurelyReached = 106749;
    auto secondOfDay = static_cast<ZemInt>((x.hour * 60 + x.minute) * 60 + x.second) - x.offset;
    ZemInt64 secs = ZemInt64{x.dayNumber} * ZEM_CIVIL_SECS_PER_DAY + secondOfDay;
    if (x.dayNumber >= -kSurelyReached && x.dayNumber <= kSurelyReached) {
        *t = secs * 1000000000 + x.nanosecs;
    } else {
        *t = ZemTimeFromSecsAndNanosecs_(secs, x.nanosecs);
    }
    return taken;
}

ZemSizeT ZemGregorianTimeParse(ZemGregorianTime* gt, const char* s, ZemSizeT size)
{
    ZemTimestamp_ x;
    ZemSizeT taken = ZemReadTimestamp(s, size, 0, &x);
    if (taken != 0) {
        ZemFillRecord(gt, &x);
    }
    return taken;
}

ZemSizeT ZemGregorianTimeParseLocal(ZemGregorianTime* gt, const char* s, ZemSizeT size)
{
    ZemTimestamp_ x;
    ZemSizeT taken = ZemReadLocalTimestamp(s, size, &x);
    if (taken != 0) {
        ZemFillRecord(gt, &x);
    }
    return taken;
}

// ---------------------------------------------------------------------------------------------
// Reading durations
// ---------------------------------------------------------------------------------------------

namespace {

constexpr ZemUint64 kNanosPerSec = 1000000000;

struct Unit {
    const char* name;
    ZemSizeT size;     // of the name
    ZemUint64 length;  // in nanoseconds: under a second, or whole seconds
    ZemUint64 most;    // how many of them fit 64 bits
};

template <ZemSizeT room>
constexpr Unit MakeUnit(const char (&name)[room], ZemUint64 length)
{
    return {name, room - 1, length, UINT64_MAX / length};
}

// A unit whose name begins with another's stands before it.
constexpr Unit kUnits[] = {MakeUnit("ns", 1),
                           MakeUnit("us", 1000),
                           MakeUnit("\xC2\xB5s", 1000),  // the micro sign
                           MakeUnit("\xCE\xBCs", 1000),  // the Greek letter
                           MakeUnit("ms", 1000000),
                           MakeUnit("s", kNanosPerSec),
                           MakeUnit("m", 60 * kNanosPerSec),
                           MakeUnit("h", 3600 * kNanosPerSec),
                           MakeUnit("d", 86400 * kNanosPerSec),
                           MakeUnit("w", 604800 * kNanosPerSec)};

ZemUint64 AddSaturating(ZemUint64 a, ZemUint64 b)
{
    return a <= UINT64_MAX - b ? a + b : UINT64_MAX;
}

// A decimal number: the whole part, UINT64_MAX where it is about 2^64 or more, and 18 digits of the
// fraction.
struct Decimal {
    ZemUint64 whole = 0;
    ZemUint64 fraction = 0;
};

// Reads a number at byte `i`; returns where it ends, or `i` when there is none.
ZemSizeT ReadNumber(const char* s, ZemSizeT size, ZemSizeT i, Decimal& number)
{
    for (; ZemIsDigitAt(s, size, i); ++i) {
        number.whole = number.whole <= UINT64_MAX / 10 - 1
                           ? number.whole * 10 + static_cast<ZemUint64>(s[i] - '0')
                           : UINT64_MAX;
    }
    if (i < size && s[i] == '.' && ZemIsDigitAt(s, size, i + 1)) {
        ZemUint64 unit = kNanosPerSec * kNanosPerSec / 10;
        for (++i; ZemIsDigitAt(s, size, i); ++i, unit /= 10) {
            number.fraction += static_cast<ZemUint64>(s[i] - '0') * unit;
        }
    }
    return i;
}

// Finds the unit at byte `i`; null when there is none.
const Unit* FindUnit(const char* s, ZemSizeT size, ZemSizeT i)
{
    for (const Unit& unit : kUnits) {
        if (i + unit.size <= size && s[i] == unit.name[0] &&
            std::memcmp(s + i, unit.name, unit.size) == 0) {
            return &unit;
        }
    }
    return nullptr;
}

// Nanoseconds, cut; UINT64_MAX when there are more.
ZemUint64 LengthOf(const Decimal& number, const Unit& in)
{
    ZemUint64 unit = in.length;
    ZemUint64 whole = number.whole <= in.most ? number.whole * unit : UINT64_MAX;
    // The fraction in two halves of nine digits keeps the products small.
    ZemUint64 high = number.fraction / kNanosPerSec;
    ZemUint64 low = number.fraction % kNanosPerSec;
    ZemUint64 part = unit >= kNanosPerSec
                         ? unit / kNanosPerSec * high + unit / kNanosPerSec * low / kNanosPerSec
                         : (unit * high + unit * low / kNanosPerSec) / kNanosPerSec;
    return AddSaturating(whole, part);
}

// 1 or 0.
ZemSizeT IsSpaceAt(const char* s, ZemSizeT size, ZemSizeT i)
{
    return i < size && s[i] == ' ' ? 1 : 0;
}

}  // namespace

ZemSizeT ZemTimeParseDuration(ZemTime* t, const char* s, ZemSizeT size)
{
    bool negative = size != 0 && s[0] == '-';
    ZemSizeT i = negative || (size != 0 && s[0] == '+') ? 1 : 0;
    ZemUint64 total = 0;
    ZemSizeT end = 0;  // of what is read for certain
    while (ZemIsDigitAt(s, size, i)) {
        Decimal number;
        i = ReadNumber(s, size, i, number);
        i += IsSpaceAt(s, size, i);
        const Unit* unit = FindUnit(s, size, i);
        if (unit == nullptr) {
            break;
        }
        i += unit->size;
        total = AddSaturating(total, LengthOf(number, *unit));
        end = i;
        i += IsSpaceAt(s, size, i);
    }
    if (end == 0 || !ZemMayEndAt(s, size, end)) {
        return 0;
    }
    constexpr auto kMost = static_cast<ZemUint64>(ZEM_TIME_INFINITE);
    if (negative) {
        *t = total <= kMost ? -static_cast<ZemTime>(total) : INT64_MIN;
    } else {
        *t = total <= kMost ? static_cast<ZemTime>(total) : ZEM_TIME_INFINITE;
    }
    return end;
}

// ---------------------------------------------------------------------------------------------
// Printing
// ---------------------------------------------------------------------------------------------

namespace {

// Room for a text of four-digit years and any offset. Words write no further, so that callers who
// take the sizes of the header get their texts written in place: a copy doubles the time.
constexpr ZemSizeT kRoom = ZEM_TIME_PRINT_SIZE;

// What texts seldom need stands in functions of its own, which are not inlined: it would take
// registers from the others, a fifth of the time of a text.

// Writes the fraction with its point, and up to eight digits more; returns its end.
inline char* WriteFraction(char* p, ZemUint32 nanosecs, ZemInt digits)
{
    if (digits <= 0) {
        return p;
    }
    // The first digit, and the others as 32 bits of a fraction, rounded up: right for each of the
    // 10^9 numbers. Then two digits at a time come from above the point.
    ZemUint64 rest = (ZemUint64{nanosecs} * 1441151881 >> 25) + 1;
    ZemStore2(p, '.' | ('0' + static_cast<ZemUint32>(rest >> 32)) << 8);
    auto writeTwo = [&rest](char* to) {
        rest = (rest & UINT32_MAX) * 100;
        ZemWriteTwo(to, static_cast<ZemUint32>(rest >> 32));
    };
    writeTwo(p + 2);
    if (digits <= 3) {
        return p + 1 + digits;
    }
    writeTwo(p + 4);
    writeTwo(p + 6);
    writeTwo(p + 8);
    return p + 1 + (digits < 9 ? digits : 9);
}

// Writes an offset that has seconds, or 100 hours or more, and its NUL; returns where that stands.
[[gnu::noinline]] char* WriteLongOffset(char* p, ZemInt offset)
{
    ZemPrintedOffset_ o = ZemOffsetToPrint(offset);
    if (o.hours < 100) {
        ZemStore8(p, ZemOffsetWord(&o));
        ZemStore4(p + 6, ':' | ZemTwoDigits(o.seconds) << 8);
        return p + 9;
    }
    return p + ZemSNPrintf(p, 16, o.seconds == 0 ? "%s%02u:%02u" : "%s%02u:%02u:%02u",
                           o.negative != 0 ? "-" : "+", o.hours, o.minutes, o.seconds);
}

// Writes the zone, its NUL and up to eight bytes more; returns where the NUL stands.
inline char* WriteZone(char* p, ZemInt offset)
{
    if (offset == 0) {
        ZemStore2(p, 'Z');
        return p + 1;
    }
    ZemPrintedOffset_ o = ZemOffsetToPrint(offset);
    if (o.hours > 99 || o.seconds != 0) {
        return WriteLongOffset(p, offset);
    }
    ZemStore8(p, ZemOffsetWord(&o));
    return p + 6;
}

// Writes what follows date and time, and its NUL; returns the length of the whole text, which
// begins at `text`.
inline ZemSizeT WriteRest(char* text, char* p, ZemUint32 nanosecs, ZemInt digits, ZemInt offset)
{
    return static_cast<ZemSizeT>(WriteZone(WriteFraction(p, nanosecs, digits), offset) - text);
}

// Writes the text of fields that fill their width, up to kRoom bytes; returns its length.
[[gnu::always_inline]] inline ZemSizeT WriteTimestamp(char* p, const ZemPrintedTime_* x,
                                                      ZemInt offset, ZemInt digits)
{
    ZemWriteDateAndTime(p, x, 'T');
    return WriteRest(p, p + ZEM_DATE_AND_TIME_SIZE, static_cast<ZemUint32>(x->nanosecs), digits,
                     offset);
}

[[gnu::noinline]] ZemSizeT PrintCut(ZemTime t, ZemInt offset, ZemInt digits, char* buf,
                                    ZemSizeT len)
{
    char local[kRoom];
    ZemTimePrint(t, offset, digits, local, sizeof local);
    return ZemStrLCpy(buf, local, len);
}

}  // namespace

ZemSizeT ZemTimePrint(ZemTime t, ZemInt offset, ZemInt digits, char* buf, ZemSizeT len)
{
    if (len < kRoom) {
        return PrintCut(t, offset, digits, buf, len);
    }
    // Everything counts from a time before the first, so that division rounds down: 200 years and
    // more before 1970, in days.
    constexpr ZemInt64 kBias = 150000;
    constexpr ZemInt64 kBiasSecs = kBias * ZEM_CIVIL_SECS_PER_DAY;
    ZemInt64 secs = t / 1000000000;
    ZemInt64 nanosecs = t % 1000000000;
    ZemInt64 before = nanosecs < 0 ? 1 : 0;
    secs -= before;
    nanosecs += before * 1000000000;
    auto biased = static_cast<ZemUint64>(secs + offset + kBiasSecs);
    auto day = static_cast<ZemInt>(biased / ZEM_CIVIL_SECS_PER_DAY);
    ZemCivilDate date = ZemCivilDateOfDay(day - static_cast<ZemInt>(kBias));
    ZemCivilTime time =
        ZemCivilTimeOfSecond(static_cast<ZemUint32>(biased % ZEM_CIVIL_SECS_PER_DAY));
    // Every ZemTime has a year of four digits.
    ZemPrintedTime_ x = {static_cast<ZemInt>(date.year),
                         static_cast<ZemInt>(date.month),
                         static_cast<ZemInt>(date.day),
                         static_cast<ZemInt>(time.hour),
                         static_cast<ZemInt>(time.minute),
                         static_cast<ZemInt>(time.second),
                         nanosecs};
    return WriteTimestamp(buf, &x, offset, digits);
}

namespace {

// The text of a record in a buffer of any size, or with fields of any value.
[[gnu::noinline]] ZemSizeT PrintAny(const ZemGregorianTime* gt, ZemInt digits, char* buf,
                                    ZemSizeT len)
{
    ZemPrintedTime_ x = ZemFieldsToPrint(gt);
    ZemInt offset = ZemGregorianTimeGetUTCOffset(gt);
    if (x.nanosecs < 0 || x.nanosecs > 999999999) {
        return ZemStrLCpy(buf, "", len);
    }
    char local[128];
    if (ZemFieldsFillTheirWidth(&x)) {
        WriteTimestamp(local, &x, offset, digits);
    } else {
        char* end = local + ZemSNPrintf(local, sizeof local, "%04d-%02d-%02dT%02d:%02d:%02d",
                                        x.year, x.month, x.day, x.hour, x.minute, x.second);
        WriteRest(local, end, static_cast<ZemUint32>(x.nanosecs), digits, offset);
    }
    return ZemStrLCpy(buf, local, len);
}

}  // namespace

ZemSizeT ZemGregorianTimePrint(const ZemGregorianTime* gt, ZemInt digits, char* buf, ZemSizeT len)
{
    ZemPrintedTime_ x = ZemFieldsOfRecord(gt);
    ZemInt offset = ZemGregorianTimeGetUTCOffset(gt);
    constexpr ZemInt kHundredHours = 360000;
    bool fits = len >= ZEM_GREGORIAN_TIME_PRINT_SIZE && ZemFieldsFillTheirWidth(&x) &&
                offset > -kHundredHours && offset < kHundredHours;
    return fits ? WriteTimestamp(buf, &x, offset, digits) : PrintAny(gt, digits, buf, len);
}

namespace {

// Appends `whole` and the fraction `part` of 10^`digits`, without the zeros that end it; returns
// its end.
char* AppendDecimal(char* p, ZemUint32 whole, ZemUint32 part, unsigned digits)
{
    p += ZemSNPrintf(p, 16, "%u", whole);
    if (part == 0) {
        return p;
    }
    for (; part % 10 == 0; part /= 10) {
        --digits;
    }
    char* end = p + 1 + digits;
    *p = '.';
    for (p = end; digits > 0; --digits, part /= 10) {
        *--p = static_cast<char>('0' + part % 10);
    }
    return end;
}

}  // namespace

ZemSizeT ZemTimePrintDuration(ZemTime t, char* buf, ZemSizeT len)
{
    ZemUint64 n = t < 0 ? 0 - static_cast<ZemUint64>(t) : static_cast<ZemUint64>(t);
    auto nanosecs = static_cast<ZemUint32>(n % kNanosPerSec);
    ZemUint64 secs = n / kNanosPerSec;
    auto hours = static_cast<ZemUint32>(secs / 3600);
    auto minutes = static_cast<ZemUint32>(secs / 60 % 60);
    auto seconds = static_cast<ZemUint32>(secs % 60);

    char text[48];
    char* p = text;
    const char* unit = "s";
    if (t < 0) {
        *p++ = '-';
    }
    if (hours != 0) {
        p += ZemSNPrintf(p, 16, "%uh", hours);
    }
    if (minutes != 0) {
        p += ZemSNPrintf(p, 16, "%um", minutes);
    }
    if (secs != 0 || n == 0) {
        if (seconds != 0 || nanosecs != 0 || n == 0) {
            p = AppendDecimal(p, seconds, nanosecs, 9);
        } else {
            unit = "";
        }
    } else if (nanosecs >= 1000000) {
        p = AppendDecimal(p, nanosecs / 1000000, nanosecs % 1000000, 6);
        unit = "ms";
    } else if (nanosecs >= 1000) {
        p = AppendDecimal(p, nanosecs / 1000, nanosecs % 1000, 3);
        unit = "us";
    } else {
        p = AppendDecimal(p, nanosecs, 0, 0);
        unit = "ns";
    }
    ZemStrLCpy(p, unit, sizeof text - static_cast<ZemSizeT>(p - text));
    return ZemStrLCpy(buf, text, len);
}
