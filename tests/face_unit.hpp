// What the sources of the mixed program share.
#pragma once

#include <cstdio>

#include "Zem/Os/ZemTime.hpp"

// Says in which language version and mode a check failed.
#define CHECK(ok)                                                                               \
    (failures += (ok) ? 0                                                                       \
                      : std::printf("%s:%d: %s (C++ %ld, exceptions %d)\n", __FILE__, __LINE__, \
                                    #ok, __cplusplus, ZEM_UNIT_THROWS) > 0)

#if defined(__cpp_exceptions)
#define ZEM_UNIT_THROWS 1
#else
#define ZEM_UNIT_THROWS 0
#endif

inline int failures = 0;

// An allocator that has no memory.
inline ZemAllocator empty = {[](ZemAllocator*, ZemSizeT) -> ZemVoidPtr { return nullptr; }, nullptr,
                             0, nullptr};

// Each checks what it can by itself and appends its number to `ranges`.
void Unit17(zem::RangeVector& ranges, zem::RangeSet& set);
void Unit17WithoutExceptions(zem::RangeVector& ranges, zem::RangeSet& set);
void Unit20(zem::RangeVector& ranges, zem::RangeSet& set);
void Unit20WithoutExceptions(zem::RangeVector& ranges, zem::RangeSet& set);
void Unit23(zem::RangeVector& ranges, zem::RangeSet& set);
