// Merging ranges that overlap, on three allocators: over malloc, over a stack array, and one of the
// caller's own.

#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>

#include <Zem/Os/ZemTimeInline.h>

static int CompareRanges(const void* a, const void* b)
{
    return ZemTimeRangeLess(a, b) ? -1 : ZemTimeRangeLess(b, a);
}

// Unites ranges that share an instant, so that the rest stand apart and in order.
static void Merge(ZemVector_ZemTimeRange* x)
{
    ZemVector_ZemTimeRangeIterator kept = ZemVector_ZemTimeRangeBegin(x);
    ZemVector_ZemTimeRangeIterator end = ZemVector_ZemTimeRangeEnd(x);
    ZemVector_ZemTimeRangeIterator it = kept;

    if (ZemVector_ZemTimeRangeEmpty(x)) {
        return;
    }
    // By lower bound: what a range meets, if anything, then lies right before it.
    qsort(kept, ZemVector_ZemTimeRangeSize(x), sizeof *kept, CompareRanges);
    while (ZemVector_ZemTimeRangeIteratorIncrement(&it), it != end) {
        if (ZemTimeRangeIntersects(kept, it)) {
            ZemTimeRangeUnion(kept, it, kept);
        } else {
            ZemVector_ZemTimeRangeIteratorIncrement(&kept);
            ZemTimeRangeAssign(kept, it);
        }
    }
    ZemVector_ZemTimeRangeIteratorIncrement(&kept);
    ZemVector_ZemTimeRangeEraseRange(x, kept, end);
}

// Collects a few meetings of a day and prints when someone was busy; 0 when memory runs out.
static int PrintBusy(const char* name, ZemAllocator* allocator)
{
    static const int minutes[][2] = {
        {9 * 60, 10 * 60}, {13 * 60, 14 * 60}, {9 * 60 + 30, 11 * 60}, {14 * 60, 15 * 60}};
    ZemVector_ZemTimeRange busy;
    ZemVector_ZemTimeRangeConstIterator it;
    ZemVector_ZemTimeRangeConstIterator end;
    ZemTime total = 0;
    ZemSizeT i;
    char text[16];
    int ok = 1;

    ZemVector_ZemTimeRangeConstructDefault(&busy, allocator);
    for (i = 0; ok && i < sizeof minutes / sizeof minutes[0]; ++i) {
        ZemTimeRange range;
        // The upper bound comes first.
        ZemTimeRangeConstruct(&range, ZemTimeSecs(60 * minutes[i][1]),
                              ZemTimeSecs(60 * minutes[i][0]));
        ok = ZemVector_ZemTimeRangePushBack(&busy, &range);
    }
    printf("%s: ", name);
    if (ok) {
        Merge(&busy);
        it = ZemVector_ZemTimeRangeBeginConst(&busy);
        end = ZemVector_ZemTimeRangeEndConst(&busy);
        for (; it != end; ZemVector_ZemTimeRangeConstIteratorIncrement(&it)) {
            total += ZemTimeRangeBegin(it) - ZemTimeRangeEnd(it);
        }
        printf("busy %zu times, %s in all\n", ZemVector_ZemTimeRangeSize(&busy),
               ZemTimePrintCompact(total, text, sizeof text));
    } else {
        // Nothing is lost when memory runs out: the vector is as it was before the call.
        printf("no memory after %zu ranges\n", ZemVector_ZemTimeRangeSize(&busy));
    }
    ZemVector_ZemTimeRangeDestruct(&busy);
    return ok;
}

// An allocator of one's own is two functions and, in userData, what they need: here the bytes that
// may still be handed out.
static ZemVoidPtr BudgetAllocate(ZemAllocator* allocator, ZemSizeT size)
{
    ZemSizeT* left = allocator->userData;
    ZemVoidPtr block = size <= *left ? malloc(size) : NULL;
    if (block != NULL) {
        *left -= size;
    }
    return block;
}

// A vector hands every block back with the size that it asked for, so none has to be stored.
static void BudgetDeallocate(ZemAllocator* allocator, ZemVoidPtr block, ZemSizeT size)
{
    ZemSizeT* left = allocator->userData;
    *left += size;
    free(block);
}

int main(void)
{
    ZemAllocator heap;
    ZemFixedAllocator fixed;
    char buffer[512];
    ZemSizeT left = 5 * sizeof(ZemTimeRange);
    ZemAllocator budget = {BudgetAllocate, BudgetDeallocate, 0, &left};
    int ok = 1;

    ZemAllocatorConstructMalloc(&heap, SIZE_MAX);
    ok &= PrintBusy("malloc", &heap);

    ZemFixedAllocatorConstruct(&fixed, buffer, sizeof buffer);
    ok &= PrintBusy("stack", &fixed.allocator);

    // Growing takes the new block before the old one goes back: 2 and 4 ranges at a time.
    ok &= !PrintBusy("budget", &budget);
    left += sizeof(ZemTimeRange);
    ok &= PrintBusy("larger budget", &budget);
    ok &= left == 6 * sizeof(ZemTimeRange);
    return ok ? 0 : 1;
}
