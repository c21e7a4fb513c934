// Sets of ranges: merges of two ordered arrays, and searches in one.
//
// Results rely on sets that are normal, safety does not: what is read and written is bounded by
// counts alone.

#include "Zem/Os/ZemTimeRangeSet.h"

#include <algorithm>
#include <bitset>

#include "Zem/Containers/ZemVector.hpp"
#include "Zem/Os/Private/ZemTimeBounds.h"
#include "Zem/Os/ZemTimeInline.h"

namespace {

using Set = ZemVector_ZemTimeRange;

// ---------------------------------------------------------------------------------------------
// Without branches
// ---------------------------------------------------------------------------------------------

// 1 or 0, as a number that the compiler knows nothing about. gcc 12 makes a branch of a selection
// that depends on a comparison; where its outcome is random that takes the time of the sweep to
// that of a plain merge, and doubles that of a search.
inline ZemUint64 Bit(bool condition)
{
    ZemUint64 bit = condition;
#if defined(__GNUC__)
    __asm__("" : "+r"(bit));
#endif
    return bit;
}

inline ZemTime Choose(ZemUint64 bit, ZemTime one, ZemTime zero)
{
    ZemUint64 mask = 0 - bit;
    return static_cast<ZemTime>((static_cast<ZemUint64>(one) & mask) |
                                (static_cast<ZemUint64>(zero) & ~mask));
}

// ---------------------------------------------------------------------------------------------
// Searches
// ---------------------------------------------------------------------------------------------

// The first range that ends at `t` or after, `last` when none does. Which quarter is next cannot be
// predicted: it is counted without a branch, and so are the last few. The three comparisons of a
// step do not wait for each other, nor do their loads: halves take half as long again.
template <class Range>
Range* LowerBound(Range* first, Range* last, ZemTime t)
{
    auto left = static_cast<ZemSizeT>(last - first);
    while (left > 8) {
        ZemSizeT quarter = left / 4;
        first +=
            quarter * (Bit(first[quarter - 1].begin < t) + Bit(first[2 * quarter - 1].begin < t) +
                       Bit(first[3 * quarter - 1].begin < t));
        left -= 3 * quarter;
    }
    ZemSizeT before = 0;
    for (ZemSizeT i = 0; i < left; ++i) {
        before += Bit(first[i].begin < t);
    }
    return first + before;
}

// Copies ranges to `out`, which may lie among them or be where they are.
ZemTimeRange* CopyRanges(const ZemTimeRange* first, const ZemTimeRange* last, ZemTimeRange* out)
{
    return out == first ? out + (last - first) : std::copy(first, last, out);
}

// A set as what it holds, or as the gaps between: a gap is designated by the range behind it.
struct Ranges {
    static ZemTime Lower(const ZemTimeRange* p)
    {
        return p->end;
    }
    static ZemTime Upper(const ZemTimeRange* p)
    {
        return p->begin;
    }
    static ZemTimeRange* Copy(const ZemTimeRange* first, const ZemTimeRange* last,
                              ZemTimeRange* out)
    {
        return CopyRanges(first, last, out);
    }
};

struct Gaps {
    static ZemTime Lower(const ZemTimeRange* p)
    {
        return ZemTimeNext_(p[-1].begin);
    }
    static ZemTime Upper(const ZemTimeRange* p)
    {
        return ZemTimePrevious_(p->end);
    }
    static ZemTimeRange* Copy(const ZemTimeRange* first, const ZemTimeRange* last,
                              ZemTimeRange* out)
    {
        for (; first != last; ++first) {
            *out++ = {Upper(first), Lower(first)};
        }
        return out;
    }
};

// What is left of one side of an operation.
template <class Form>
struct Side {
    const ZemTimeRange* next;
    const ZemTimeRange* last;

