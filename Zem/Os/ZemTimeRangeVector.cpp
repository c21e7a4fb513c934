// The vector of time ranges: the generic vector's algorithms under the instance's names. The
// accessors and iterator steps are in the inline header.

#include "Zem/Containers/ZemVector.hpp"
#include "Zem/Os/ZemTimeInline.h"

ZemVector_ZemTimeRange* ZemVector_ZemTimeRangeConstructDefault(ZemVector_ZemTimeRange* x,
                                                               ZemAllocator* a)
{
    return ZemVector::ConstructDefault(x, a);
}

ZemVector_ZemTimeRange* ZemVector_ZemTimeRangeConstructN(ZemVector_ZemTimeRange* x,
                                                         ZemVector_ZemTimeRangeSizeType n,
                                                         const ZemTimeRange* t, ZemAllocator* a)
{
    return ZemVector::ConstructN(x, n, t, a);
}

ZemVector_ZemTimeRange* ZemVector_ZemTimeRangeConstructRange(
    ZemVector_ZemTimeRange* x, ZemVector_ZemTimeRangeConstIterator first,
    ZemVector_ZemTimeRangeConstIterator last, ZemAllocator* a)
{
    return ZemVector::ConstructRange(x, first, last, a);
}

ZemVector_ZemTimeRange* ZemVector_ZemTimeRangeConstructCopy(ZemVector_ZemTimeRange* x,
                                                            const ZemVector_ZemTimeRange* y)
{
    return ZemVector::ConstructRange<ZemVector_ZemTimeRange>(x, y->begin, y->end, y->allocator);
}

void ZemVector_ZemTimeRangeDestruct(ZemVector_ZemTimeRange* x)
{
    ZemVector::Destruct(x);
}

ZemVector_ZemTimeRange* ZemVector_ZemTimeRangeAssign(ZemVector_ZemTimeRange* x,
                                                     const ZemVector_ZemTimeRange* y)
{
    return ZemVector::Assign(x, y);
}

ZemBool ZemVector_ZemTimeRangeSwap(ZemVector_ZemTimeRange* x, ZemVector_ZemTimeRange* y)
{
    return ZemVector::Swap(x, y);
}

ZemBool ZemVector_ZemTimeRangeEqual(const ZemVector_ZemTimeRange* x,
                                    const ZemVector_ZemTimeRange* y)
{
    return ZemVector::Equal(x, y, [](const ZemTimeRange& a, const ZemTimeRange& b) {
        return ZemTimeRangeEqual(&a, &b) != 0;
    });
}

ZemBool ZemVector_ZemTimeRangeGrow_(ZemVector_ZemTimeRange* x)
{
    return ZemVector::Grow(x);
}

ZemBool ZemVector_ZemTimeRangeReserve(ZemVector_ZemTimeRange* x,
                                      ZemVector_ZemTimeRangeSizeType capacity)
{
    return ZemVector::Reserve(x, capacity);
}

ZemBool ZemVector_ZemTimeRangeResize(ZemVector_ZemTimeRange* x, ZemVector_ZemTimeRangeSizeType n,
                                     const ZemTimeRange* t)
{
    return ZemVector::Resize(x, n, t);
}

ZemVector_ZemTimeRangeIterator ZemVector_ZemTimeRangeInsert(ZemVector_ZemTimeRange* x,
                                                            ZemVector_ZemTimeRangeIterator pos,
                                                            const ZemTimeRange* t)
{
    return ZemVector::Insert(x, pos, t);
}

ZemBool ZemVector_ZemTimeRangeInsertN(ZemVector_ZemTimeRange* x, ZemVector_ZemTimeRangeIterator pos,
                                      ZemVector_ZemTimeRangeSizeType n, const ZemTimeRange* t)
{
    return ZemVector::InsertN(x, pos, n, t);
}

ZemBool ZemVector_ZemTimeRangeInsertRange(ZemVector_ZemTimeRange* x,
                                          ZemVector_ZemTimeRangeIterator pos,
                                          ZemVector_ZemTimeRangeConstIterator first,
                                          ZemVector_ZemTimeRangeConstIterator last)
{
    return ZemVector::InsertRange(x, pos, first, last);
}

ZemVector_ZemTimeRangeIterator ZemVector_ZemTimeRangeErase(ZemVector_ZemTimeRange* x,
                                                           ZemVector_ZemTimeRangeIterator pos)
{
    return ZemVector::EraseRange(x, pos, pos + 1);
}

ZemVector_ZemTimeRangeIterator ZemVector_ZemTimeRangeEraseRange(
    ZemVector_ZemTimeRange* x, ZemVector_ZemTimeRangeIterator first,
    ZemVector_ZemTimeRangeIterator last)
{
    return ZemVector::EraseRange(x, first, last);
}

void ZemVector_ZemTimeRangeDump(const ZemVector_ZemTimeRange* /*x*/, const char* /*name*/,
                                ZemUint32 /*tabStop*/)
{}
