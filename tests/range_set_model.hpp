// Turns bytes into operations on three sets of ranges and holds every step against sets of bits.
//
// Each bit stands for a block of instants, and the blocks make up all that 64 bits can name: most
// hold one instant, some all that is left, so that sets end or begin at both ends of the range.
#pragma once

#include <algorithm>
#include <bitset>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <vector>

#include "Zem/Os/ZemTimeInline.h"
#include "Zem/Os/ZemTimeRangeSet.h"

struct RangeSetModel {
    static constexpr std::size_t kBlocks = 1024;
    using Bits = std::bitset<kBlocks>;
    using Ranges = std::vector<ZemTimeRange>;
    using Vector = ZemVector_ZemTimeRange;
    struct Side {
        Vector real{};
        Bits bits{};
    };

    const std::uint8_t* next;
    const std::uint8_t* last;
    std::map<void*, std::size_t> blocks{};  // from the allocator, with their sizes
    std::size_t requests = 0;               // in this step
    std::size_t requested = 0;              // bytes of the last one
    bool refuses = false;
    bool ok = true;
    ZemAllocator allocator = {Allocate, Free, 0, this};
    Side sides[3];
    ZemTime lower[kBlocks];  // the first instant of each block

    static void* Allocate(ZemAllocator* a, ZemSizeT size)
    {
        auto* model = static_cast<RangeSetModel*>(a->userData);
        ++model->requests;
        model->requested = size;
        void* block = model->refuses ? nullptr : std::malloc(size);
        if (block != nullptr) {
            model->blocks[block] = size;
        }
        return block;
    }

    static void Free(ZemAllocator* a, void* block, ZemSizeT size)
    {
        auto* model = static_cast<RangeSetModel*>(a->userData);
        model->ok = model->ok && model->blocks[block] == size;
        model->blocks.erase(block);
        std::free(block);
    }

    RangeSetModel(const std::uint8_t* first, const std::uint8_t* end) : next(first), last(end)
    {
        // Which block is large: the last, the first, one in the middle, or both at the ends.
        const std::size_t layout = Next(4);
        const std::size_t large = layout == 0 ? kBlocks - 1 : layout == 1 ? 0 : kBlocks / 2;
        for (std::size_t k = 0; k < kBlocks; ++k) {
            const auto i = static_cast<ZemTime>(k);
            lower[k] =
                k <= large ? INT64_MIN + i : INT64_MAX - static_cast<ZemTime>(kBlocks) + 1 + i;
            if (layout == 3 && k != 0) {
                lower[k] = i - static_cast<ZemTime>(kBlocks) / 2;
            }
        }
        for (Side& s : sides) {
            ZemVector_ZemTimeRangeConstructDefault(&s.real, &allocator);
        }
    }

    ~RangeSetModel()
    {
        for (Side& s : sides) {
            ZemVector_ZemTimeRangeDestruct(&s.real);
        }
    }

    RangeSetModel(const RangeSetModel&) = delete;
    RangeSetModel& operator=(const RangeSetModel&) = delete;

    std::size_t Next(std::size_t bound)
    {
        return next == last ? 0 : *next++ % bound;
    }

    std::size_t NextBlock(std::size_t bound = kBlocks)
    {
        const std::size_t high = 256 * Next(256);
        return (high + Next(256)) % bound;
    }

    ZemTime Upper(std::size_t block) const
    {
        return block + 1 < kBlocks ? lower[block + 1] - 1 : INT64_MAX;
    }

    Bits Between(std::size_t first, std::size_t end) const
    {
        return first < end ? (~Bits() >> (kBlocks - (end - first))) << first : Bits();
    }

    // Stretches of different make.
    Bits Pattern()
    {
        Bits bits;
        std::size_t k = 0;
        while (k < kBlocks) {
            const std::size_t end = std::min(kBlocks, k + 1 + 4 * Next(256));
            const std::size_t kind = Next(8);
            std::size_t noise = Next(256);
            for (; k < end; ++k) {
                noise = noise * 1103515245 + 12345;
                const bool choices[] = {false,
                                        true,
                                        k % 2 == 0,
                                        k % 4 < 2,
                                        k % 8 == 3,
                                        k % 16 == 11,
                                        (noise >> 16) % 2 == 0,
                                        (noise >> 16) % 4 == 0};
                bits[k] = choices[kind];
            }
        }
        return bits;
    }

    Ranges RangesOf(const Bits& bits) const
    {
        Ranges ranges;
        for (std::size_t k = 0; k < kBlocks; ++k) {
            if (bits[k] && (k == 0 || !bits[k - 1])) {
                ranges.push_back({0, lower[k]});
            }
            if (bits[k]) {
                ranges.back().begin = Upper(k);
            }
        }
        return ranges;
    }

