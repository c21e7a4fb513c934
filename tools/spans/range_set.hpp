// A set of ranges of the library's, with its storage.

#ifndef ZEMTIME_TOOLS_RANGE_SET_HPP
#define ZEMTIME_TOOLS_RANGE_SET_HPP

#include <new>

#include "Zem/Os/ZemTimeInline.h"
#include "Zem/Os/ZemTimeRangeSet.h"
#include "tools/spans/span_set.hpp"

class RangeSet {
  public:
    // The times of merged spans, without their events: spans that leave no instant between them are
    // one range.
    explicit RangeSet(const SpanSet& spans)
    {
        ZemAllocatorConstructMalloc(&heap_, SIZE_MAX);
        ZemVector_ZemTimeRangeConstructDefault(&ranges_, &heap_);
        if (!ZemVector_ZemTimeRangeReserve(&ranges_, spans.Size())) {
            throw std::bad_alloc();
        }
        for (size_t i = 0; i < spans.Size(); ++i) {
            ZemVector_ZemTimeRangePushBack(&ranges_, &spans.At(i));
        }
        ZemTimeRangeSetNormalize(&ranges_);
    }

    ~RangeSet()
    {
        ZemVector_ZemTimeRangeDestruct(&ranges_);
    }

    RangeSet(const RangeSet&) = delete;
    RangeSet& operator=(const RangeSet&) = delete;

    [[nodiscard]] size_t Size() const
    {
        return ZemVector_ZemTimeRangeSize(&ranges_);
    }

    // In order, with at least one instant missing between neighbours.
    [[nodiscard]] const ZemTimeRange& At(size_t i) const
    {
        return *ZemVector_ZemTimeRangeAtConst(&ranges_, i);
    }

  private:
    ZemAllocator heap_;
    ZemVector_ZemTimeRange ranges_;
};

#endif
