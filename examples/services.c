// When were all three services up, when was none, and which outages did nobody plan? Sets of
// ranges, from texts to a printed answer.

#include <stdio.h>

#include <Zem/Os/ZemTimeInline.h>
#include <Zem/Os/ZemTimeRangeSet.h>

typedef struct Span {
    const char* from;
    const char* until;
} Span;

// What each service wrote down: when it was up. The times may be in any order, overlap, and come
// from different zones.
static const Span kWeb[] = {
    {"2024-03-01T00:00:00Z", "2024-03-01T09:00:00Z"},
    {"2024-03-01T08:30:00Z", "2024-03-01T16:00:00Z"},  // a second server took over
    {"2024-03-01T17:15:00Z", "2024-03-02T00:00:00Z"},
};
static const Span kDatabase[] = {
    {"2024-03-01T15:00:00+01:00", "2024-03-01T17:30:00+01:00"},
    {"2024-03-01T01:00:00+01:00", "2024-03-01T13:00:00+01:00"},
    {"2024-03-01T18:00:00+01:00", "2024-03-02T01:00:00+01:00"},
};
static const Span kMail[] = {
    {"2024-03-01T06:00:00Z", "2024-03-01T16:00:00Z"},
    {"2024-03-01T16:45:00Z", "2024-03-01T20:00:00Z"},
    {"2024-03-01T20:00:00Z", "2024-03-02T00:00:00Z"},  // restarted at once
};
static const Span kMaintenance[] = {
    {"2024-03-01T12:00:00Z", "2024-03-01T14:00:00Z"},
    {"2024-03-01T16:00:00Z", "2024-03-01T16:30:00Z"},
};
static const Span kDay = {"2024-03-01T00:00:00Z", "2024-03-02T00:00:00Z"};

#define COUNT(spans) (sizeof(spans) / sizeof(spans)[0])

// The instant that a text names; ZEM_TIME_INFINITE when it names none.
static ZemTime InstantOf(const char* text)
{
    ZemGregorianTime record;
    return ZemGregorianTimeConstructCStr(&record, text) != NULL ? ZemGregorianTimeGetTime(&record)
                                                                : ZEM_TIME_INFINITE;
}

// A range holds both of its bounds, so "until" is the nanosecond after the last. The upper bound
// comes first.
static int MakeRange(ZemTimeRange* range, const Span* span)
{
    ZemTime lower = InstantOf(span->from);
    ZemTime until = InstantOf(span->until);
    if (lower == ZEM_TIME_INFINITE || until == ZEM_TIME_INFINITE || lower >= until) {
        fprintf(stderr, "services: not a span of time: %s to %s\n", span->from, span->until);
        return 0;
    }
    ZemTimeRangeConstruct(range, until - 1, lower);
    return 1;
}

// Appends a range for each span, then makes a set of what is there.
static int Read(ZemVector_ZemTimeRange* set, const Span* spans, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        ZemTimeRange range;
        if (!MakeRange(&range, &spans[i]) || !ZemVector_ZemTimeRangePushBack(set, &range)) {
            return 0;
        }
    }
    return ZemTimeRangeSetNormalize(set);
}

static void PrintTime(ZemTime t)
{
    ZemGregorianTime record;
    ZemGregorianTimeConstructUTC(&record, t);
    printf("%02d:%02d", ZemGregorianTimeGetHour(&record), ZemGregorianTimeGetMinute(&record));
}

static void Print(const char* title, const ZemVector_ZemTimeRange* set)
{
    ZemVector_ZemTimeRangeConstIterator it = ZemVector_ZemTimeRangeBeginConst(set);
    ZemVector_ZemTimeRangeConstIterator end = ZemVector_ZemTimeRangeEndConst(set);
    // From the first to the last instant of each range, and the one nanosecond more.
    ZemTime total = (ZemTime)(ZemTimeRangeSetLength(set) + ZemVector_ZemTimeRangeSize(set));
    char text[16];

    printf("%-18s", title);
    for (; it != end; ++it) {
        PrintTime(ZemTimeRangeEnd(it));
        printf("-");
        PrintTime(ZemTimeRangeBegin(it) + 1);
        printf("  ");
    }
    printf("(%s)\n", ZemTimePrintCompact(total, text, sizeof text));
}

enum { WEB, DATABASE, MAIL, MAINTENANCE, ALL, ANY, NONE, OUTAGES, SETS };

int main(void)
{
    ZemAllocator heap;
    ZemVector_ZemTimeRange sets[SETS];
    ZemTimeRange day;
    int ok;

    ZemAllocatorConstructMalloc(&heap, SIZE_MAX);
    for (int i = 0; i < SETS; ++i) {
        ZemVector_ZemTimeRangeConstructDefault(&sets[i], &heap);
    }
    ok = MakeRange(&day, &kDay) && Read(&sets[WEB], kWeb, COUNT(kWeb)) &&
         Read(&sets[DATABASE], kDatabase, COUNT(kDatabase)) &&
         Read(&sets[MAIL], kMail, COUNT(kMail)) &&
         Read(&sets[MAINTENANCE], kMaintenance, COUNT(kMaintenance)) &&
         // A result may take the place of what it was made of.
         ZemTimeRangeSetIntersection(&sets[WEB], &sets[DATABASE], &sets[ALL]) &&
         ZemTimeRangeSetIntersection(&sets[ALL], &sets[MAIL], &sets[ALL]) &&
         ZemTimeRangeSetUnion(&sets[WEB], &sets[DATABASE], &sets[ANY]) &&
         ZemTimeRangeSetUnion(&sets[ANY], &sets[MAIL], &sets[ANY]) &&
         ZemTimeRangeSetGaps(&sets[ANY], &day, &sets[NONE]) &&
         ZemTimeRangeSetGaps(&sets[ALL], &day, &sets[OUTAGES]) &&
         ZemTimeRangeSetDifference(&sets[OUTAGES], &sets[MAINTENANCE], &sets[OUTAGES]);
    if (ok) {
        ZemTime noon = InstantOf("2024-03-01T12:30:00Z");
        Print("all were up", &sets[ALL]);
        Print("none was up", &sets[NONE]);
        Print("unplanned outages", &sets[OUTAGES]);
        printf("at 12:30 %s\n", ZemTimeRangeSetFind(&sets[ALL], noon) != NULL ? "all were up"
                                : ZemTimeRangeSetFind(&sets[MAINTENANCE], noon) != NULL
                                    ? "there was maintenance"
                                    : "something was down");
    } else {
        fprintf(stderr, "services: no answer\n");
    }
    for (int i = 0; i < SETS; ++i) {
        ZemVector_ZemTimeRangeDestruct(&sets[i]);
    }
    return ok ? 0 : 1;
}