    static bool Same(const Vector& x, const Ranges& y)
    {
        return std::equal(x.begin, x.end, y.begin(), y.end(),
                          [](auto& p, auto& q) { return ZemTimeRangeEqual(&p, &q) != 0; });
    }

    void Fill(Vector* x, const Ranges& ranges, std::size_t spare)
    {
        ZemVector_ZemTimeRangeDestruct(x);
        ZemVector_ZemTimeRangeReserve(x, ranges.size() + spare);
        ZemVector_ZemTimeRangeInsertRange(x, x->end, ranges.data(), ranges.data() + ranges.size());
    }

    // A side's ranges once more in pieces that overlap or touch, in any order, with some that hold
    // nothing.
    Ranges Pieces(const Bits& bits)
    {
        Ranges pieces;
        const std::size_t seed = Next(256);
        for (ZemTimeRange r : RangesOf(bits)) {
            const std::size_t i = pieces.size();
            if (seed != 0 && i % seed == 0 && r.end < r.begin) {
                pieces.push_back({r.end + static_cast<ZemTime>(i % 2), r.end});
                r.end += 1;
            }
            if (seed != 0 && i % seed == 1) {
                pieces.push_back({INT64_MIN, r.begin == INT64_MIN ? 0 : r.begin});
            }
            pieces.push_back(r);
        }
        for (std::size_t i = pieces.size(); seed % 2 == 1 && i > 1; --i) {
            std::swap(pieces[i - 1], pieces[(seed * i) % i]);
            std::swap(pieces[i - 1], pieces[(seed * i * i + 7) % i]);
        }
        return pieces;
    }

    // Calls a function that gives `result` the contents `bits` and may need room for `count` ranges
    // (none: as many as it likes); refuses it memory where the bytes say so.
    void Expect(Side& result, const Bits& bits, std::ptrdiff_t count,
                const std::function<int()>& call)
    {
        const Ranges was[] = {RangesOf(sides[0].bits), RangesOf(sides[1].bits),
                              RangesOf(sides[2].bits)};
        const std::ptrdiff_t capacity = result.real.endBuf - result.real.begin;
        requests = 0;
        refuses = Next(4) == 0;
        const bool done = call() == 1;
        const std::size_t needed = count > capacity ? 1 : 0;
        if (count >= 0) {
            ok = ok && requests == needed &&
                 (needed == 0 ||
                  requested == sizeof(ZemTimeRange) * static_cast<std::size_t>(count));
        }
        ok = ok && requests <= 1 && done == !(refuses && requests != 0);
        refuses = false;
        for (Side& s : sides) {
            const bool changed = done && &s == &result;
            ok = ok && Same(s.real, changed ? RangesOf(bits) : was[&s - sides]);
            s.bits = changed ? bits : s.bits;
        }
    }

    void ExpectJoined(Side& s, ZemTime reach)
    {
        Bits joined = s.bits;
        std::size_t from = kBlocks;  // one past the last bit that is set so far
        for (std::size_t k = 0; k < kBlocks; ++k) {
            if (!s.bits[k]) {
                continue;
            }
            const Int gap = static_cast<Int>(lower[k]) - (from < kBlocks ? Upper(from - 1) : 0);
            if (from < kBlocks && gap <= reach) {
                joined |= Between(from, k);
            }
            from = k + 1;
        }
        Fill(&s.real, Pieces(s.bits), 0);
        s.bits = joined;
        ok = ok && ZemTimeRangeSetJoin(&s.real, reach) == 1 && Same(s.real, RangesOf(joined));
    }

    void ExpectAnswers(Side& s, Side& other)
    {
        const Vector* x = &s.real;
        const Ranges ranges = RangesOf(s.bits);
        ZemUint64 length = 0;
        for (const ZemTimeRange& r : ranges) {
            length += static_cast<ZemUint64>(r.begin) - static_cast<ZemUint64>(r.end);
        }
        const std::size_t block = NextBlock();
        for (ZemTime t : {lower[block], Upper(block)}) {
            auto bound = std::find_if(x->begin, x->end, [=](auto& r) { return r.begin >= t; });
            ok = ok && ZemTimeRangeSetLowerBound(x, t) == bound &&
                 ZemTimeRangeSetFind(x, t) == (s.bits[block] ? bound : nullptr);
        }
        ok = ok && ZemTimeRangeSetIsNormal(x) && ZemTimeRangeSetLength(x) == length &&
             ZemTimeRangeSetIntersects(x, &other.real) == (s.bits & other.bits).any() &&
             ZemTimeRangeSetSubsumes(x, &other.real) == (other.bits & ~s.bits).none();
    }

