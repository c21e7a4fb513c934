// Sets of ranges: union, intersection and difference of two, at several sizes and kinds of order,
// and the range that holds an instant.

#include <algorithm>
#include <boost/icl/closed_interval.hpp>
#include <boost/icl/interval_set.hpp>
#include <cstring>
#include <vector>

#include "Zem/Os/ZemTime.hpp"
#include "values.h"

namespace bench {

namespace {

using Vector = ZemVector_ZemTimeRange;
using Ranges = std::vector<ZemTimeRange>;
using Interval = boost::icl::closed_interval<ZemTime>;
using IntervalSet = boost::icl::interval_set<ZemTime, std::less, Interval>;

// ---------------------------------------------------------------------------------------------
// Values
// ---------------------------------------------------------------------------------------------

// Two sets, as the library and as Boost.ICL has them.
struct Pair {
    Ranges x;
    Ranges y;
    IntervalSet icl[2];
};

// The next range of a set, behind `t`, with pauses and lengths about `scale`.
ZemTimeRange Behind(ZemTime t, ZemTime scale)
{
    const ZemTime lower = t + Between(2, 2 * scale);
    return {lower + Between(0, scale), lower};
}

// Two sets that have nothing to do with each other.
void FillRandom(Pair* pair, std::size_t size)
{
    for (Ranges* set : {&pair->x, &pair->y}) {
        for (ZemTime t = 0; set->size() < size; t = set->back().begin) {
            set->push_back(Behind(t, 50));
        }
    }
}

// So many ranges of one, then as many of the other. The last of them may reach over the first of
// the other's.
void FillInRuns(Pair* pair, std::size_t size, std::size_t run)
{
    ZemTime t = 0;
    while (pair->y.size() < size) {
        for (Ranges* set : {&pair->x, &pair->y}) {
            t = std::max(t, set->empty() ? 0 : set->back().begin);
            for (std::size_t i = 0; i < run; ++i) {
                set->push_back(Behind(t, 50));
                t = set->back().begin;
            }
            set->back().begin += Between(0, 150);
        }
    }
}

// A million, and a hundred spread over them.
void FillSkewed(Pair* pair)
{
    for (ZemTime t = 0; pair->x.size() < 1000000; t = pair->x.back().begin) {
        pair->x.push_back(Behind(t, 50));
    }
    const ZemTime apart = pair->x.back().begin / 100;
    for (ZemTime t = 0; pair->y.size() < 100; t += apart) {
        pair->y.push_back(Behind(t, 50));
    }
}

IntervalSet IclOf(const Ranges& ranges)
{
    IntervalSet set;
    for (const ZemTimeRange& r : ranges) {
        set.add(set.end(), Interval(r.end, r.begin));
    }
    return set;
}

// ---------------------------------------------------------------------------------------------
// The operations, each in every way
// ---------------------------------------------------------------------------------------------

// Ranges that lie in a buffer of the column's own until its next call.
struct Result {
    const ZemTimeRange* first;
    const ZemTimeRange* last;

