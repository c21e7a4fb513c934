// The algorithms of the library's generic vector, written once for any vector record with the
// fields `allocator`, `begin`, `end` and `endBuf`. Named instances (ZemVector_ZemTimeRange...) are
// one-line forwarders to these.
//
// Elements are trivially copyable and cost nothing to remove, so copies become memcpy and memmove
// (the standard algorithms never call those with an empty range) and removal only moves `end`.
//
// A vector holds no storage (three null pointers) or a block with room for at least one element;
// the allocator is never asked for 0 bytes and gets every block back with its exact size.

#ifndef ZEM_CONTAINERS_ZEMVECTOR_HPP
#define ZEM_CONTAINERS_ZEMVECTOR_HPP

#include <algorithm>
#include <memory>
#include <type_traits>

#include "Zem/Utils/ZemAllocatorInline.h"

namespace ZemVector {

template <class Vector>
using ElementOf = std::remove_pointer_t<decltype(Vector::begin)>;

template <class Vector>
ZemSizeT SizeOf(const Vector* x)
{
    return static_cast<ZemSizeT>(x->end - x->begin);
}

template <class Vector>
ZemSizeT CapacityOf(const Vector* x)
{
    return static_cast<ZemSizeT>(x->endBuf - x->begin);
}

// A block for `count` elements, at least one; null when the allocator cannot.
template <class Vector>
ElementOf<Vector>* Allocate(const Vector* x, ZemSizeT count)
{
    static_assert(std::is_trivially_copyable_v<ElementOf<Vector>>, "elements are copied bytewise");
    return static_cast<ElementOf<Vector>*>(
        ZemAllocatorAllocate(x->allocator, count * sizeof(ElementOf<Vector>)));
}

template <class Vector>
void HandBackBlock(Vector* x)
{
    if (x->begin != nullptr) {
        ZemAllocatorDeallocate(x->allocator, x->begin, CapacityOf(x) * sizeof(ElementOf<Vector>));
    }
}

// Makes `block`, with `size` live elements of `capacity` slots, the vector's storage.
template <class Vector>
void TakeBlock(Vector* x, ElementOf<Vector>* block, ZemSizeT size, ZemSizeT capacity)
{
    x->begin = block;
    x->end = block + size;
    x->endBuf = block + capacity;
}

template <class Vector>
void DropStorage(Vector* x)
{
    x->begin = nullptr;
    x->end = nullptr;
    x->endBuf = nullptr;
}

template <class Vector>
Vector* ConstructDefault(Vector* x, ZemAllocator* a)
{
    x->allocator = a;
    DropStorage(x);
    return x;
}

// Makes `x` a vector of `count` elements on `a`, which `fill(first slot)` writes.
template <class Vector, class Fill>
Vector* ConstructFilled(Vector* x, ZemAllocator* a, ZemSizeT count, Fill fill)
{
    Vector made;
    ConstructDefault(&made, a);
    if (count != 0) {
        ElementOf<Vector>* block = Allocate(&made, count);
        if (block == nullptr) {
            return nullptr;
        }
        fill(block);
        TakeBlock(&made, block, count, count);
    }
    *x = made;
    return x;
}

template <class Vector>
Vector* ConstructN(Vector* x, ZemSizeT n, const ElementOf<Vector>* t, ZemAllocator* a)
{
    return ConstructFilled(
        x, a, n, [=](ElementOf<Vector>* slot) { std::uninitialized_fill_n(slot, n, *t); });
}

template <class Vector>
Vector* ConstructRange(Vector* x, const ElementOf<Vector>* first, const ElementOf<Vector>* last,
                       ZemAllocator* a)
{
    return ConstructFilled(x, a, static_cast<ZemSizeT>(last - first), [=](ElementOf<Vector>* slot) {
        std::uninitialized_copy(first, last, slot);
    });
}

template <class Vector>
void Destruct(Vector* x)
{
    HandBackBlock(x);
    // Not needed by the contract: a use after this finds no storage instead of a stale block.
    DropStorage(x);
}

template <class Vector>
bool Reserve(Vector* x, ZemSizeT capacity)
{
    if (capacity <= CapacityOf(x)) {
        return true;
    }
    ElementOf<Vector>* block = Allocate(x, capacity);
    if (block == nullptr) {
        return false;
    }
    ZemSizeT size = SizeOf(x);
    std::uninitialized_copy(x->begin, x->end, block);
    HandBackBlock(x);
    TakeBlock(x, block, size, capacity);
    return true;
}

template <class Vector>
bool Grow(Vector* x)
{
    return Reserve(x, x->begin == nullptr ? 2 : 2 * SizeOf(x));
}

template <class Vector>
bool Resize(Vector* x, ZemSizeT n, const ElementOf<Vector>* t)
{
    ZemSizeT size = SizeOf(x);
    if (n > size) {
        if (!Reserve(x, size + n)) {
            return false;
        }
        std::uninitialized_fill(x->end, x->begin + n, *t);
    }
    if (n != size) {
        x->end = x->begin + n;
    }
    return true;
}

template <class Vector>
Vector* Assign(Vector* x, const Vector* y)
{
    if (x == y) {
        return x;
    }
    ZemSizeT size = SizeOf(y);
    if (size > CapacityOf(x)) {
        HandBackBlock(x);
        DropStorage(x);
        ElementOf<Vector>* block = Allocate(x, size);
        if (block == nullptr) {
            return nullptr;
        }
        TakeBlock(x, block, 0, size);
    }
    x->end = std::copy(y->begin, y->end, x->begin);
    return x;
}

// Swaps across allocators, where `larger` has at least as many elements as `smaller`: the larger
// contents move into a new block of `smaller`'s allocator, the smaller into the room they leave.
template <class Vector>
bool SwapByCopying(Vector* smaller, Vector* larger)
{
    ZemSizeT size = SizeOf(larger);
    ElementOf<Vector>* block = Allocate(smaller, size);
    if (block == nullptr) {
        return false;
    }
    std::uninitialized_copy(larger->begin, larger->end, block);
    larger->end = std::copy(smaller->begin, smaller->end, larger->begin);
    HandBackBlock(smaller);
    TakeBlock(smaller, block, size, size);
    return true;
}

template <class Vector>
bool Swap(Vector* x, Vector* y)
{
    ZemSizeT xn = SizeOf(x);
    ZemSizeT yn = SizeOf(y);
    if (xn == 0 && yn == 0) {
        return true;
    }
    if (x->allocator == y->allocator) {
        std::swap(*x, *y);
        return true;
    }
    return xn < yn ? SwapByCopying(x, y) : SwapByCopying(y, x);
}

template <class Vector, class EqualElements>
bool Equal(const Vector* x, const Vector* y, EqualElements equal)
{
    return std::equal(x->begin, x->end, y->begin, y->end, equal);
}

// Inserts `n` elements, at least one, which `fill(first slot)` writes, before `pos`. When they do
// not fit, everything is copied straight to its place in a larger block. Returns the position of
// the first inserted element, or null when there is no memory for the block.
template <class Vector, class Fill>
ElementOf<Vector>* InsertFilled(Vector* x, ElementOf<Vector>* pos, ZemSizeT n, Fill fill)
{
    if (n <= static_cast<ZemSizeT>(x->endBuf - x->end)) {
        std::copy_backward(pos, x->end, x->end + n);
        fill(pos);
        x->end += n;
        return pos;
    }
    ZemSizeT size = SizeOf(x) + n;
    ZemSizeT capacity = CapacityOf(x);
    ZemSizeT grown = std::max(2 * (capacity != 0 ? capacity : n), size);
    ElementOf<Vector>* block = Allocate(x, grown);
    if (block == nullptr) {
        return nullptr;
    }
    ElementOf<Vector>* inserted = std::uninitialized_copy(x->begin, pos, block);
    fill(inserted);
    std::uninitialized_copy(pos, x->end, inserted + n);
    HandBackBlock(x);
    TakeBlock(x, block, size, grown);
    return inserted;
}

template <class Vector>
ElementOf<Vector>* Insert(Vector* x, ElementOf<Vector>* pos, const ElementOf<Vector>* t)
{
    return InsertFilled(x, pos, 1, [=](ElementOf<Vector>* slot) { *slot = *t; });
}

template <class Vector>
bool InsertN(Vector* x, ElementOf<Vector>* pos, ZemSizeT n, const ElementOf<Vector>* t)
{
    auto fill = [=](ElementOf<Vector>* slot) { std::uninitialized_fill_n(slot, n, *t); };
    return n == 0 || InsertFilled(x, pos, n, fill) != nullptr;
}

template <class Vector>
bool InsertRange(Vector* x, ElementOf<Vector>* pos, const ElementOf<Vector>* first,
                 const ElementOf<Vector>* last)
{
    auto fill = [=](ElementOf<Vector>* slot) { std::uninitialized_copy(first, last, slot); };
    return first == last ||
           InsertFilled(x, pos, static_cast<ZemSizeT>(last - first), fill) != nullptr;
}

template <class Vector>
ElementOf<Vector>* EraseRange(Vector* x, ElementOf<Vector>* first, ElementOf<Vector>* last)
{
    // std::copy may not copy a range onto itself, and there would be nothing to do.
    if (first != last) {
        x->end = std::copy(last, x->end, first);
    }
    return first;
}

}  // namespace ZemVector

#endif
