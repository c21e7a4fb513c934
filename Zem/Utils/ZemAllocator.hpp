// What the C++ headers share: the allocator that they take where none is named, and how they report
// that there is no memory. C++17.

#ifndef ZEM_UTILS_ZEMALLOCATOR_HPP
#define ZEM_UTILS_ZEMALLOCATOR_HPP

#include <cstdint>
#include <cstdlib>
#include <new>
#include <string_view>

#include "Zem/Utils/ZemAllocatorInline.h"

// libstdc++ declares functions that throw where its <string_view> needs them. <stdexcept>, which
// brings std::string, doubles the time that these headers take to compile.
#if !defined(__GLIBCXX__)
#include <stdexcept>
#endif

// Stands before every function that may throw, or that hands on the address of one. A program may
// have exceptions on in one source and off in another; the linker then finds two bodies of one
// inline function and takes either, so the two have names of their own.
#if defined(__cpp_exceptions)
#define ZEM_MAY_THROW_ [[gnu::abi_tag("zemthrow")]]
#else
#define ZEM_MAY_THROW_ [[gnu::abi_tag("zemabort")]]
#endif

namespace zem {

namespace detail {

inline ZemVoidPtr DefaultAllocate(ZemAllocator* /*allocator*/, ZemSizeT size)
{
    return size == 0 ? nullptr : std::malloc(size);
}

inline void DefaultDeallocate(ZemAllocator* /*allocator*/, ZemVoidPtr block, ZemSizeT /*size*/)
{
    std::free(block);
}

// One for the whole program, shared objects with hidden symbols included, and there before any
// constructor runs.
[[gnu::visibility("default")]] inline ZemAllocator defaultAllocator = {
    DefaultAllocate, DefaultDeallocate, SIZE_MAX, nullptr};

[[noreturn, gnu::cold]] ZEM_MAY_THROW_ inline void OutOfMemory()
{
#if defined(__cpp_exceptions)
    throw std::bad_alloc();
#else
    std::abort();
#endif
}

[[noreturn, gnu::cold]] ZEM_MAY_THROW_ inline void TooLarge()
{
#if !defined(__cpp_exceptions)
    std::abort();
#elif defined(__GLIBCXX__)
    std::__throw_length_error("zem: more than max_size()");
#else
    throw std::length_error("zem: more than max_size()");
#endif
}

[[noreturn, gnu::cold]] ZEM_MAY_THROW_ inline void OutOfRange()
{
#if !defined(__cpp_exceptions)
    std::abort();
#elif defined(__GLIBCXX__)
    std::__throw_out_of_range("zem: no element at this index");
#else
    throw std::out_of_range("zem: no element at this index");
#endif
}

}  // namespace detail

// The allocator over malloc and free that containers and zones take where none is named. Needs no
// set-up, keeps no state, and may be used from any thread; its limit must not be changed.
inline ZemAllocator* DefaultAllocator() noexcept
{
    return &detail::defaultAllocator;
}

}  // namespace zem

#endif
