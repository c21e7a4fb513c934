// The library's base scalar types, and the two macros that every public header uses.
// Plain C11 and C++17.

#ifndef ZEM_UTILS_SYSDEP_ZEMBASETYPES_H
#define ZEM_UTILS_SYSDEP_ZEMBASETYPES_H

#include <assert.h>
#include <limits.h>
#include <stddef.h>
#include <stdint.h>

#if LONG_MAX != 9223372036854775807L
#error "Zem needs a platform whose long and time_t have 64 bits"
#endif

typedef int32_t ZemInt;
typedef uint32_t ZemUint;
typedef uint32_t ZemUint32;
typedef int64_t ZemInt64;
typedef uint64_t ZemUint64;
typedef uint8_t ZemBool;  // 0 is false, 1 is true; no function returns anything else
typedef size_t ZemSizeT;
typedef ptrdiff_t ZemDistanceT;
typedef void* ZemVoidPtr;

static_assert(sizeof(ZemInt) == 4, "ZemInt has 32 bits");
static_assert(sizeof(ZemUint) == 4, "ZemUint has 32 bits");
static_assert(sizeof(ZemUint32) == 4, "ZemUint32 has 32 bits");
static_assert(sizeof(ZemInt64) == 8, "ZemInt64 has 64 bits");
static_assert(sizeof(ZemUint64) == 8, "ZemUint64 has 64 bits");
static_assert(sizeof(ZemBool) == 1, "ZemBool has 8 bits");
static_assert(sizeof(ZemSizeT) == 8, "ZemSizeT has 64 bits");
static_assert(sizeof(ZemDistanceT) == 8, "ZemDistanceT has 64 bits");
static_assert(sizeof(ZemVoidPtr) == 8, "pointers have 64 bits");

// ZEM_API marks what the shared library exports; everything else in it is hidden. ZEM_SHARED is set
// by shared builds and by those who link them. Without it nothing is exported, so that a shared
// object which embeds the static library does not offer our functions as its own.
#if defined(ZEM_SHARED) && defined(__GNUC__)
#define ZEM_API __attribute__((visibility("default")))
#else
#define ZEM_API
#endif

// ZEM_INLINE stands before every body in the ...Inline.h headers.
//
// A small operation has one prototype (in the plain header), one body (in the inline header) and
// one symbol (in the library). With gnu_inline a body is a hint for the optimiser and never a
// symbol: a caller inlines it or calls the library, and its address is the library's everywhere.
// Exactly one source of the library sets ZEM_EMIT_INLINE and so compiles the bodies as ordinary
// functions. Compilers without gnu_inline skip the bodies and call the library.
#if defined(ZEM_EMIT_INLINE)
#define ZEM_INLINE
#elif defined(__GNUC__)
#define ZEM_INLINE extern inline __attribute__((gnu_inline))
#endif

// These stand around the bodies, which are C: a caller in C++ may have warnings on that C's casts
// and null pointers raise.
#if defined(__cplusplus) && defined(__GNUC__)
#define ZEM_BODIES_BEGIN                                                                  \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wold-style-cast\"") \
        _Pragma("GCC diagnostic ignored \"-Wzero-as-null-pointer-constant\"") extern "C"  \
    {
#define ZEM_BODIES_END \
    }                  \
    _Pragma("GCC diagnostic pop")
#else
#define ZEM_BODIES_BEGIN
#define ZEM_BODIES_END
#endif

#endif
