// Digits in words of eight bytes: loads and stores that are little-endian on every host, and the
// arithmetic on all bytes of a word at once.
//
// Not installed and exports nothing. Plain C, as the provers read it.

#ifndef ZEM_UTILS_PRIVATE_ZEMDIGITS_H
#define ZEM_UTILS_PRIVATE_ZEMDIGITS_H

#include <string.h>

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

// A word of eight characters, the first in its lowest byte.
#define ZEM_WORD(a, b, c, d, e, f, g, h)                                                  \
    ((ZemUint64)(a) | (ZemUint64)(b) << 8 | (ZemUint64)(c) << 16 | (ZemUint64)(d) << 24 | \
     (ZemUint64)(e) << 32 | (ZemUint64)(f) << 40 | (ZemUint64)(g) << 48 | (ZemUint64)(h) << 56)

// The same byte eight times.
#define ZEM_BYTES(b) ((ZemUint64)(b)*0x0101010101010101)

#define ZEM_HIGH_BITS ZEM_BYTES(0x80)

// The eight bytes at `p`; gcc and clang make one load of it.
static inline ZemUint64 ZemLoad8(const char* p)
{
    return ZEM_WORD((unsigned char)p[0], (unsigned char)p[1], (unsigned char)p[2],
                    (unsigned char)p[3], (unsigned char)p[4], (unsigned char)p[5],
                    (unsigned char)p[6], (unsigned char)p[7]);
}

// The two bytes at `p`.
static inline ZemUint32 ZemLoad2(const char* p)
{
    return (ZemUint32)(unsigned char)p[0] | (ZemUint32)(unsigned char)p[1] << 8;
}

// The bytes of a text of `size` bytes, at least eight, from its byte `i` on, `i` being at most
// `size`; zeros stand for those behind its end.
static inline ZemUint64 ZemLoadWithin(const char* s, ZemSizeT size, ZemSizeT i)
{
    ZemSizeT shift;
    // A branch, as texts of one kind take the same side: without it a text takes 19 ns, not 17.
    if (i + 8 <= size) {
        return ZemLoad8(s + i);
    }
    // Half of the shift at a time: all of it may be 64 bits.
    shift = 4 * (i + 8 - size);
    return ZemLoad8(s + (size - 8)) >> shift >> shift;
}

// High bits of a word where its bytes, compared with '0' by an exclusive or, are no digits.
static inline ZemUint64 ZemNotDigits(ZemUint64 word)
{
    // Sets the high bit from 10 on; what carries from byte to byte comes from one that has it set.
    return ((word + ZEM_BYTES(0x76)) | word) & ZEM_HIGH_BITS;
}

// How many bytes, from the lowest on, lie before the first that has its high bit set. Some has.
static inline ZemUint32 ZemCountBytes(ZemUint64 highBits)
{
#if defined(__GNUC__)
    return (ZemUint32)__builtin_ctzll(highBits) / 8;
#else
    ZemUint32 count = 0;
    for (; (highBits & 0x80) == 0; highBits >>= 8) {
        ++count;
    }
    return count;
#endif
}

// Two digits in neighbouring bytes, the tens first, become their number in the first of the two;
// what the other becomes means nothing. Bytes are 0 to 9.
static inline ZemUint64 ZemPairUp(ZemUint64 digits)
{
    return digits * 10 + (digits >> 8);
}

// The number that eight digits say, the first in the lowest byte. Bytes are 0 to 9.
static inline ZemUint32 ZemNumberOf8(ZemUint64 digits)
{
    ZemUint64 pairs = ZemPairUp(digits) & 0x00FF00FF00FF00FF;
    ZemUint64 fours = (pairs * 100 + (pairs >> 16)) & 0x0000FFFF0000FFFF;
    return (ZemUint32)(fours * 10000 + (fours >> 32));
}

// ---------------------------------------------------------------------------------------------
// Writing
// ---------------------------------------------------------------------------------------------

static const char kZemDigitPairs[] =
    "0001020304050607080910111213141516171819202122232425262728293031323334353637383940414243444546"
    "4748495051525354555657585960616263646566676869707172737475767778798081828384858687888990919293"
    "949596979899";

// The two digits of `value`, below 100, the tens in the lowest byte.
static inline ZemUint32 ZemTwoDigits(ZemUint32 value)
{
    return ZemLoad2(kZemDigitPairs + 2 * (ZemSizeT)value);
}

// The three digits of `value`, below 1,000.
static inline ZemUint32 ZemThreeDigits(ZemUint32 value)
{
    return ('0' + value / 100) | ZemTwoDigits(value % 100) << 8;
}

#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
#define ZEM_LITTLE_ENDIAN_64(word) __builtin_bswap64(word)
#define ZEM_LITTLE_ENDIAN_32(word) __builtin_bswap32(word)
#define ZEM_LITTLE_ENDIAN_16(word) __builtin_bswap16(word)
#else
#define ZEM_LITTLE_ENDIAN_64(word) (word)
#define ZEM_LITTLE_ENDIAN_32(word) (word)
#define ZEM_LITTLE_ENDIAN_16(word) (word)
#endif

// Stores the bytes of a word, the lowest first. (Compilers do not join stores of single bytes.)
static inline void ZemStore8(char* p, ZemUint64 word)
{
    word = ZEM_LITTLE_ENDIAN_64(word);
    memcpy(p, &word, 8);
}

static inline void ZemStore4(char* p, ZemUint32 word)
{
    word = ZEM_LITTLE_ENDIAN_32(word);
    memcpy(p, &word, 4);
}

static inline void ZemStore2(char* p, ZemUint32 word)
{
    uint16_t half = ZEM_LITTLE_ENDIAN_16((uint16_t)word);
    memcpy(p, &half, 2);
}

#endif
