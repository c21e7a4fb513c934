// Turns bytes into operations on two vectors and holds every step against std::vector: elements,
// capacity, result, and the exact list of calls to the allocators. The vectors are C's, or those of
// the C++ header.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <vector>

#include "Zem/Os/ZemTimeRangeVector.hpp"

// The full names are long, and the lines below many.
#define V(operation) ZemVector_ZemTimeRange##operation
// Iterators of std::vector step by signed counts; its sizes are unsigned.
#pragma GCC diagnostic ignored "-Wsign-conversion"

// The operations that change a vector, as C has them.
struct CFace {
    using Vector = ZemVector_ZemTimeRange;
    static constexpr bool kIsC = true;
    static Vector* Record(Vector* x)
    {
        return x;
    }
    static bool Agrees(Vector& /*x*/)
    {
        return true;
    }
#define FORWARD(operation)              \
    template <class... Args>            \
    static auto operation(Args... args) \
    {                                   \
        return V(operation)(args...);   \
    }
    FORWARD(ConstructDefault)
    FORWARD(ConstructN)
    FORWARD(ConstructRange)
    FORWARD(ConstructCopy)
    FORWARD(Destruct)
    FORWARD(Assign)
    FORWARD(Swap)
    FORWARD(PushBack)
    FORWARD(PopBack)
    FORWARD(Reserve)
    FORWARD(Resize)
    FORWARD(Clear)
    FORWARD(Insert)
    FORWARD(InsertN)
    FORWARD(InsertRange)
    FORWARD(Erase)
    FORWARD(EraseRange)
#undef FORWARD
};

// The same by zem::RangeVector. Where it throws std::bad_alloc, the result is that of a failure;
// every second call takes the twin that does not throw, where there is one.
struct CppFace {
    using Vector = zem::RangeVector;
    static constexpr bool kIsC = false;
    static inline unsigned turn = 0;

    static ZemVector_ZemTimeRange* Record(Vector* x)
    {
        return x->handle();
    }
    static bool Agrees(Vector& x)
    {
        const Vector& c = x;
        const ZemVector_ZemTimeRange* r = c.handle();
        return x.begin() == r->begin && c.end() == r->end && c.data() == r->begin &&
               c.cbegin() == x.data() && x.end() == c.cend() && x.rbegin().base() == r->end &&
               c.crbegin().base() == r->end && c.crend().base() == r->begin &&
               x.rend().base() == r->begin && c.allocator() == r->allocator &&
               x.size() == V(Size)(r) && x.capacity() == V(Capacity)(r) &&
               x.max_size() == V(MaxSize)(r) && x.empty() == (V(Empty)(r) != 0) &&
               (x.empty() ||
                (&x.front() == r->begin && &c.back() == r->end - 1 && &c.front() == &x[0] &&
                 &x.back() == &c[c.size() - 1] && &x.at(0) == r->begin && &c.at(0) == r->begin));
    }
    template <class Call>
    static bool Succeeds(Call call)
    {
        try {
            call();
            return true;
        } catch (const std::bad_alloc&) {
            return false;
        }
    }
    template <class... Args>
    static Vector* Construct(Vector* x, Args... args)
    {
        return Succeeds([&] { *x = Vector(args...); }) ? x : nullptr;
    }
    template <class Throwing, class Trying>
    static bool Either(Throwing throwing, Trying trying)
    {
        return turn++ % 2 == 0 ? Succeeds(throwing) : trying();
    }
    static Vector* ConstructDefault(Vector* x, ZemAllocator* a)
    {
        return Construct(x, a);
    }
    static Vector* ConstructN(Vector* x, std::size_t n, const ZemTimeRange* t, ZemAllocator* a)
    {
        return Construct(x, n, *t, a);
    }
    static Vector* ConstructRange(Vector* x, const ZemTimeRange* first, const ZemTimeRange* last,
                                  ZemAllocator* a)
    {
        return Construct(x, first, last, a);
    }
    static Vector* ConstructCopy(Vector* x, const Vector* y)
    {
        return Succeeds([&] { *x = Vector(*y); }) ? x : nullptr;
    }
    static void Destruct(Vector* x)
    {
        *x = Vector(x->allocator());
    }
    static Vector* Assign(Vector* x, const Vector* y)
    {
        return Either([&] { *x = *y; }, [&] { return x->try_assign(y->begin(), y->end()); })
                   ? x
                   : nullptr;
    }
    static bool Swap(Vector* x, Vector* y)
    {
        return swap(*x, *y), true;
    }
    static bool PushBack(Vector* x, const ZemTimeRange* t)
    {
        return Either([&] { x->push_back(*t); }, [&] { return x->try_push_back(*t); });
    }
    static void PopBack(Vector* x)
    {
        x->pop_back();
    }
    static bool Reserve(Vector* x, std::size_t n)
    {
        return Either([&] { x->reserve(n); }, [&] { return x->try_reserve(n); });
    }
    static bool Resize(Vector* x, std::size_t n, const ZemTimeRange* t)
    {
        return Either([&] { x->resize(n, *t); }, [&] { return x->try_resize(n, *t); });
    }
    static void Clear(Vector* x)
    {
        x->clear();
    }
    static ZemTimeRange* Insert(Vector* x, ZemTimeRange* p, const ZemTimeRange* t)
    {
        auto i = p - x->begin();
        ZemTimeRange* at = nullptr;
        return Either([&] { at = x->insert(p, *t); },
                      [&] { return x->try_insert(p, *t) && (at = x->begin() + i); })
                   ? at
                   : nullptr;
    }
    static bool InsertN(Vector* x, ZemTimeRange* p, std::size_t n, const ZemTimeRange* t)
    {
        return Either([&] { x->insert(p, n, *t); }, [&] { return x->try_insert(p, n, *t); });
    }
    static bool InsertRange(Vector* x, ZemTimeRange* p, const ZemTimeRange* first,
                            const ZemTimeRange* last)
    {
        return Either([&] { x->insert(p, first, last); },
                      [&] { return x->try_insert(p, first, last); });
    }
    static ZemTimeRange* Erase(Vector* x, ZemTimeRange* p)
    {
        return x->erase(p);
    }
    static ZemTimeRange* EraseRange(Vector* x, ZemTimeRange* first, ZemTimeRange* last)
    {
        return x->erase(first, last);
    }
};