    bool Empty() const
    {
        return next == last;
    }
    ZemTime Lower() const
    {
        return Form::Lower(next);
    }
    ZemTime Upper() const
    {
        return Form::Upper(next);
    }
};

// As far as ranges are passed one by one. From there on it pays to leap.
template <class Form>
const ZemTimeRange* NearEnd(const Side<Form>& x)
{
    constexpr ZemDistanceT kNear = 64;
    return x.last - x.next > kNear ? x.next + kNear : x.last;
}

// The first that ends at `t` or after, as LowerBound, for a place that is likely to be near: leaps
// that double until they are beyond it, then halves the last one.
template <class Form>
const ZemTimeRange* SkipBelow(Side<Form> x, ZemTime t)
{
    ZemDistanceT step = 1;
    while (x.last - x.next > step && Form::Upper(x.next + step - 1) < t) {
        x.next += step;
        step *= 2;
    }
    ZemDistanceT left = std::min(x.last - x.next, step);
    while (left > 0) {
        ZemDistanceT half = left / 2;
        if (Form::Upper(x.next + half) < t) {
            x.next += half + 1;
            left -= half + 1;
        } else {
            left = half;
        }
    }
    return x.next;
}

// One past the last range that begins at `t` or before; `first` when there is none. None before
// `first` ends at `t` or after.
ZemTimeRange* PastBegun(ZemTimeRange* first, ZemTimeRange* last, ZemTime t)
{
    first += SkipBelow(Side<Ranges>{first, last}, t) - first;
    return first + (first != last && first->end <= t);
}

// ---------------------------------------------------------------------------------------------
// Sweeps over two sides
// ---------------------------------------------------------------------------------------------

// A sweep passes the ranges of its sides, x and y, in their common order and writes the result.
// It goes on in steps of one range, without branches, or in runs, as many ranges of one side as
// come before the next of the other, with branches. Steps take 0.6 of the time of a plain merge
// where the order is random, but runs a third of that of steps where it is predictable.
//
// In a step, x goes on by its bit and y by one less the same bit: one multiple of it serves both,
// which makes a step shorter by a tenth to a sixth than adding the opposite bit to y.
//
// Sweeps are handed on by value: as far as the compiler knows, the ranges they write could lie in
// any of them that has an address.

template <class Sweep>
bool AtAnEnd(const Sweep& s)
{
    return s.x.Empty() || s.y.Empty();
}

// At most 64 steps. `order` gets a bit for each: 1 where x went on.
template <class Sweep>
Sweep TakeSteps(Sweep s, ZemUint64* order)
{
    ZemUint64 bits = 0;
    if (s.x.last - s.x.next > 64 && s.y.last - s.y.next > 64) {
        // What the next step compares is loaded before this one has compared: for a step that waits
        // for its loads a random set takes a sixth longer.
        ZemTime xKey = s.XKey(0);
        ZemTime yKey = s.YKey(0);
        for (int i = 0; i < 64; ++i) {
            ZemTime xNext = s.XKey(1);
            ZemTime yNext = s.YKey(1);
            ZemUint64 bit = s.Step(xKey, yKey);
            xKey = Choose(bit, xNext, xKey);
            yKey = Choose(bit, yKey, yNext);
            bits = bits << 1 | bit;
        }
    } else {
        for (int i = 0; i < 64 && !AtAnEnd(s); ++i) {
            bits = bits << 1 | s.Step(s.XKey(0), s.YKey(0));
        }
    }
    *order = bits;
    return s;
}

// At most so many turns: a run of x, then one of y.
constexpr int kTurns = 16;

template <class Sweep>
Sweep TakeTurns(Sweep s)
{
    for (int i = 0; i < kTurns && !AtAnEnd(s); ++i) {
        s = s.RunX();
        if (!AtAnEnd(s)) {
            s = s.RunY();
        }
    }
    return s;
}

// Takes a sweep to the end of one of its sides. In sets that have nothing to do with each other the
// side changes after 40 to 48 of 64 steps, so a turn passes 2.7 to 3.2 ranges. Order that a
// processor predicts has longer runs, or none but of 1.
template <class Sweep>
Sweep SweepToAnEnd(Sweep s)
{
    while (!AtAnEnd(s)) {
        ZemUint64 order;
        s = TakeSteps(s, &order);
        auto changes = std::bitset<64>(order ^ order >> 1).count();
        bool predictable = changes < 36 || changes > 60;
        while (predictable && !AtAnEnd(s)) {
            const Sweep before = s;
            s = TakeTurns(s);
            auto passed = (s.x.next - before.x.next) + (s.y.next - before.y.next);
            predictable = 2 * passed > 7 * kTurns || passed < 2 * kTurns + 2;
        }
    }
    return s;
}

// ---------------------------------------------------------------------------------------------
// Union
// ---------------------------------------------------------------------------------------------

struct UnionSweep {
    Side<Ranges> x;
    Side<Ranges> y;
    ZemTimeRange* out;  // the range in the making: from out->end
    ZemTime upper;      // to here, so far

