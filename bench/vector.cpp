// Arrays of 1,000 ranges: appending to a new one, walking it, inserting into its middle.

#include <glib.h>

#include <algorithm>
#include <memory>
#include <memory_resource>
#include <vector>

#include "Zem/Os/ZemTime.hpp"
#include "values.h"

namespace bench {

namespace {

constexpr std::size_t kSize = 1000;
constexpr std::size_t kMiddle = kSize / 2;

ZemTime g_starts[kSize];
ZemAllocator g_malloc;

// A record as a caller has it: just computed.
inline ZemTimeRange Fresh(std::size_t i)
{
    return {g_starts[i] + 60000000000, g_starts[i]};
}

bool Same(const ZemTimeRange& x, const ZemTimeRange& y)
{
    return x.begin == y.begin && x.end == y.end;
}

// The containers under one interface. `Zem` calls the library by what its parameter makes of a
// function: the function itself, which is inlined, or the exported copy.
struct Inlined {
    template <class Function>
    static Function* Of(Function* function)
    {
        return function;
    }
};

struct Called {
    template <class Function>
    static Function* Of(Function* function)
    {
        return Exported(function);
    }
};

template <class Way>
struct Zem {
    ZemVector_ZemTimeRange v;

    Zem()
    {
        ZemVector_ZemTimeRangeConstructDefault(&v, &g_malloc);
    }
    ~Zem()
    {
        ZemVector_ZemTimeRangeDestruct(&v);
    }
    void Reserve(std::size_t n)
    {
        ZemVector_ZemTimeRangeReserve(&v, n);
    }
    void Append(ZemTimeRange r)
    {
        Way::Of(ZemVector_ZemTimeRangePushBack)(&v, &r);
    }
    void InsertInMiddle(ZemTimeRange r)
    {
        Way::Of(ZemVector_ZemTimeRangeInsert)(
            &v, Way::Of(ZemVector_ZemTimeRangeBegin)(&v) + kMiddle, &r);
    }
    void RemoveLast()
    {
        Way::Of(ZemVector_ZemTimeRangePopBack)(&v);
    }
    const ZemTimeRange* Data() const
    {
        return v.begin;
    }
    template <class Visit>
    void ForEach(Visit visit) const
    {
        auto it = Way::Of(ZemVector_ZemTimeRangeBeginConst)(&v);
        auto end = Way::Of(ZemVector_ZemTimeRangeEndConst)(&v);
        for (; !Way::Of(ZemVector_ZemTimeRangeConstIteratorEqual)(&it, &end);
             Way::Of(ZemVector_ZemTimeRangeConstIteratorIncrement)(&it)) {
            visit(*Way::Of(ZemVector_ZemTimeRangeConstIteratorContentOfConst)(&it));
        }
    }
};

template <class Vector>
struct Std {
    Vector v;

    void Reserve(std::size_t n)
    {
        v.reserve(n);
    }
    void Append(ZemTimeRange r)
    {
        v.push_back(r);
    }
    void InsertInMiddle(ZemTimeRange r)
    {
        v.insert(v.begin() + kMiddle, r);
    }
    void RemoveLast()
    {
        v.pop_back();
    }
    const ZemTimeRange* Data() const
    {
        return v.data();
    }
    template <class Visit>
    void ForEach(Visit visit) const
    {
        for (const ZemTimeRange& r : v) {
            visit(r);
        }
    }
};

using Face = Std<zem::RangeVector>;
using StdVector = Std<std::vector<ZemTimeRange>>;
using PmrVector = Std<std::pmr::vector<ZemTimeRange>>;

struct Glib {
    GArray* v = g_array_new(FALSE, FALSE, sizeof(ZemTimeRange));

    ~Glib()
    {
        g_array_free(v, TRUE);
    }
    void Reserve(std::size_t n)
    {
        g_array_set_size(v, static_cast<guint>(n));
        g_array_set_size(v, 0);
    }
    void Append(ZemTimeRange r)
    {
        g_array_append_vals(v, &r, 1);
    }
    void InsertInMiddle(ZemTimeRange r)
    {
        g_array_insert_vals(v, kMiddle, &r, 1);
    }
    void RemoveLast()
    {
        g_array_set_size(v, v->len - 1);
    }
    const ZemTimeRange* Data() const
    {
        return static_cast<const ZemTimeRange*>(static_cast<const void*>(v->data));
    }
    template <class Visit>
    void ForEach(Visit visit) const
    {
        std::for_each(Data(), Data() + v->len, visit);
    }
};

// Memory of the right size from the start, and plain pointers.
struct Raw {
    std::unique_ptr<ZemTimeRange[]> slots;
    ZemTimeRange* end = nullptr;

