// The allocator record, and two allocators ready to use.
//
// Containers draw their memory from a ZemAllocator that the caller supplies. The record is two
// callbacks, a limit and a context pointer; anyone may fill one in by hand. Callbacks written in
// C++ must not throw: they are called from functions that throw nothing.

#ifndef ZEM_UTILS_ZEMALLOCATOR_H
#define ZEM_UTILS_ZEMALLOCATOR_H

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZemAllocatorS_ ZemAllocator;

// Returns a block of at least `size` bytes, aligned for the container's elements (8 bytes for
// ZemTimeRange), or null when it cannot.
typedef ZemVoidPtr (*ZemAllocatorAllocateCallback)(ZemAllocator* allocator, ZemSizeT size);

// Takes back a block that the same allocator handed out; `size` is the count it was asked for.
typedef void (*ZemAllocatorDeallocateCallback)(ZemAllocator* allocator, ZemVoidPtr block,
                                               ZemSizeT size);

struct ZemAllocatorS_ {
    ZemAllocatorAllocateCallback allocate;
    ZemAllocatorDeallocateCallback deallocate;
    ZemSizeT maxSize;     // the allocator's own limit in bytes; containers do not read it
    ZemVoidPtr userData;  // the allocator's own context; containers do not read it
};

// Calls the record's `allocate` with the record and `s_` bytes and returns its result: a block, or
// null. Adds no test of its own: `a_` must be a filled record, `maxSize` is not looked at.
ZEM_API ZemVoidPtr ZemAllocatorAllocate(ZemAllocator* a_, ZemSizeT s_);

// Calls the record's `deallocate` with the record, the block `p_` and its size `s_` in bytes.
// Adds no test of its own.
ZEM_API void ZemAllocatorDeallocate(ZemAllocator* a_, ZemVoidPtr p_, ZemSizeT s_);

// Fills `a` with an allocator over malloc and free that refuses any single request of more than
// `maxSize` bytes (SIZE_MAX: no limit), and returns `a`. A request of 0 bytes returns null. The
// record keeps no state, so threads may share it. Needs no tear-down.
ZEM_API ZemAllocator* ZemAllocatorConstructMalloc(ZemAllocator* a, ZemSizeT maxSize);

// An allocator over one buffer of the caller's: a stack array, an arena, a static block. Hand
// `&fixed.allocator` to a container. Serves one thread at a time. It points to itself: do not copy
// or move the record.
typedef struct ZemFixedAllocator {
    ZemAllocator allocator;  // maxSize: the usable bytes of the buffer
    char* begin;             // the buffer's first aligned byte
    ZemSizeT used;           // bytes from `begin` up to the topmost room in use
    ZemSizeT blocks;         // blocks handed out and not yet taken back
} ZemFixedAllocator;

// Fills `fixed` with an allocator over the `size` bytes at `buffer` and returns it. The buffer
// belongs to the caller and must outlive every container on it; it may have any alignment and any
// size, 0 included (`buffer` may then be null). Blocks start at multiples of 16 bytes.
//
// Blocks are stacked: a request that does not fit above the topmost room in use, or of 0 bytes,
// returns null. Handing back the block that is topmost frees its room at once; any other stays in
// the stack as a hole, and holds up those beneath it, until the last block of all is returned. A
// container that grows by doubling therefore leaves its smaller blocks behind: reserve the capacity
// up front, or give it four times the room of its elements.
ZEM_API ZemFixedAllocator* ZemFixedAllocatorConstruct(ZemFixedAllocator* fixed, ZemVoidPtr buffer,
                                                      ZemSizeT size);

// The layouts that compiled callers rely on.
static_assert(sizeof(ZemAllocator) == 32, "layout");
static_assert(offsetof(ZemAllocator, deallocate) == 8, "layout");
static_assert(offsetof(ZemAllocator, maxSize) == 16, "layout");
static_assert(offsetof(ZemAllocator, userData) == 24, "layout");
static_assert(sizeof(ZemFixedAllocator) == 56, "layout");
static_assert(offsetof(ZemFixedAllocator, begin) == 32, "layout");
static_assert(offsetof(ZemFixedAllocator, used) == 40, "layout");
static_assert(offsetof(ZemFixedAllocator, blocks) == 48, "layout");

#ifdef __cplusplus
}
#endif

#endif