    // What a step compares: of the next range, or of the one so many behind it.
    ZemTime XKey(ZemDistanceT behind) const
    {
        return Ranges::Lower(x.next + behind);
    }
    ZemTime YKey(ZemDistanceT behind) const
    {
        return Ranges::Lower(y.next + behind);
    }

    // Writes both ends of the gap before the next range, and goes on behind it where there is one.
    ZemUint64 Step(ZemTime xLower, ZemTime yLower)
    {
        ZemUint64 takesX = Bit(xLower <= yLower);
        ZemTime lower = std::min(xLower, yLower);
        ZemTime taken = Choose(takesX, x.Upper(), y.Upper());
        out->begin = upper;
        out[1].end = lower;
        out += Bit(!ZemTimeTouches_(upper, lower));
        upper = std::max(upper, taken);
        x.next += takesX;
        ++y.next;
        y.next -= takesX;
        return takesX;
    }

    UnionSweep RunX() const
    {
        UnionSweep s = *this;
        Side<Ranges> side = x;
        s = s.Run(&side, y.Lower());
        s.x = side;
        return s;
    }

    UnionSweep RunY() const
    {
        UnionSweep s = *this;
        Side<Ranges> side = y;
        s = s.Run(&side, x.Lower());
        s.y = side;
        return s;
    }

    // Takes what begins before the next range of the other side.
    UnionSweep Run(Side<Ranges>* side, ZemTime other) const
    {
        UnionSweep s = *this;
        Side<Ranges> left = *side;
        const ZemTimeRange* near = NearEnd(left);
        for (; left.next != near && left.Lower() <= other; ++left.next) {
            if (ZemTimeTouches_(s.upper, left.Lower())) {
                s.upper = std::max(s.upper, left.Upper());
            } else {
                s.out->begin = s.upper;
                ++s.out;
                s.out->end = left.Lower();
                s.upper = left.Upper();
            }
        }
        if (left.next == near) {
            const ZemTimeRange* to = SkipBelow(left, other);
            s = s.TakeAll({left.next, to});
            left.next = to;
        }
        *side = left;
        return s;
    }

    // Takes ranges that come before all that is left of the other side: those that the range in
    // the making reaches are joined to it, the rest are copied.
    UnionSweep TakeAll(Side<Ranges> side) const
    {
        UnionSweep s = *this;
        for (; !side.Empty() && ZemTimeTouches_(s.upper, side.Lower()); ++side.next) {
            s.upper = std::max(s.upper, side.Upper());
        }
        if (!side.Empty()) {
            s.out->begin = s.upper;
            s.out = CopyRanges(side.next, side.last, s.out + 1) - 1;
            s.upper = s.out->begin;
        }
        return s;
    }
};

ZemTimeRange* Unite(Side<Ranges> x, Side<Ranges> y, ZemTimeRange* out)
{
    if (x.Empty() || y.Empty()) {
        return CopyRanges(y.next, y.last, CopyRanges(x.next, x.last, out));
    }
    const ZemTimeRange* first = x.Lower() <= y.Lower() ? x.next++ : y.next++;
    const ZemTime upper = first->begin;
    out->end = first->end;
    UnionSweep s = SweepToAnEnd(UnionSweep{x, y, out, upper});
    s = s.TakeAll(s.x).TakeAll(s.y);
    s.out->begin = s.upper;
    return s.out + 1;
}

// ---------------------------------------------------------------------------------------------
// Intersection and difference
// ---------------------------------------------------------------------------------------------

template <class XForm, class YForm>
struct IntersectionSweep {
    Side<XForm> x;
    Side<YForm> y;
    ZemTimeRange* out;

    // What a step compares: of the next, or of the one so many behind it.
    ZemTime XKey(ZemDistanceT behind) const
    {
        return XForm::Upper(x.next + behind);
    }
    ZemTime YKey(ZemDistanceT behind) const
    {
        return YForm::Upper(y.next + behind);
    }

    // Writes what the next two have in common, passes the one that ends first, and goes on behind
    // what was written where it is a range.
    ZemUint64 Step(ZemTime xUpper, ZemTime yUpper)
    {
        ZemTime lower = std::max(x.Lower(), y.Lower());
        ZemTime upper = std::min(xUpper, yUpper);
        ZemUint64 passesX = Bit(xUpper <= yUpper);
        *out = {upper, lower};
        out += Bit(lower <= upper);
        x.next += passesX;
        ++y.next;
        y.next -= passesX;
        return passesX;
    }

