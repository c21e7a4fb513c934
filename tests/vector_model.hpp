// Turns bytes into operations on two vectors and holds every step against std::vector: elements,
// capacity, result, and the exact list of calls to the allocators.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <vector>

#include "Zem/Os/ZemTimeInline.h"

// The full names are long, and the lines below many.
#define V(operation) ZemVector_ZemTimeRange##operation
// Iterators of std::vector step by signed counts; its sizes are unsigned.
#pragma GCC diagnostic ignored "-Wsign-conversion"

struct VectorModel {
    using Items = std::vector<ZemTimeRange>;
    using Call = std::pair<const ZemAllocator*, std::ptrdiff_t>;  // bytes; below 0: handed back
    struct Side {
        ZemAllocator* allocator;
        ZemVector_ZemTimeRange real{};
        Items items{};
        std::size_t capacity = 0;
    };
    struct Operation {
        std::function<int()> call;  // gives 1 when it succeeded
        std::size_t from, upTo;     // the elements from here up to there
        Items added;                // make way for these
        std::size_t capacity = 0;   // asks for a block of so many when there is a smaller one
    };

    const std::uint8_t* next;
    const std::uint8_t* last;
    std::function<bool(std::size_t request)> refuses;  // by the request's number, from 0
    std::size_t requests = 0;
    ZemAllocator allocators[2] = {{Allocate, Free, 0, this}, {Allocate, Free, 0, this}};
    Side sides[2] = {{&allocators[0]}, {&allocators[1]}};
    std::vector<Call> calls{};
    std::vector<Call> expected{};
    ZemTime serial = 0;

    static void* Allocate(ZemAllocator* allocator, ZemSizeT size)
    {
        auto* model = static_cast<VectorModel*>(allocator->userData);
        model->calls.emplace_back(allocator, size);
        return model->refuses(model->requests++) ? nullptr : std::malloc(size);
    }

    static void Free(ZemAllocator* allocator, void* block, ZemSizeT size)
    {
        static_cast<VectorModel*>(allocator->userData)->calls.emplace_back(allocator, -size);
        std::free(block);
    }

    // Expects a request for a new block (of 0: none) and, when that succeeds, the old one back.
    bool ExpectBlock(Side& s, std::size_t capacity)
    {
        if (capacity != 0) {
            expected.emplace_back(s.allocator, 16 * capacity);
        }
        bool ok = capacity == 0 || !refuses(requests);
        if (ok && s.capacity != 0) {
            expected.emplace_back(s.allocator, -16 * s.capacity);
        }
        s.capacity = ok ? capacity : s.capacity;
        return ok;
    }

    bool Swap(Side& s, Side& other)
    {
        Side& smaller = s.items.size() < other.items.size() ? s : other;
        std::size_t size = std::max(s.items.size(), other.items.size());
        bool copies = size != 0 && s.allocator != other.allocator;
        bool ok = !copies || ExpectBlock(smaller, size);
        if (ok && size != 0) {
            s.items.swap(other.items);
            std::swap(s.capacity, copies ? s.capacity : other.capacity);
        }
        return V(Swap)(&s.real, &other.real) == ok;
    }

    std::size_t Next(std::size_t bound)
    {
        return next == last ? 0 : *next++ % bound;
    }