template <class Face>
struct BasicVectorModel {
    using Items = std::vector<ZemTimeRange>;
    using Call = std::pair<const ZemAllocator*, std::ptrdiff_t>;  // bytes; below 0: handed back
    struct Side {
        ZemAllocator* allocator;
        typename Face::Vector real{};
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
        auto* model = static_cast<BasicVectorModel*>(allocator->userData);
        model->calls.emplace_back(allocator, size);
        return model->refuses(model->requests++) ? nullptr : std::malloc(size);
    }

    static void Free(ZemAllocator* allocator, void* block, ZemSizeT size)
    {
        static_cast<BasicVectorModel*>(allocator->userData)->calls.emplace_back(allocator, -size);
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
        if (!Face::kIsC) {
            std::swap(s.allocator, other.allocator);
            s.items.swap(other.items);
            std::swap(s.capacity, other.capacity);
            return Face::Swap(&s.real, &other.real);
        }
        Side& smaller = s.items.size() < other.items.size() ? s : other;
        std::size_t size = std::max(s.items.size(), other.items.size());
        bool copies = size != 0 && s.allocator != other.allocator;
        bool ok = !copies || ExpectBlock(smaller, size);
        if (ok && size != 0) {
            s.items.swap(other.items);
            std::swap(s.capacity, copies ? s.capacity : other.capacity);
        }
        return Face::Swap(&s.real, &other.real) == ok;
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
        // C hands the old block back before it asks for a larger one to assign to.
        if (builds || (Face::kIsC && chosen == 5 && any.items.size() > s.capacity)) {
            ExpectBlock(s, 0);
            s.items.clear();
        }
        auto* x = &s.real;
        if (builds) {
            Face::Destruct(x);
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
        ZemTimeRange* const begin = Face::Record(x)->begin;
        ZemTimeRange* p = begin + i;
        auto room = [&](std::size_t k) {
            std::size_t doubled = 2 * (s.capacity != 0 ? s.capacity : k);
            return size + k > s.capacity ? std::max(doubled, size + k) : 0;
        };
        const Operation operations[] = {
            {[&] { return Face::ConstructCopy(x, &y.real) == x; }, 0, 0, y.items, y.items.size()},
            {[&] { return Face::ConstructDefault(x, a) == x; }, 0, 0, {}},
            {[&] { return Face::ConstructN(x, n, &t, a) == x; }, 0, 0, copies, n},
            {[&] { return Face::ConstructRange(x, first, first + n, a) == x; }, 0, 0, source, n},
            {[&] { return Face::Assign(x, &any.real) == x; }, 0, size, any.items, any.items.size()},
            {[&] { return Face::PushBack(x, &t); }, size, size, {t}, room(1)},
            {[&] { return (p = Face::Insert(x, p, &t)) && p == Face::Record(x)->begin + i; },
             i,
             i,
             {t},
             room(1)},
            {[&] { return Face::InsertN(x, p, n, &t); }, i, i, copies, room(n)},
            {[&] { return Face::InsertRange(x, p, first, first + n); }, i, i, source, room(n)},
            {[&] { return Face::Reserve(x, 3 * n); }, 0, 0, {}, 3 * n},
            {[&] { return Face::Resize(x, n, &t); }, std::min(n, size), size,
             Items(n - std::min(n, size), t),
             n <= size    ? 0
             : Face::kIsC ? size + n
                          : room(n - size)},
            {[&] { return Face::Clear(x), true; }, 0, size, {}},
            {[&] { return Face::EraseRange(x, p, begin + j) == p; }, i, j, {}},
            {[&] { return Face::PopBack(x), true; }, size - 1, size, {}},
            {[&] { return Face::Erase(x, begin + one) == begin + one; }, one, one + 1, {}},
        };
        const Operation& o = operations[chosen - 1];
        bool ok = o.capacity <= s.capacity || ExpectBlock(s, o.capacity);
        if (ok) {
            auto place = s.items.erase(s.items.begin() + o.from, s.items.begin() + o.upTo);
            s.items.insert(place, o.added.begin(), o.added.end());
        }
        bool right = o.call() == ok;
        if (builds && !ok) {
            Face::ConstructDefault(x, a);
        }
        return right;
    }

    bool StateIsRight()
    {
        bool ok = std::exchange(calls, {}) == std::exchange(expected, {});
        auto same = [](auto& p, auto& q) { return ZemTimeRangeEqual(&p, &q) != 0; };
        for (Side& s : sides) {
            ZemVector_ZemTimeRange* x = Face::Record(&s.real);
            const ZemVector_ZemTimeRange* c = x;
            const std::size_t size = s.items.size();
            const ZemTimeRange* const begin = x->begin;
            const ZemTimeRange* const end = begin + size;
            auto are = [](auto* right, auto*... positions) {
                return (... && (positions == right));
            };
            ok = ok && Face::Agrees(s.real) && V(GetAllocator)(c) == s.allocator &&
                 V(MaxSize)(c) == 268435455 && V(Size)(c) == size && V(Empty)(c) == (size == 0) &&
                 V(Capacity)(c) == s.capacity && (begin == nullptr) == (s.capacity == 0) &&
                 are(begin, V(Begin)(x), V(BeginConst)(c), V(REnd)(x), V(REndConst)(c)) &&
                 are(end, V(End)(x), V(EndConst)(c), V(RBegin)(x), V(RBeginConst)(c)) &&
                 std::equal(begin, end, s.items.begin(), same) &&
                 (size == 0 || (are(begin, V(Front)(x), V(FrontConst)(c)) &&
                                are(end - 1, V(Back)(x), V(BackConst)(c), V(At)(x, size - 1),
                                    V(AtConst)(c, size - 1))));
            V(Dump)(c, "side", 2);
        }
        return ok && V(Equal)(Face::Record(&sides[0].real), Face::Record(&sides[1].real)) ==
                         std::ranges::equal(sides[0].items, sides[1].items, same);
    }

    // Runs the operations that the bytes name; false at the first difference.
    bool Run()
    {
        bool ok = true;
        for (Side& s : sides) {
            Face::ConstructDefault(&s.real, s.allocator);
        }
        while (ok && next != last) {
            ok = Step() && StateIsRight();
        }
        for (Side& s : sides) {
            Face::Destruct(&s.real);
            ExpectBlock(s, 0);
        }
        return ok && calls == expected;
    }
};

using VectorModel = BasicVectorModel<CFace>;
