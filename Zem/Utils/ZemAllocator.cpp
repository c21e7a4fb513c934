#include "Zem/Utils/ZemAllocatorInline.h"

#include <cstddef>
#include <cstdlib>

namespace {

constexpr ZemSizeT kAlignment = 16;
static_assert(kAlignment >= alignof(std::max_align_t), "a block suits any scalar type");

ZemVoidPtr MallocAllocate(ZemAllocator* allocator, ZemSizeT size)
{
    return size == 0 || size > allocator->maxSize ? nullptr : std::malloc(size);
}

void MallocDeallocate(ZemAllocator* /*allocator*/, ZemVoidPtr block, ZemSizeT /*size*/)
{
    std::free(block);
}

// Only for sizes of at most SIZE_MAX - kAlignment.
constexpr ZemSizeT RoundUp(ZemSizeT size)
{
    return (size + (kAlignment - 1)) / kAlignment * kAlignment;
}

ZemFixedAllocator* FixedOf(ZemAllocator* allocator)
{
    return static_cast<ZemFixedAllocator*>(allocator->userData);
}

ZemVoidPtr FixedAllocate(ZemAllocator* allocator, ZemSizeT size)
{
    ZemFixedAllocator* fixed = FixedOf(allocator);
    ZemSizeT room = allocator->maxSize - fixed->used;
    // `room` is a multiple of the alignment, so a size that fits still fits once rounded up.
    if (size == 0 || size > room) {
        return nullptr;
    }
    ZemVoidPtr block = fixed->begin + fixed->used;
    fixed->used += RoundUp(size);
    ++fixed->blocks;
    return block;
}

void FixedDeallocate(ZemAllocator* allocator, ZemVoidPtr block, ZemSizeT size)
{
    ZemFixedAllocator* fixed = FixedOf(allocator);
    if (--fixed->blocks == 0) {
        fixed->used = 0;
    } else if (static_cast<char*>(block) + RoundUp(size) == fixed->begin + fixed->used) {
        fixed->used -= RoundUp(size);
    }
}

}  // namespace

ZemAllocator* ZemAllocatorConstructMalloc(ZemAllocator* a, ZemSizeT maxSize)
{
    *a = {MallocAllocate, MallocDeallocate, maxSize, nullptr};
    return a;
}

ZemFixedAllocator* ZemFixedAllocatorConstruct(ZemFixedAllocator* fixed, ZemVoidPtr buffer,
                                              ZemSizeT size)
{
    ZemSizeT skipped = (kAlignment - reinterpret_cast<uintptr_t>(buffer) % kAlignment) % kAlignment;
    bool usable = size >= skipped + kAlignment;
    ZemSizeT room = usable ? (size - skipped) / kAlignment * kAlignment : 0;
    char* begin = usable ? static_cast<char*>(buffer) + skipped : nullptr;
    *fixed = {{FixedAllocate, FixedDeallocate, room, fixed}, begin, 0, 0};
    return fixed;
}
