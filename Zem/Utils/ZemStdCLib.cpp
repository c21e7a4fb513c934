#include "Zem/Utils/ZemStdCLibInline.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "Zem/Utils/Private/ZemCivil.h"
#include "Zem/Utils/Private/ZemDigits.h"

// ---------------------------------------------------------------------------------------------
// Text
// ---------------------------------------------------------------------------------------------

namespace {

constexpr unsigned kMaxDigits = 10;  // 2^32 - 1
constexpr ZemUint32 kPowersOf10[kMaxDigits] = {1,      10,      100,      1000,      10000,
                                               100000, 1000000, 10000000, 100000000, 1000000000};

unsigned CountDigits(ZemUint32 value)
{
    unsigned count = 1;
    while (count < kMaxDigits && value >= kPowersOf10[count]) {
        ++count;
    }
    return count;
}

// Writes `value`, below 100, in two digits.
void WritePair(char* out, ZemUint32 value)
{
    std::memcpy(out, kZemDigitPairs + 2 * value, 2);
}

// Writes `value` in exactly `count` digits, at least as many as it has and at most kMaxDigits.
void WriteDigits(char* out, ZemUint32 value, unsigned count)
{
    for (; count > 2; value /= 100) {
        count -= 2;
        WritePair(out + count, value % 100);
    }
    if (count == 2) {
        WritePair(out, value);
    } else {
        *out = static_cast<char>('0' + value);
    }
}

// A bounded text under construction: `length` counts all that was appended, what lies beyond
// `capacity` bytes is dropped.
struct BoundedText {
    char* buf;
    ZemSizeT capacity;
    ZemSizeT length;

    void Append(char c)
    {
        if (length < capacity) {
            buf[length] = c;
        }
        ++length;
    }

    void Append(const char* text, ZemSizeT size)
    {
        if (length < capacity) {
            std::memcpy(buf + length, text, std::min(size, capacity - length));
        }
        length += size;
    }

    // Appends a number of `count` digits, at least one, with leading zeros where it has fewer.
    void AppendDigits(ZemUint32 value, unsigned count)
    {
        if (length + kMaxDigits <= capacity) {
            WriteDigits(buf + length, value, count);
            length += count;
        } else {
            char digits[kMaxDigits];
            WriteDigits(digits, value, count);
            Append(digits, count);
        }
    }

    // %d and %u, padded to `width` (0 to 9) as printf pads: with zeros after the sign, or with
    // spaces in front of it. The value is an int or an unsigned.
    void AppendNumber(ZemInt64 value, unsigned width, bool zeros)
    {
        bool negative = value < 0;
        auto magnitude = static_cast<ZemUint32>(negative ? -value : value);
        unsigned digits = CountDigits(magnitude);
        unsigned size = digits + (negative ? 1 : 0);
        if (zeros) {
            digits += width > size ? width - size : 0;
        } else {
            for (; size < width; ++size) {
                Append(' ');
            }
        }
        if (negative) {
            Append('-');
        }
        AppendDigits(magnitude, digits);
    }

    // The last byte makes room for the NUL where the text was cut.
    void Terminate() const
    {
        if (capacity != 0) {
            buf[std::min(length, capacity - 1)] = '\0';
        }
    }
};

}  // namespace

ZemSizeT ZemSNPrintf(char* buf, ZemSizeT len, const char* format, ...)
{
    BoundedText text{buf, len, 0};
    const char* p = format;
    std::va_list args;
    va_start(args, format);

    bool known = true;
    while (known && *p != '\0') {
        if (*p != '%') {
            text.Append(*p++);
            continue;
        }
        ++p;
        if (*p == 's') {
            const char* s = va_arg(args, const char*);
            known = s != nullptr;
            for (; known && *s != '\0'; ++s) {
                text.Append(*s);
            }
            ++p;
            continue;
        }
        bool zeros = *p == '0';
        p += zeros ? 1 : 0;
        unsigned width = 0;
        if (*p >= '1' && *p <= '9') {
            width = static_cast<unsigned>(*p++ - '0');
        }
        known = *p == 'd' || *p == 'u';
        if (known) {
            text.AppendNumber(*p == 'd' ? va_arg(args, int) : ZemInt64{va_arg(args, unsigned)},
                              width, zeros);
            ++p;
        }
    }
    va_end(args);

    if (known) {
        text.Terminate();
        return text.length;
    }
    va_start(args, format);
    int length = std::vsnprintf(buf, len, format, args);
    va_end(args);
    return static_cast<ZemSizeT>(length);
}

ZemSizeT ZemStrLCpy(char* dst, const char* src, ZemSizeT size)
{
    BoundedText text{dst, size, 0};
    for (const char* p = src; *p != '\0'; ++p) {
        text.Append(*p);
    }
    text.Terminate();
    return text.length;
}

// ---------------------------------------------------------------------------------------------
// Calendar
// ---------------------------------------------------------------------------------------------

struct tm* ZemLocalTimeR(const time_t* secs, struct tm* result)
{
    return localtime_r(secs, result);
}

#if defined(ZEMTIME_LIBC_CALENDAR)

struct tm* ZemGmTimeR(const time_t* secs, struct tm* result)
{
    struct tm converted;
    if (gmtime_r(secs, &converted) == nullptr) {
        return nullptr;
    }
    *result = converted;
    return result;
}

time_t ZemTimeGm(const struct tm* t)
{
    struct tm normalised = *t;
    return timegm(&normalised);
}

#else

struct tm* ZemGmTimeR(const time_t* secs, struct tm* result)
{
    return ZemCivilGmTimeR(secs, result);
}

time_t ZemTimeGm(const struct tm* t)
{
    return ZemCivilTimeGm(t);
}

#endif