    bool operator==(const Result& other) const
    {
        return std::equal(first, last, other.first, other.last, [](const auto& p, const auto& q) {
            return p.begin == q.begin && p.end == q.end;
        });
    }
};

Result ResultOf(const Ranges& ranges)
{
    return {ranges.data(), ranges.data() + ranges.size()};
}

constexpr std::size_t kMost = 1000100;

// Seconds for each repetition: these jobs have many columns, and calls on many elements.
constexpr double kMinTime = 0.02;

ZemTimeRange* Buffer()
{
    static std::vector<ZemTimeRange> buffer(kMost);
    return buffer.data();
}

// An operation of the library's, into a vector that has the capacity.
template <auto operation>
Result Ours(const Pair& pair)
{
    static Vector result = {nullptr, Buffer(), Buffer(), Buffer() + kMost};
    auto view = [](const Ranges& ranges) {
        auto* begin = const_cast<ZemTimeRange*>(ranges.data());
        return Vector{nullptr, begin, begin + ranges.size(), begin + ranges.size()};
    };
    const Vector x = view(pair.x);
    const Vector y = view(pair.y);
    operation(&x, &y, &result);
    return {result.begin, result.end};
}

struct Union {
    static constexpr auto kOurs = ZemTimeRangeSetUnion;
    static bool Holds(bool x, bool y)
    {
        return x || y;
    }
    static IntervalSet Icl(const IntervalSet& x, const IntervalSet& y)
    {
        return x + y;
    }
    static ZemTimeRange* Merge(const Ranges& xs, const Ranges& ys, ZemTimeRange* out)
    {
        auto x = xs.begin();
        auto y = ys.begin();
        auto next = [&] {
            return y == ys.end() || (x != xs.end() && x->end <= y->end) ? *x++ : *y++;
        };
        ZemTimeRange open = next();
        while (x != xs.end() || y != ys.end()) {
            const ZemTimeRange r = next();
            if (r.end <= open.begin || r.end - open.begin == 1) {
                open.begin = std::max(open.begin, r.begin);
            } else {
                *out++ = open;
                open = r;
            }
        }
        *out++ = open;
        return out;
    }
    // Everything into one array, then what touches together.
    static Ranges Simply(const Ranges& x, const Ranges& y)
    {
        Ranges both;
        std::merge(x.begin(), x.end(), y.begin(), y.end(), std::back_inserter(both),
                   [](const auto& p, const auto& q) { return p.end < q.end; });
        Ranges result;
        for (const ZemTimeRange& r : both) {
            if (!result.empty() && r.end <= result.back().begin + 1) {
                result.back().begin = std::max(result.back().begin, r.begin);
            } else {
                result.push_back(r);
            }
        }
        return result;
    }
};

struct Intersection {
    static constexpr auto kOurs = ZemTimeRangeSetIntersection;
    static bool Holds(bool x, bool y)
    {
        return x && y;
    }
    static IntervalSet Icl(const IntervalSet& x, const IntervalSet& y)
    {
        return x & y;
    }
    static ZemTimeRange* Merge(const Ranges& xs, const Ranges& ys, ZemTimeRange* out)
    {
        auto x = xs.begin();
        auto y = ys.begin();
        while (x != xs.end() && y != ys.end()) {
            if (x->begin < y->end) {
                ++x;
            } else if (y->begin < x->end) {
                ++y;
            } else {
                *out++ = {std::min(x->begin, y->begin), std::max(x->end, y->end)};
                if (x->begin < y->begin) {
                    ++x;
                } else {
                    ++y;
                }
            }
        }
        return out;
    }
    static Ranges Simply(const Ranges& x, const Ranges& y)
    {
        Ranges result;
        for (std::size_t i = 0, j = 0; i < x.size() && j < y.size();) {
            const ZemTimeRange r = {std::min(x[i].begin, y[j].begin), std::max(x[i].end, y[j].end)};
            if (r.begin >= r.end) {
                result.push_back(r);
            }
            if (x[i].begin < y[j].begin) {
                ++i;
            } else {
                ++j;
            }
        }
        return result;
    }
};

struct Difference {
    static constexpr auto kOurs = ZemTimeRangeSetDifference;
    static bool Holds(bool x, bool y)
    {
        return x && !y;
    }
    static IntervalSet Icl(const IntervalSet& x, const IntervalSet& y)
    {
        return x - y;
    }
    template <class Write>
    static void Subtract(const Ranges& xs, const Ranges& ys, Write write)
    {
        auto y = ys.begin();
        for (ZemTimeRange x : xs) {
            while (y != ys.end() && y->begin < x.end) {
                ++y;
            }
            bool left = true;
            while (y != ys.end() && y->end <= x.begin) {
                if (y->end > x.end) {
                    write(ZemTimeRange{y->end - 1, x.end});
                }
                left = y->begin < x.begin;
                if (!left) {
                    break;
                }
                x.end = y->begin + 1;
                ++y;
            }
            if (left) {
                write(x);
            }
        }
    }
    static ZemTimeRange* Merge(const Ranges& x, const Ranges& y, ZemTimeRange* out)
    {
        Subtract(x, y, [&](ZemTimeRange r) { *out++ = r; });
        return out;
    }
    static Ranges Simply(const Ranges& x, const Ranges& y)
    {
        Ranges result;
        Subtract(x, y, [&](ZemTimeRange r) { result.push_back(r); });
        return result;
    }
};

// The reference sorts all bounds and looks at what holds between one and the next.
template <class Operation>
Ranges Reference(const Pair& pair)
{
    struct Bound {
        ZemTime at;  // the first instant of a range, or the first behind it
        bool ofX;
    };
    std::vector<Bound> bounds;
    for (const Ranges* set : {&pair.x, &pair.y}) {
        for (const ZemTimeRange& r : *set) {
            bounds.push_back({r.end, set == &pair.x});
            bounds.push_back({r.begin + 1, set == &pair.x});
        }
    }
    std::sort(bounds.begin(), bounds.end(), [](auto& p, auto& q) { return p.at < q.at; });
    Ranges result;
    bool x = false;
    bool y = false;
    bool was = false;
    for (std::size_t i = 0; i < bounds.size(); ++i) {
        (bounds[i].ofX ? x : y) ^= true;
        const bool isLast = i + 1 == bounds.size() || bounds[i + 1].at != bounds[i].at;
        if (isLast && Operation::Holds(x, y) != was) {
            was = !was;
            if (was) {
                result.push_back({0, bounds[i].at});
            } else {
                result.back().begin = bounds[i].at - 1;
            }
        }
    }
    return result;
}

// ---------------------------------------------------------------------------------------------
// Registration
// ---------------------------------------------------------------------------------------------

template <class Operation>
void Register(const char* operation, const char* kind, const std::vector<Pair>& pairs)
{
    std::vector<Ranges> right;
    for (const Pair& pair : pairs) {
        right.push_back(Reference<Operation>(pair));
    }
    const std::size_t mask = pairs.size() - 1;  // their number is a power of two
    const bool skewed = pairs[0].y.size() < pairs[0].x.size();
    Job job(std::string(operation) + ", " + kind,
            [&](std::size_t i) { return ResultOf(right[i & mask]); });
    job.Elements(static_cast<int>(pairs[0].x.size() + pairs[0].y.size()))
        .Values(pairs.size())
        .MinTime(kMinTime);
    auto add = [&](const char* column, auto op, const char* remark = "") {
        job.Add(
            column, [=, &pairs](std::size_t i) { return op(pairs[i & mask]); },
            [](const Result& r) { return r; }, remark);
    };
    add("ours exported", [](const Pair& p) { return Ours<Operation::kOurs>(p); });
    add("hand kernel", [](const Pair& p) {
        return Result{Buffer(), Operation::Merge(p.x, p.y, Buffer())};
    });
    add("std::vector by hand", [](const Pair& p) {
        static Ranges result;
        result = Operation::Simply(p.x, p.y);
        return ResultOf(result);
    });
    if (skewed) {
        // A tree of a million nodes takes longer to copy than all the rest of the run.
        const auto* first = pairs[0].x.data();
        job.AddOther(
            "memcpy of the larger", "copies only",
            [=, size = pairs[0].x.size()](std::size_t) {
                std::memcpy(static_cast<void*>(Buffer()), first, size * sizeof(ZemTimeRange));
                return Buffer();
            },
            [=](std::size_t, const ZemTimeRange* copy) { return copy->end == first->end; });
        return;
    }
    static IntervalSet result;
    job.Add(
        "Boost.ICL interval_set",
        [=, &pairs](std::size_t i) {
            const Pair& p = pairs[i & mask];
            result = Operation::Icl(p.icl[0], p.icl[1]);
            return &result;
        },
        [](const IntervalSet* set) {
            static Ranges ranges;
            ranges.clear();
            for (const Interval& r : *set) {
                ranges.push_back({r.upper(), r.lower()});
            }
            return ResultOf(ranges);
        });
}

template <class Fill>
void RegisterKind(const char* kind, std::size_t count, Fill fill)
{
    auto* pairs = new std::vector<Pair>(count);  // lives as long as the process
    for (Pair& pair : *pairs) {
        fill(&pair);
        if (pair.x.size() == pair.y.size()) {
            pair.icl[0] = IclOf(pair.x);
            pair.icl[1] = IclOf(pair.y);
        }
    }
    Register<Union>("union", kind, *pairs);
    Register<Intersection>("intersection", kind, *pairs);
    Register<Difference>("difference", kind, *pairs);
}

// A value is a batch of instants, so that all of them reach every part of a large set.
constexpr std::size_t kBatch = 64;

// The sum of what `find` gives for a batch: the upper bound of the range that holds the instant, 0
// where there is none.
template <class Find>
ZemTime SumOf(const std::vector<ZemTime>& instants, std::size_t i, Find find)
{
    ZemTime sum = 0;
    for (std::size_t k = 0; k < kBatch; ++k) {
        sum += find(instants[i * kBatch + k]);
    }
    return sum;
}

void RegisterFind(const char* count, std::size_t size)
{
    auto* pair = new Pair();  // this and what follows live as long as the process
    FillRandom(pair, size);
    const Ranges& x = pair->x;
    auto* set = new IntervalSet(IclOf(x));
    auto* instants = new std::vector<ZemTime>(kValues * kBatch);
    std::vector<std::size_t> inOrder(instants->size());
    // Each within some range. Among instants anywhere half would have none, and what the caller
    // then does differently would be mispredicted: a third of the time, in every column.
    for (std::size_t k = 0; k < inOrder.size(); ++k) {
        const auto& range =
            x[static_cast<std::size_t>(Between(0, static_cast<std::int64_t>(size) - 1))];
        (*instants)[k] = Between(range.end, range.begin);
        inOrder[k] = k;
    }
    // The reference walks along the ranges with the instants in order.
    std::sort(inOrder.begin(), inOrder.end(),
              [=](std::size_t p, std::size_t q) { return (*instants)[p] < (*instants)[q]; });
    std::vector<ZemTime> sums(kValues);
    auto range = x.begin();
    for (std::size_t k : inOrder) {
        const ZemTime t = (*instants)[k];
        while (range != x.end() && range->begin < t) {
            ++range;
        }
        sums[k / kBatch] += range != x.end() && range->end <= t ? range->begin : 0;
    }

    Job job(std::string("find in ") + count, [&](std::size_t i) { return sums[i]; });
    job.Elements(kBatch).MinTime(kMinTime);
    auto add = [&](const char* column, auto find) {
        job.Add(column, [=](std::size_t i) { return SumOf(*instants, i, find); });
    };
    const Vector view = {nullptr, pair->x.data(), pair->x.data() + size, pair->x.data() + size};
    add("ours exported", [=](ZemTime t) {
        auto found = ZemTimeRangeSetFind(&view, t);
        return found != nullptr ? found->begin : ZemTime{0};
    });
    auto* face = new zem::RangeSet(zem::RangeVector(x.data(), x.data() + size));
    add("C++ face", [=](ZemTime t) {
        auto found = face->find(t);
        return found != face->end() ? zem::Upper(*found) : ZemTime{0};
    });
    add("std::lower_bound", [&x](ZemTime t) {
        auto it = std::lower_bound(x.begin(), x.end(), t,
                                   [](auto& r, ZemTime at) { return r.begin < at; });
        return it != x.end() && it->end <= t ? it->begin : ZemTime{0};
    });
    add("Boost.ICL interval_set", [=](ZemTime t) {
        auto it = set->find(t);
        return it != set->end() ? it->upper() : ZemTime{0};
    });
}

}  // namespace

void RegisterRangeSets()
{
    RegisterKind("10 and 10", kValues, [](Pair* p) { FillRandom(p, 10); });
    RegisterKind("1,000 and 1,000", 64, [](Pair* p) { FillRandom(p, 1000); });
    RegisterKind("100,000 and 100,000", 2, [](Pair* p) { FillRandom(p, 100000); });
    RegisterKind("10,000 each in runs of 4", 8, [](Pair* p) { FillInRuns(p, 10000, 4); });
    RegisterKind("10,000 each in runs of 16", 8, [](Pair* p) { FillInRuns(p, 10000, 16); });
    RegisterKind("10,000 each in runs of 1,000", 8, [](Pair* p) { FillInRuns(p, 10000, 1000); });
    RegisterKind("1,000,000 and 100", 1, FillSkewed);
    RegisterFind("10", 10);
    RegisterFind("1,000", 1000);
    RegisterFind("1,000,000", 1000000);
}

}  // namespace bench
