// Compiles the bodies of the inline headers once, as the library's exported functions. The only
// source that may define ZEM_EMIT_INLINE; it stays out of unity builds.

#define ZEM_EMIT_INLINE 1

#include "Zem/Os/ZemTimeInline.h"