    bool Step()
    {
        Side& s = sides[Next(2)];
        Side& y = sides[&s == sides];
        Side& any = sides[Next(2)];
        // Swap, then the rows of the table below; the last two need an element.
        const std::size_t chosen = Next(s.items.empty() ? 14 : 16);
        const bool builds = 1 <= chosen && chosen <= 4;
        if (chosen == 0) {
            return Swap(s, any);
        }
        if (builds || (chosen == 5 && any.items.size() > s.capacity)) {
            ExpectBlock(s, 0);
            s.items.clear();
        }
        ZemVector_ZemTimeRange* x = &s.real;
        if (builds) {
            V(Destruct)(x);
            s.allocator = chosen == 1 ? y.allocator : &allocators[Next(2)];
        }
        const ZemTimeRange t = {++serial, 0};
        Items source(Next(10));
        std::ranges::generate(source, [&] { return ZemTimeRange{++serial, 0}; });
        const std::size_t n = source.size();
        const Items copies(n, t);
        const ZemTimeRange* first = source.data();
        ZemAllocator* const a = s.allocator;
        const std::size_t size = s.items.size();
        const std::size_t i = Next(size + 1);
        const std::size_t j = i + Next(size - i + 1);
        const std::size_t one = size != 0 ? i % size : 0;
        ZemTimeRange* p = x->begin + i;
        auto room = [&](std::size_t k) {
            std::size_t doubled = 2 * (s.capacity != 0 ? s.capacity : k);
            return size + k > s.capacity ? std::max(doubled, size + k) : 0;
        };
        const Operation operations[] = {
            {[&] { return V(ConstructCopy)(x, &y.real) == x; }, 0, 0, y.items, y.items.size()},
            {[&] { return V(ConstructDefault)(x, a) == x; }, 0, 0, {}},
            {[&] { return V(ConstructN)(x, n, &t, a) == x; }, 0, 0, copies, n},
            {[&] { return V(ConstructRange)(x, first, first + n, a) == x; }, 0, 0, source, n},
            {[&] { return V(Assign)(x, &any.real) == x; }, 0, size, any.items, any.items.size()},
            {[&] { return V(PushBack)(x, &t); }, size, size, {t}, room(1)},
            {[&] { return (p = V(Insert)(x, p, &t)) && p == x->begin + i; }, i, i, {t}, room(1)},
            {[&] { return V(InsertN)(x, p, n, &t); }, i, i, copies, room(n)},
            {[&] { return V(InsertRange)(x, p, first, first + n); }, i, i, source, room(n)},
            {[&] { return V(Reserve)(x, 3 * n); }, 0, 0, {}, 3 * n},
            {[&] { return V(Resize)(x, n, &t); }, std::min(n, size), size,
             Items(n - std::min(n, size), t), n > size ? size + n : 0},
            {[&] { return V(Clear)(x), true; }, 0, size, {}},
            {[&] { return V(EraseRange)(x, p, x->begin + j) == p; }, i, j, {}},
            {[&] { return V(PopBack)(x), true; }, size - 1, size, {}},
            {[&] { return V(Erase)(x, x->begin + one) == x->begin + one; }, one, one + 1, {}},
        };
        const Operation& o = operations[chosen - 1];
        bool ok = o.capacity <= s.capacity || ExpectBlock(s, o.capacity);
        if (ok) {
            auto place = s.items.erase(s.items.begin() + o.from, s.items.begin() + o.upTo);
            s.items.insert(place, o.added.begin(), o.added.end());
        }
        bool right = o.call() == ok;
        if (builds && !ok) {
            V(ConstructDefault)(x, a);
        }
        return right;
    }

    bool StateIsRight()
    {
        bool ok = std::exchange(calls, {}) == std::exchange(expected, {});
        auto same = [](auto& p, auto& q) { return ZemTimeRangeEqual(&p, &q) != 0; };
        for (Side& s : sides) {
            ZemVector_ZemTimeRange* x = &s.real;
            const ZemVector_ZemTimeRange* c = x;
            const std::size_t size = s.items.size();
            const ZemTimeRange* const begin = x->begin;
            const ZemTimeRange* const end = begin + size;
            auto are = [](auto* right, auto*... positions) {
                return (... && (positions == right));
            };
            ok = ok && V(GetAllocator)(c) == s.allocator && V(MaxSize)(c) == 268435455 &&
                 V(Size)(c) == size && V(Empty)(c) == (size == 0) && V(Capacity)(c) == s.capacity &&
                 (begin == nullptr) == (s.capacity == 0) &&
                 are(begin, V(Begin)(x), V(BeginConst)(c), V(REnd)(x), V(REndConst)(c)) &&
                 are(end, V(End)(x), V(EndConst)(c), V(RBegin)(x), V(RBeginConst)(c)) &&
                 std::equal(begin, end, s.items.begin(), same) &&
                 (size == 0 || (are(begin, V(Front)(x), V(FrontConst)(c)) &&
                                are(end - 1, V(Back)(x), V(BackConst)(c), V(At)(x, size - 1),
                                    V(AtConst)(c, size - 1))));
            V(Dump)(c, "side", 2);
        }
        return ok && V(Equal)(&sides[0].real, &sides[1].real) ==
                         std::ranges::equal(sides[0].items, sides[1].items, same);
    }

    // Runs the operations that the bytes name; false at the first difference.
    bool Run()
    {
        bool ok = true;
        for (Side& s : sides) {
            V(ConstructDefault)(&s.real, s.allocator);
        }
        while (ok && next != last) {
            ok = Step() && StateIsRight();
        }
        for (Side& s : sides) {
            V(Destruct)(&s.real);
            ExpectBlock(s, 0);
        }
        return ok && calls == expected;
    }
};