    IntersectionSweep RunX() const
    {
        Side<XForm> side = x;
        ZemTimeRange* to = Run(&side, y.Lower(), y.Upper(), out);
        return {side, y, to};
    }

    IntersectionSweep RunY() const
    {
        Side<YForm> side = y;
        ZemTimeRange* to = Run(&side, x.Lower(), x.Upper(), out);
        return {x, side, to};
    }

    // Passes all of a side that ends at `upper` or before, and writes what lies from `lower` on.
    template <class Form>
    static ZemTimeRange* Run(Side<Form>* side, ZemTime lower, ZemTime upper, ZemTimeRange* out)
    {
        Side<Form> left = *side;
        const ZemTimeRange* near = NearEnd(left);
        for (; left.next != near && left.Upper() <= upper; ++left.next) {
            if (left.Upper() >= lower) {
                *out++ = {left.Upper(), std::max(left.Lower(), lower)};
            }
        }
        if (left.next == near) {
            left.next = SkipBelow(left, lower);
            const ZemTimeRange* to = SkipBelow(left, upper);
            to += to != left.last && Form::Upper(to) == upper;
            if (left.next != to) {
                *out++ = {left.Upper(), std::max(left.Lower(), lower)};
                out = Form::Copy(left.next + 1, to, out);
                left.next = to;
            }
        }
        *side = left;
        return out;
    }
};

ZemTimeRange* Intersect(Side<Ranges> x, Side<Ranges> y, ZemTimeRange* out)
{
    return SweepToAnEnd(IntersectionSweep<Ranges, Ranges>{x, y, out}).out;
}

// What x has in common with the gap before y, with those in y, and with the gap behind it.
ZemTimeRange* Subtract(Side<Ranges> x, Side<Ranges> y, ZemTimeRange* out)
{
    using Sweep = IntersectionSweep<Ranges, Gaps>;
    if (y.Empty()) {
        return CopyRanges(x.next, x.last, out);
    }
    const ZemTimeRange all = {INT64_MAX, INT64_MIN};
    ZemTimeRange before;
    ZemTimeRange behind;
    const bool hasBefore = ZemTimeRangeCutBelow_(&all, y.next, &before);
    const bool hasBehind = ZemTimeRangeCutAbove_(&all, y.last - 1, &behind);
    if (hasBefore) {
        out = Sweep::Run(&x, before.end, before.begin, out);
        if (!x.Empty() && x.Lower() <= before.begin) {
            *out++ = {before.begin, x.Lower()};
        }
    }
    Sweep s = SweepToAnEnd(Sweep{x, {y.next + 1, y.last}, out});
    return hasBehind ? Sweep::Run(&s.x, behind.end, behind.begin, s.out) : s.out;
}

// ---------------------------------------------------------------------------------------------
// Symmetric difference
// ---------------------------------------------------------------------------------------------

// The places where a set begins or ceases to hold instants, each as the last instant before. That
// it holds the very first instant is no such place.
struct Edges {
    Side<Ranges> left;
    bool inside;

    explicit Edges(Side<Ranges> x) : left(x), inside(!x.Empty() && x.Lower() == INT64_MIN) {}