    // Sets that are none: results are anybody's guess, but memory stays sound.
    void TryAnything()
    {
        for (Side& s : sides) {
            Ranges any(Next(150));
            for (ZemTimeRange& r : any) {
                r = {lower[NextBlock()], lower[NextBlock()]};
            }
            Fill(&s.real, any, 0);
        }
        Vector* const a = &sides[0].real;
        Vector* const b = &sides[1].real;
        Vector* const c = &sides[Next(3)].real;
        const ZemTimeRange t = {lower[NextBlock()], lower[NextBlock()]};
        ZemTimeRangeSetIsNormal(a);
        ZemTimeRangeSetFind(a, t.begin);
        ZemTimeRangeSetIntersects(a, b);
        ZemTimeRangeSetSubsumes(a, b);
        ZemTimeRangeSetLength(a);
        const std::function<int()> calls[] = {
            [=] { return ZemTimeRangeSetUnion(a, b, c); },
            [=] { return ZemTimeRangeSetIntersection(a, b, c); },
            [=] { return ZemTimeRangeSetDifference(a, b, c); },
            [=] { return ZemTimeRangeSetSymmetricDifference(a, b, c); },
            [=] { return ZemTimeRangeSetGaps(a, &t, c); },
            [=] { return ZemTimeRangeSetAdd(c, &t); },
            [=] { return ZemTimeRangeSetRemove(c, &t); },
        };
        ok =
            ok && calls[Next(std::size(calls))]() == 1 && c->begin <= c->end && c->end <= c->endBuf;
        for (Side& s : sides) {
            s.bits = Pattern();
            Fill(&s.real, RangesOf(s.bits), Next(40));
        }
    }

    void Step()
    {
        Side& s = sides[Next(3)];
        Side& other = sides[Next(3)];
        Side& result = sides[Next(3)];
        const Vector* x = &s.real;
        const Vector* y = &other.real;
        const std::ptrdiff_t xn = x->end - x->begin;
        const std::ptrdiff_t yn = y->end - y->begin;
        Vector* r = &result.real;
        const std::size_t first = NextBlock();
        const std::size_t end = NextBlock(kBlocks + 1);  // before `first`: the range is invalid
        ZemTimeRange t = {end == 0 ? INT64_MIN : Upper(end - 1), lower[first]};
        if (end == 0 && first == 0) {
            t.end = 0;
        }
        const Bits range = Between(first, end);
        const std::size_t kind = Next(16);
        // Capacities around what some operation needs.
        if (kind >= 6 && Next(2) == 0) {
            const std::ptrdiff_t spare[] = {0, 1, xn, yn, yn - 1, xn + yn - 1};
            Fill(r, RangesOf(result.bits),
                 static_cast<std::size_t>(std::max<std::ptrdiff_t>(spare[Next(6)], 0)));
            return;
        }
        switch (kind) {
            case 0:
                s.bits = Pattern();
                return Fill(&s.real, RangesOf(s.bits), Next(3));
            case 1:
                return ExpectJoined(s, static_cast<ZemTime>(Next(20)) - 3);
            case 2:
                return ExpectJoined(s, Next(2) == 0 ? ZEM_TIME_INFINITE : 1);
            case 3:
                return ExpectAnswers(s, other);
            case 4:
                return Next(8) == 0 ? TryAnything() : ExpectAnswers(s, s);
            case 5: {
                other.bits = s.bits & Pattern();
                Fill(&other.real, RangesOf(other.bits), 0);
                return ExpectAnswers(s, other);
            }
            case 6:
            case 7:
                return Expect(result, s.bits | other.bits, xn + yn,
                              [=] { return ZemTimeRangeSetUnion(x, y, r); });
            case 8:
            case 9:
                return Expect(result, s.bits & other.bits, xn == 0 || yn == 0 ? 0 : xn + yn - 1,
                              [=] { return ZemTimeRangeSetIntersection(x, y, r); });
            case 10:
            case 11:
                return Expect(result, s.bits & ~other.bits, xn == 0 ? 0 : xn + yn,
                              [=] { return ZemTimeRangeSetDifference(x, y, r); });
            case 12:
                return Expect(result, s.bits ^ other.bits, xn + yn,
                              [=] { return ZemTimeRangeSetSymmetricDifference(x, y, r); });
            case 13: {
                const Bits gaps = range & ~s.bits;
                return Expect(result, gaps, static_cast<std::ptrdiff_t>(RangesOf(gaps).size()),
                              [=] { return ZemTimeRangeSetGaps(x, &t, r); });
            }
            case 14:
                return Expect(result, result.bits | range, -1,
                              [=] { return ZemTimeRangeSetAdd(r, &t); });
            default:
                return Expect(result, result.bits & ~range, -1,
                              [=] { return ZemTimeRangeSetRemove(r, &t); });
        }
    }

    // Runs the operations that the bytes name; false at the first difference.
    bool Run()
    {
        while (ok && next != last) {
            Step();
        }
        return ok;
    }

  private:
    __extension__ typedef __int128 Int;
};