    void Reserve(std::size_t n)
    {
        slots = std::make_unique_for_overwrite<ZemTimeRange[]>(n);
        end = slots.get();
    }
    void Append(ZemTimeRange r)
    {
        *end++ = r;
    }
    void InsertInMiddle(ZemTimeRange r)
    {
        ZemTimeRange* slot = slots.get() + kMiddle;
        std::copy_backward(slot, end, end + 1);
        *slot = r;
        ++end;
    }
    void RemoveLast()
    {
        --end;
    }
    const ZemTimeRange* Data() const
    {
        return slots.get();
    }
    template <class Visit>
    void ForEach(Visit visit) const
    {
        std::for_each(Data(), static_cast<const ZemTimeRange*>(end), visit);
    }
};

// A container of all the records, that lives as long as the process.
template <class Container>
Container& Filled()
{
    static auto* filled = [] {
        auto* made = new Container();
        made->Reserve(kSize + 1);
        for (std::size_t i = 0; i < kSize; ++i) {
            made->Append(Fresh(i));
        }
        return made;
    }();
    return *filled;
}

// A new container of all the records, left to the next call to destroy.
template <class Container>
const ZemTimeRange* AppendAll(bool reserve)
{
    alignas(Container) static unsigned char room[sizeof(Container)];
    static Container* last = nullptr;
    if (last != nullptr) {
        last->~Container();
    }
    last = new (room) Container();
    if (reserve) {
        last->Reserve(kSize);
    }
    for (std::size_t i = 0; i < kSize; ++i) {
        last->Append(Fresh(i));
    }
    return last->Data();
}

// The sum of the lengths.
template <class Container>
ZemTime Sum()
{
    ZemTime sum = 0;
    Filled<Container>().ForEach([&](const ZemTimeRange& r) { sum += r.begin - r.end; });
    return sum;
}

template <class Container>
const ZemTimeRange* Insert(std::size_t i)
{
    Container& filled = Filled<Container>();
    filled.InsertInMiddle(Fresh(i % kSize));
    filled.RemoveLast();
    return filled.Data();
}

bool HoldsAll(const ZemTimeRange* data)
{
    std::size_t i = 0;
    return std::all_of(data, data + kSize,
                       [&](const ZemTimeRange& r) { return Same(r, Fresh(i++)); });
}

// In front of the middle the records are as they were; behind it lie the newest one and, in front
// of the rest, those that were inserted before.
bool InsertedInOrder(std::size_t i, const ZemTimeRange* data)
{
    for (std::size_t slot = 0; slot < kSize; ++slot) {
        std::size_t behind = slot - kMiddle;
        std::size_t expected = slot < kMiddle ? slot
                               : behind <= i  ? (i - behind) % kSize
                                              : slot - i - 1;
        if (!Same(data[slot], Fresh(expected))) {
            return false;
        }
    }
    return true;
}

template <class Container>
void Add(const char* column, bool reserve = false)
{
    auto held = [](std::size_t) { return true; };
    Job("append 1,000 records, each", held)
        .Elements(kSize)
        .Add(
            column, [=](std::size_t) { return AppendAll<Container>(reserve); }, HoldsAll);
    Job("iterate and sum, each", [](std::size_t) { return ZemTime{kSize} * 60000000000; })
        .Elements(kSize)
        .Add(column, [](std::size_t) { return Sum<Container>(); });
    Job("insert in the middle of 1,000", held)
        .AddOther(
            column, "", [](std::size_t i) { return Insert<Container>(i); }, InsertedInOrder);
}

}  // namespace

void RegisterVector()
{
    for (auto& start : g_starts) {
        start = Between(0, ZemTime{1} << 60);
    }
    ZemAllocatorConstructMalloc(&g_malloc, SIZE_MAX);
    Add<Zem<Inlined>>("ours inline");
    Add<Zem<Called>>("ours exported");
    Add<Face>("C++ face");
    Add<Raw>("hand kernel", true);
    Add<StdVector>("std::vector");
    Add<PmrVector>("std::pmr::vector");
    Add<Glib>("GArray");
}

}  // namespace bench