    ZemTime Next() const
    {
        return inside ? left.Upper() : ZemTimePrevious_(left.Lower());
    }
    void Pass()
    {
        left.next += inside;
        inside = !inside;
    }
    // Copies the ranges that end before an edge of the other set, none of which they share.
    ZemTimeRange* CopyBelow(ZemTime edge, ZemTimeRange* out)
    {
        for (; !left.Empty() && left.Upper() < edge; ++left.next) {
            *out++ = *left.next;
        }
        return out;
    }
};

// The result begins or ceases to hold instants where one of the two does and the other does not.
ZemTimeRange* SubtractBothWays(Side<Ranges> xSide, Side<Ranges> ySide, ZemTimeRange* out)
{
    Edges x(xSide);
    Edges y(ySide);
    bool inside = x.inside != y.inside;
    ZemTime lower = INT64_MIN;
    while (!x.left.Empty() && !y.left.Empty()) {
        ZemTime edge = std::min(x.Next(), y.Next());
        bool passesX = x.Next() == edge;
        bool passesY = y.Next() == edge;
        if (passesX) {
            x.Pass();
        }
        if (passesY) {
            y.Pass();
        }
        if (passesX != passesY) {
            if (inside) {
                *out++ = {edge, lower};
            } else {
                lower = ZemTimeNext_(edge);
            }
            inside = !inside;
        }
        if (!x.inside && !y.inside && !x.left.Empty() && !y.left.Empty()) {
            out = x.CopyBelow(y.Next(), out);
            if (!x.left.Empty()) {
                out = y.CopyBelow(x.Next(), out);
            }
        }
    }
    Edges rest = x.left.Empty() ? y : x;
    if (rest.inside && !rest.left.Empty()) {
        *out++ = {rest.left.Upper(), lower};
        ++rest.left.next;
    }
    return CopyRanges(rest.left.next, rest.left.last, out);
}

// ---------------------------------------------------------------------------------------------
// Storage
// ---------------------------------------------------------------------------------------------

// Where a result is written: the vector's own block where it has the capacity, else a new one.
struct Room {
    ZemTimeRange* block;
    ZemSizeT capacity;
};

bool MakeRoom(const Set* result, ZemSizeT count, Room* room)
{
    *room = {result->begin, ZemVector::CapacityOf(result)};
    if (count > room->capacity) {
        if (count > ZemVector_ZemTimeRangeMaxSize(result)) {
            return false;
        }
        *room = {ZemVector::Allocate(result, count), count};
    }
    return count == 0 || room->block != nullptr;
}

// Makes what was written up to `end` the vector's contents.
void Take(Set* result, Room room, const ZemTimeRange* end)
{
    if (room.block != result->begin) {
        ZemVector::HandBackBlock(result);
    }
    ZemVector::TakeBlock(result, room.block, static_cast<ZemSizeT>(end - room.block),
                         room.capacity);
}

// Writes what `operation` makes of two sets, at most `count` ranges, to `result`.
template <class Operation>
ZemBool Combine(const Set* x, const Set* y, ZemSizeT count, Set* result, Operation operation)
{
    Room room;
    if (!MakeRoom(result, count, &room)) {
        return 0;
    }
    Side<Ranges> xSide = {x->begin, x->end};
    Side<Ranges> ySide = {y->begin, y->end};
    // A set that gives way to the result moves to the end of the block. As `count` is what has been
    // read of both and what is left of them, writing never overtakes reading.
    if (room.block == result->begin && (x == result || y == result)) {
        const ZemTimeRange* moved = result->begin;
        if (result->end != result->endBuf) {
            moved = std::copy_backward(result->begin, result->end, result->endBuf);
        }
        xSide = x == result ? Side<Ranges>{moved, result->endBuf} : xSide;
        ySide = y == result ? Side<Ranges>{moved, result->endBuf} : ySide;
    }
    Take(result, room, operation(xSide, ySide, room.block));
    return 1;
}

// Inserts `t` before `pos`; as the vector's own function, but grows to no more than its maximum.
ZemBool Insert(Set* x, ZemTimeRange* pos, ZemTimeRange t)
{
    const ZemSizeT most = ZemVector_ZemTimeRangeMaxSize(x);
    const ZemSizeT size = ZemVector::SizeOf(x);
    if (x->end == x->endBuf && size > most / 2) {
        const ZemDistanceT place = pos - x->begin;
        if (size >= most || !ZemVector::Reserve(x, most)) {
            return 0;
        }
        pos = x->begin + place;
    }
    return ZemVector::Insert(x, pos, &t) != nullptr;
}

// ---------------------------------------------------------------------------------------------
// Normal form
// ---------------------------------------------------------------------------------------------

// The first range that is invalid, out of order, or within reach of the one before.
ZemTimeRange* FirstToJoin(ZemTimeRange* first, ZemTimeRange* last, ZemUint64 reach)
{
    ZemTimeRange* p = first;
    while (p != last && ZemTimeRangeIsValid(p) &&
           (p == first || !ZemTimeReaches_(p[-1].begin, p->end, reach))) {
        ++p;
    }
    return p;
}

// Drops invalid ranges and unites each other one with the one before it where it is in order and
// within reach. 1 when all were in order: x is then normal.
bool JoinNeighbours(Set* x, ZemUint64 reach)
{
    bool inOrder = true;
    ZemTimeRange* kept = FirstToJoin(x->begin, x->end, reach);
    for (const ZemTimeRange* p = kept; p != x->end; ++p) {
        const ZemTimeRange range = *p;
        if (!ZemTimeRangeIsValid(&range)) {
            continue;
        }
        if (kept != x->begin && range.end >= kept[-1].end &&
            ZemTimeReaches_(kept[-1].begin, range.end, reach)) {
            kept[-1].begin = std::max(kept[-1].begin, range.begin);
        } else {
            inOrder = inOrder && (kept == x->begin || range.end > kept[-1].end);
            *kept++ = range;
        }
    }
    x->end = kept;
    return inOrder;
}

struct BeginsBefore {
    bool operator()(const ZemTimeRange& x, const ZemTimeRange& y) const
    {
        return x.end < y.end;
    }
};

}  // namespace

