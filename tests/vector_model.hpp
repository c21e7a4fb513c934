// Turns bytes into operations on two vectors and holds every step against std::vector: elements,
// capacity, result, and the exact list of calls to the allocators.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <tuple>
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
    // A call that tells whether it succeeded, the items that it then leaves, and the capacity that
    // it needs: when there is less, it asks for a block of exactly that.
    using Operation = std::tuple<std::function<bool()>, Items, std::size_t>;

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
        Side& other = sides[&s == sides];
        Side& any = sides[Next(2)];
        ZemVector_ZemTimeRange* x = &s.real;
        const ZemTimeRange t = {++serial, 0};
        Items source(Next(10));
        std::ranges::generate(source, [&] { return ZemTimeRange{++serial, 0}; });
        const ZemTimeRange* first = source.data();
        const std::size_t n = source.size();

        const std::size_t chosen = Next(16);
        const bool builds = chosen < 4;
        if (builds || (chosen == 4 && any.items.size() > s.capacity)) {
            ExpectBlock(s, 0);
            s.items.clear();
        }
        if (builds) {
            V(Destruct)(x);
            s.allocator = chosen == 0 ? other.allocator : &allocators[Next(2)];
        }
        ZemAllocator* const a = s.allocator;
        const std::size_t size = s.items.size();
        const std::size_t from = Next(size + 1);
        const std::size_t upTo = from + Next(size - from + 1);
        ZemTimeRange* pos = x->begin + from;
        auto spliced = [&](std::size_t begin, std::size_t end, const Items& added) {
            Items items = s.items;
            auto place = items.erase(items.begin() + begin, items.begin() + end);
            items.insert(place, added.begin(), added.end());
            return items;
        };
        auto room = [&](std::size_t k) {
            std::size_t doubled = 2 * (s.capacity != 0 ? s.capacity : k);
            return size + k > s.capacity ? std::max(doubled, size + k) : 0;
        };
        const Operation operations[] = {
            {[&] { return V(ConstructCopy)(x, &other.real) == x; }, other.items,
             other.items.size()},
            {[&] { return V(ConstructDefault)(x, a) == x; }, Items(), 0},
            {[&] { return V(ConstructN)(x, n, &t, a) == x; }, Items(n, t), n},
            {[&] { return V(ConstructRange)(x, first, first + n, a) == x; }, source, n},
            {[&] { return V(Assign)(x, &any.real) == x; }, any.items, any.items.size()},
            {[&] { return V(PushBack)(x, &t); }, spliced(size, size, {t}), room(1)},
            {[&] { return (pos = V(Insert)(x, pos, &t)) && pos == x->begin + from; },
             spliced(from, from, {t}), room(1)},
            {[&] { return V(InsertN)(x, pos, n, &t); }, spliced(from, from, Items(n, t)), room(n)},
            {[&] { return V(InsertRange)(x, pos, first, first + n); }, spliced(from, from, source),
             room(n)},
            {[&] { return V(Reserve)(x, 3 * n); }, s.items, 3 * n},
            {[&] { return V(Resize)(x, n, &t); },
             n > size ? spliced(size, size, Items(n - size, t)) : spliced(n, size, {}),
             n > size ? size + n : 0},
            {[&] { return V(Clear)(x), true; }, Items(), 0},
            {[&] { return size == 0 || (V(PopBack)(x), true); },
             spliced(size - (size != 0), size, {}), 0},
            {[&] { return from == size || V(Erase)(x, pos) == pos; },
             spliced(from, from + (from != size), {}), 0},
            {[&] { return V(EraseRange)(x, pos, x->begin + upTo) == pos; }, spliced(from, upTo, {}),
             0},
        };
        if (chosen == std::size(operations)) {
            return Swap(s, any);
        }
        const auto& [call, items, capacity] = operations[chosen];
        bool ok = capacity <= s.capacity || ExpectBlock(s, capacity);
        s.items = ok ? items : s.items;
        bool right = call() == ok;
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
            ok = ok && V(GetAllocator)(c) == s.allocator && V(MaxSize)(c) == 268435455 &&
                 V(Size)(c) == size && V(Empty)(c) == (size == 0) && V(Begin)(x) == begin &&
                 V(Capacity)(c) == s.capacity && (begin == nullptr) == (s.capacity == 0) &&
                 V(BeginConst)(c) == begin && V(End)(x) == end && V(EndConst)(c) == end &&
                 V(RBegin)(x) == end && V(RBeginConst)(c) == end && V(REnd)(x) == begin &&
                 V(REndConst)(c) == begin && std::equal(begin, end, s.items.begin(), same);
            if (ok && size != 0) {
                ok = V(Front)(x) == begin && V(FrontConst)(c) == begin && V(Back)(x) == end - 1 &&
                     V(BackConst)(c) == end - 1 && V(At)(x, size - 1) == end - 1 &&
                     V(AtConst)(c, size - 1) == end - 1;
            }
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
