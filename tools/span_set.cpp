#include "span_set.hpp"

#include <algorithm>
#include <new>
#include <numeric>

namespace {

// Below this many spans a merge is not worth its sort.
constexpr size_t kMergeAtLeast = 1024;

// One for all sets, so that they can exchange their storage.
ZemAllocator* Heap()
{
    static ZemAllocator heap;
    return ZemAllocatorConstructMalloc(&heap, SIZE_MAX);
}

}  // namespace

SpanSet::SpanSet(ZemTime gap) : reach_(gap - 1), mergeAt_(kMergeAtLeast)
{
    ZemVector_ZemTimeRangeConstructDefault(&ranges_, Heap());
}

SpanSet::~SpanSet()
{
    ZemVector_ZemTimeRangeDestruct(&ranges_);
}

void SpanSet::PushBack(const ZemTimeRange& span, ZemUint64 events)
{
    if (Size() == ZemVector_ZemTimeRangeMaxSize(&ranges_) ||
        !ZemVector_ZemTimeRangePushBack(&ranges_, &span)) {
        throw std::bad_alloc();
    }
    events_.push_back(events);
}

void SpanSet::Append(const ZemTimeRange& span, ZemUint64 events)
{
    if (Size() >= mergeAt_) {
        Merge();
        mergeAt_ = std::max(kMergeAtLeast, 2 * Size());
    }
    PushBack(span, events);
}

void SpanSet::AddAll(const SpanSet& other)
{
    for (size_t i = 0; i < other.Size(); ++i) {
        Add(other.At(i), other.EventsAt(i));
    }
}

void SpanSet::Merge()
{
    std::vector<size_t> order(Size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::sort(order.begin(), order.end(),
              [this](size_t a, size_t b) { return ZemTimeRangeLess(&At(a), &At(b)) != 0; });

    SpanSet merged(reach_ + 1);
    for (size_t i : order) {
        if (!merged.Extend(At(i), EventsAt(i))) {
            merged.PushBack(At(i), EventsAt(i));
        }
    }
    ZemVector_ZemTimeRangeSwap(&ranges_, &merged.ranges_);
    events_.swap(merged.events_);
}

void FindOverlaps(const std::vector<const SpanSet*>& sets, SpanSet& overlaps)
{
    // What two or more sets share is what each shares with all before it.
    SpanSet before(1);
    for (const SpanSet* set : sets) {
        for (size_t i = 0, j = 0; i < before.Size() && j < set->Size();) {
            ZemTimeRange common;
            ZemTimeRangeIntersection(&before.At(i), &set->At(j), &common);
            if (ZemTimeRangeIsValid(&common)) {
                overlaps.Add(common, 0);
            }
            bool setEndsFirst = ZemTimeRangeBegin(&set->At(j)) < ZemTimeRangeBegin(&before.At(i));
            setEndsFirst ? ++j : ++i;
        }
        before.AddAll(*set);
        before.Merge();
    }
    overlaps.Merge();
}

bool IsActiveIn(const SpanSet& set, const ZemTimeRange& range)
{
    const auto* last = ZemVector_ZemTimeRangeEndConst(&set.Ranges());
    const auto* span = std::partition_point(
        ZemVector_ZemTimeRangeBeginConst(&set.Ranges()), last, [&range](const ZemTimeRange& x) {
            return ZemTimeRangeBegin(&x) < ZemTimeRangeEnd(&range);
        });
    return span != last && ZemTimeRangeIntersects(span, &range) != 0;
}