ZemBool ZemTimeRangeSetNormalize(ZemVector_ZemTimeRange* x)
{
    return ZemTimeRangeSetJoin(x, 1);
}

ZemBool ZemTimeRangeSetIsNormal(const ZemVector_ZemTimeRange* x)
{
    return FirstToJoin(x->begin, x->end, 1) == x->end;
}

ZemBool ZemTimeRangeSetJoin(ZemVector_ZemTimeRange* x, ZemTime reach)
{
    const ZemUint64 far = reach > 1 ? static_cast<ZemUint64>(reach) : 1;
    if (!JoinNeighbours(x, far)) {
        std::sort(x->begin, x->end, BeginsBefore());
        JoinNeighbours(x, far);
    }
    return 1;
}

ZemBool ZemTimeRangeSetUnion(const ZemVector_ZemTimeRange* x, const ZemVector_ZemTimeRange* y,
                             ZemVector_ZemTimeRange* result)
{
    return Combine(x, y, ZemVector::SizeOf(x) + ZemVector::SizeOf(y), result, Unite);
}

ZemBool ZemTimeRangeSetIntersection(const ZemVector_ZemTimeRange* x,
                                    const ZemVector_ZemTimeRange* y, ZemVector_ZemTimeRange* result)
{
    const ZemSizeT xn = ZemVector::SizeOf(x);
    const ZemSizeT yn = ZemVector::SizeOf(y);
    return Combine(x, y, xn == 0 || yn == 0 ? 0 : xn + yn - 1, result, Intersect);
}

ZemBool ZemTimeRangeSetDifference(const ZemVector_ZemTimeRange* x, const ZemVector_ZemTimeRange* y,
                                  ZemVector_ZemTimeRange* result)
{
    const ZemSizeT xn = ZemVector::SizeOf(x);
    return Combine(x, y, xn == 0 ? 0 : xn + ZemVector::SizeOf(y), result, Subtract);
}

ZemBool ZemTimeRangeSetSymmetricDifference(const ZemVector_ZemTimeRange* x,
                                           const ZemVector_ZemTimeRange* y,
                                           ZemVector_ZemTimeRange* result)
{
    return Combine(x, y, ZemVector::SizeOf(x) + ZemVector::SizeOf(y), result, SubtractBothWays);
}

ZemBool ZemTimeRangeSetGaps(const ZemVector_ZemTimeRange* x, const ZemTimeRange* window,
                            ZemVector_ZemTimeRange* result)
{
    const ZemTimeRange whole = *window;
    if (!ZemTimeRangeIsValid(&whole)) {
        result->end = result->begin;
        return 1;
    }
    const ZemTimeRange* p = LowerBound(x->begin, x->end, whole.end);
    const ZemTimeRange* last = PastBegun(x->begin + (p - x->begin), x->end, whole.begin);
    ZemTimeRange below = whole;
    ZemTimeRange above;
    bool hasBelow = true;
    bool hasAbove = false;
    ZemSizeT count = 1;
    if (p != last) {
        hasBelow = ZemTimeRangeCutBelow_(&whole, p, &below);
        hasAbove = ZemTimeRangeCutAbove_(&whole, last - 1, &above);
        count = static_cast<ZemSizeT>(last - p - 1 + hasBelow + hasAbove);
    }
    Room room;
    if (!MakeRoom(result, count, &room)) {
        return 0;
    }
    // Where `result` is `x`, writing never overtakes reading: a gap comes before the range behind
    // it.
    ZemTimeRange* out = room.block;
    if (p != last) {
        ZemTime upper = p->begin;
        if (hasBelow) {
            *out++ = below;
        }
        while (++p != last) {
            const ZemTimeRange next = *p;
            *out++ = {ZemTimePrevious_(next.end), ZemTimeNext_(upper)};
            upper = next.begin;
        }
        if (hasAbove) {
            *out++ = above;
        }
    } else {
        *out++ = whole;
    }
    Take(result, room, out);
    return 1;
}

