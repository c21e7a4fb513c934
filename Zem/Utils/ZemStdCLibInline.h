// Bodies of the small operations of ZemStdCLib.h.

#ifndef ZEM_UTILS_ZEMSTDCLIBINLINE_H
#define ZEM_UTILS_ZEMSTDCLIBINLINE_H

#include <stdlib.h>
#include <string.h>

#include "Zem/Utils/ZemStdCLib.h"

#if defined(ZEM_INLINE)

ZEM_BODIES_BEGIN

ZEM_INLINE ZemVoidPtr ZemMemSet(ZemVoidPtr dst, int value, ZemSizeT size)
{
    return size == 0 ? dst : memset(dst, value, size);
}

ZEM_INLINE ZemUint32 ZemStrToUint32(const char* start, char** end, int base)
{
    // Up to 19 decimal digits stay below 2^64, where strtoul would stop counting; the low 32 bits
    // of such a number are the number computed modulo 2^32. All else is left to strtoul.
    if (base == 10) {
        ZemUint32 value = 0;
        int digits = 0;
        while (start[digits] >= '0' && start[digits] <= '9' && digits < 20) {
            value = value * 10 + (ZemUint32)(start[digits] - '0');
            ++digits;
        }
        if (digits >= 1 && digits <= 19) {
            if (end != NULL) {
                // strtoul gives its caller's const text back without the const.
                *end = (char*)(uintptr_t)(start + digits);
            }
            return value;
        }
    }
    return (ZemUint32)strtoul(start, end, base);
}

ZEM_BODIES_END

#endif

#endif
