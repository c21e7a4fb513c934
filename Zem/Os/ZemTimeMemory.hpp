// Allocators across the border: standard containers on a ZemAllocator, and ZemTime's containers on
// a std::pmr::memory_resource. C++17. Not part of ZemTime.hpp: <memory_resource> takes longer to
// compile than all of that.
//
// A ZemAllocator promises alignment to 8 bytes. Where more is asked for, blocks are requested with
// that much more room and a pointer to their beginning in front.

#ifndef ZEM_OS_ZEMTIMEMEMORY_HPP
#define ZEM_OS_ZEMTIMEMEMORY_HPP

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#if __has_include(<memory_resource>)
#include <memory_resource>
#endif

#include "Zem/Utils/ZemAllocator.hpp"

namespace zem {

namespace detail {

inline constexpr std::size_t kPromisedAlignment = 8;
static_assert(sizeof(void*) == kPromisedAlignment);

// A block of `size` bytes, of at least one, at a multiple of `alignment`, which is a power of two;
// null when there is none.
inline void* AllocateAligned(ZemAllocator* a, std::size_t size, std::size_t alignment) noexcept
{
    if (alignment <= kPromisedAlignment) {
        return ZemAllocatorAllocate(a, size == 0 ? 1 : size);
    }
    if (size > SIZE_MAX - alignment) {
        return nullptr;
    }
    void* block = ZemAllocatorAllocate(a, size + alignment);
    if (block == nullptr) {
        return nullptr;
    }
    // At least the size of a pointer behind the beginning: both are multiples of that.
    char* at = static_cast<char*>(block) +
               (alignment - reinterpret_cast<std::uintptr_t>(block) % alignment);
    std::memcpy(at - sizeof block, &block, sizeof block);
    return at;
}

inline void DeallocateAligned(ZemAllocator* a, void* at, std::size_t size,
                              std::size_t alignment) noexcept
{
    if (alignment <= kPromisedAlignment) {
        ZemAllocatorDeallocate(a, at, size == 0 ? 1 : size);
        return;
    }
    void* block = nullptr;
    std::memcpy(&block, static_cast<char*>(at) - sizeof block, sizeof block);
    ZemAllocatorDeallocate(a, block, size + alignment);
}

}  // namespace detail

// A standard allocator over a ZemAllocator, which must outlive what it hands out. Two are equal
// when they are over the same record. Containers take it along when they are moved or swapped, as a
// RangeVector does, and keep their own when they are assigned to.
template <class T>
class Allocator {
  public:
    using value_type = T;
    using propagate_on_container_copy_assignment = std::false_type;
    using propagate_on_container_move_assignment = std::true_type;
    using propagate_on_container_swap = std::true_type;
    using is_always_equal = std::false_type;

    Allocator() noexcept : a_(DefaultAllocator()) {}

    // Implicit, as containers take their allocators: std::vector<T, zem::Allocator<T>> v(&a).
    Allocator(ZemAllocator* a) noexcept : a_(a) {}  // NOLINT(google-explicit-constructor)
    template <class U>
    Allocator(const Allocator<U>& other) noexcept  // NOLINT(google-explicit-constructor)
        : a_(other.handle())
    {}

    // Memory for `n` objects; throws std::bad_alloc when there is none, or aborts without
    // exceptions.
    ZEM_MAY_THROW_ T* allocate(std::size_t n)
    {
        void* block = n <= SIZE_MAX / sizeof(T)
                          ? detail::AllocateAligned(a_, n * sizeof(T), alignof(T))
                          : nullptr;
        if (block == nullptr) {
            detail::OutOfMemory();
        }
        return static_cast<T*>(block);
    }

    void deallocate(T* block, std::size_t n) noexcept
    {
        detail::DeallocateAligned(a_, block, n * sizeof(T), alignof(T));
    }

    ZemAllocator* handle() const noexcept
    {
        return a_;
    }

    template <class U>
    friend bool operator==(const Allocator& a, const Allocator<U>& b) noexcept
    {
        return a.handle() == b.handle();
    }
    template <class U>
    friend bool operator!=(const Allocator& a, const Allocator<U>& b) noexcept
    {
        return a.handle() != b.handle();
    }

  private:
    ZemAllocator* a_;
};

#if __has_include(<memory_resource>)

// A memory resource over a ZemAllocator, which must outlive what it hands out. Equal to itself
// alone. One class with exceptions and another without, since the linker keeps one table of virtual
// functions: pass it on as a std::pmr::memory_resource.
class ZEM_MAY_THROW_ MemoryResource : public std::pmr::memory_resource {
  public:
    explicit MemoryResource(ZemAllocator* a = DefaultAllocator()) noexcept : a_(a) {}

    ZemAllocator* handle() const noexcept
    {
        return a_;
    }

  private:
    void* do_allocate(std::size_t size, std::size_t alignment) override
    {
        void* block = detail::AllocateAligned(a_, size, alignment);
        if (block == nullptr) {
            detail::OutOfMemory();
        }
        return block;
    }

    void do_deallocate(void* block, std::size_t size, std::size_t alignment) override
    {
        detail::DeallocateAligned(a_, block, size, alignment);
    }

    bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override
    {
        return this == &other;
    }

    ZemAllocator* a_;
};

// A ZemAllocator over a memory resource, which must outlive what it hands out, as must this object.
// Blocks suit any scalar type. Where the resource throws, the allocator returns null; in a program
// without exceptions the resource decides what happens.
class ResourceAllocator {
  public:
    ZEM_MAY_THROW_ explicit ResourceAllocator(std::pmr::memory_resource* resource) noexcept
        : a_{Allocate, Deallocate, SIZE_MAX, resource}
    {}
    // Containers hold its address.
    ResourceAllocator(const ResourceAllocator&) = delete;
    ResourceAllocator& operator=(const ResourceAllocator&) = delete;

    // What to construct a container with.
    ZemAllocator* handle() noexcept
    {
        return &a_;
    }

  private:
    static std::pmr::memory_resource* ResourceOf(ZemAllocator* a) noexcept
    {
        return static_cast<std::pmr::memory_resource*>(a->userData);
    }

    ZEM_MAY_THROW_ static ZemVoidPtr Allocate(ZemAllocator* a, ZemSizeT size)
    {
#if defined(__cpp_exceptions)
        try {
            return size == 0 ? nullptr : ResourceOf(a)->allocate(size, alignof(std::max_align_t));
        } catch (...) {
            return nullptr;
        }
#else
        return size == 0 ? nullptr : ResourceOf(a)->allocate(size, alignof(std::max_align_t));
#endif
    }

    static void Deallocate(ZemAllocator* a, ZemVoidPtr block, ZemSizeT size)
    {
        ResourceOf(a)->deallocate(block, size, alignof(std::max_align_t));
    }

    ZemAllocator a_;
};

#endif

}  // namespace zem

#endif