ZemBool ZemTimeRangeSetAdd(ZemVector_ZemTimeRange* x, const ZemTimeRange* t)
{
    const ZemTimeRange added = *t;
    if (!ZemTimeRangeIsValid(&added)) {
        return 1;
    }
    // All that it overlaps or touches becomes one range.
    ZemTimeRange wide;
    ZemTimeRangeWiden_(&added, &wide);
    ZemTimeRange* first = LowerBound(x->begin, x->end, wide.end);
    ZemTimeRange* last = PastBegun(first, x->end, wide.begin);
    if (first == last) {
        return Insert(x, first, added);
    }
    first->end = std::min(first->end, added.end);
    first->begin = std::max(last[-1].begin, added.begin);
    ZemVector::EraseRange(x, first + 1, last);
    return 1;
}

ZemBool ZemTimeRangeSetRemove(ZemVector_ZemTimeRange* x, const ZemTimeRange* t)
{
    const ZemTimeRange removed = *t;
    if (!ZemTimeRangeIsValid(&removed)) {
        return 1;
    }
    ZemTimeRange* first = LowerBound(x->begin, x->end, removed.end);
    ZemTimeRange* last = PastBegun(first, x->end, removed.begin);
    if (first == last) {
        return 1;
    }
    ZemTimeRange below;
    ZemTimeRange above;
    const bool hasBelow = ZemTimeRangeCutBelow_(first, &removed, &below);
    const bool hasAbove = ZemTimeRangeCutAbove_(last - 1, &removed, &above);
    if (hasBelow && hasAbove && last - first == 1) {
        const ZemDistanceT place = first - x->begin;
        if (!Insert(x, last, above)) {
            return 0;
        }
        x->begin[place] = below;
        return 1;
    }
    if (hasBelow) {
        *first++ = below;
    }
    if (hasAbove) {
        *--last = above;
    }
    ZemVector::EraseRange(x, first, last);
    return 1;
}

ZemVector_ZemTimeRangeConstIterator ZemTimeRangeSetFind(const ZemVector_ZemTimeRange* x, ZemTime t)
{
    const ZemTimeRange* found = LowerBound(x->begin, x->end, t);
    return found != x->end && found->end <= t ? found : nullptr;
}

ZemVector_ZemTimeRangeConstIterator ZemTimeRangeSetLowerBound(const ZemVector_ZemTimeRange* x,
                                                              ZemTime t)
{
    return LowerBound(x->begin, x->end, t);
}

ZemBool ZemTimeRangeSetIntersects(const ZemVector_ZemTimeRange* x, const ZemVector_ZemTimeRange* y)
{
    Side<Ranges> xSide = {x->begin, x->end};
    Side<Ranges> ySide = {y->begin, y->end};
    while (!xSide.Empty() && !ySide.Empty()) {
        if (xSide.Upper() < ySide.Lower()) {
            xSide.next = SkipBelow(xSide, ySide.Lower());
        } else if (ySide.Upper() < xSide.Lower()) {
            ySide.next = SkipBelow(ySide, xSide.Lower());
        } else {
            return 1;
        }
    }
    return 0;
}

ZemBool ZemTimeRangeSetSubsumes(const ZemVector_ZemTimeRange* x, const ZemVector_ZemTimeRange* y)
{
    Side<Ranges> xSide = {x->begin, x->end};
    for (const ZemTimeRange* p = y->begin; p != y->end; ++p) {
        xSide.next = SkipBelow(xSide, p->begin);
        if (xSide.Empty() || xSide.Lower() > p->end) {
            return 0;
        }
    }
    return 1;
}

ZemUint64 ZemTimeRangeSetLength(const ZemVector_ZemTimeRange* x)
{
    ZemUint64 length = 0;
    for (const ZemTimeRange* p = x->begin; p != x->end; ++p) {
        length += ZemTimeDistance_(p->end, p->begin);
    }
    return length;
}
