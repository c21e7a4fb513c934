// A job at half past two every night in Berlin, over the nights on which the clocks change: once
// the time is skipped, once it comes twice.

#include <inttypes.h>
#include <stdio.h>

#include <Zem/Os/ZemTimeInline.h>
#include <Zem/Os/ZemTimeZone.h>

static const char* const kKinds[] = {"", ", skipped: moved on", ", twice: the first"};

// The instant of the job on a day; the day may lie outside its month, and then carries over.
static ZemTime JobOn(int year, int month, int day, const ZemTimeZone* zone, int* kind)
{
    ZemGregorianTime local;
    ZemLocalTime resolved;
    ZemGregorianTimeConstructFields(&local, year, month, 1, 2, 30, 0, 0);
    local.tm.tm_mday = day;
    ZemGregorianTimeResolve(&local, zone, &resolved);
    *kind = resolved.kind;
    // What ZemGregorianTimeGetTimeInZone gives. A job that must not run twice is safe with it; one
    // that may not be late would take resolved.earlier, and one for every 2:30 that the clock shows
    // would run at both.
    return resolved.kind == 1 ? resolved.later : resolved.earlier;
}

static int PrintNights(int year, int month, int firstDay, const ZemTimeZone* zone)
{
    ZemTime last = 0;
    int day;
    for (day = firstDay; day < firstDay + 3; ++day) {
        ZemGregorianTime record;
        char utc[32];
        char local[40];
        char wait[16];
        int kind;
        ZemTime t = JobOn(year, month, day, zone, &kind);
        if (t == ZEM_TIME_INFINITE) {
            fprintf(stderr, "schedule: outside the years 1677 to 2262\n");
            return 0;
        }
        ZemGregorianTimeConstructUTC(&record, t);
        ZemGregorianTimeGetAsString(&record, utc, sizeof utc);
        ZemGregorianTimeConstructInZone(&record, t, zone);
        ZemGregorianTimeGetAsStringWithOffset(&record, local, sizeof local);
        printf("%s UTC = %s %s%s", utc, local, record.tm.tm_zone, kKinds[kind]);
        if (last != 0) {
            printf(" (after %s)", ZemTimePrintCompact(t - last, wait, sizeof wait));
        }
        printf("\n");
        last = t;
    }
    return 1;
}

int main(void)
{
    ZemAllocator allocator;
    ZemTimeZone zone;
    int printed;

    ZemAllocatorConstructMalloc(&allocator, SIZE_MAX);
    if (ZemTimeZoneConstruct(&zone, "Europe/Berlin", &allocator) == NULL) {
        fprintf(stderr, "schedule: no zone Europe/Berlin on this machine\n");
        return 1;
    }
    printed = PrintNights(2024, 3, 30, &zone) && PrintNights(2024, 10, 26, &zone);
    ZemTimeZoneDestruct(&zone);
    return printed ? 0 : 1;
}
