// From a text to an instant and back, and the time that this takes.

#include <inttypes.h>
#include <stdio.h>

#include <Zem/Os/ZemTimeInline.h>

int main(void)
{
    const char* input = "2024-03-01T12:30:45.250+01:00";
    ZemGregorianTime calendar;
    ZemTime start;
    ZemTime instant;
    char text[48];
    char took[16];

    // Once at start-up, before any thread reads the monotonic clock.
    if (!ZemTimeInitialize()) {
        fprintf(stderr, "tour: this host has no monotonic clock\n");
        return 1;
    }
    start = ZemTimeGetCurrentMonotonicTime();

    if (ZemGregorianTimeConstructCStr(&calendar, input) == NULL) {
        fprintf(stderr, "tour: not a date and time: %s\n", input);
        return 1;
    }
    // The record keeps what was written; the instant is what two such records can be compared by.
    instant = ZemGregorianTimeGetTime(&calendar);
    if (instant == ZEM_TIME_INFINITE) {
        fprintf(stderr, "tour: outside the years 1677 to 2262: %s\n", input);
        return 1;
    }
    printf("%" PRId64 " ns since 1970\n", instant);

    // Null means that the buffer is too small: an offset of thousands of hours needs more than 34.
    if (ZemGregorianTimeGetAsStringWithOffset(&calendar, text, sizeof text) == NULL) {
        fprintf(stderr, "tour: the text is too long\n");
        return 1;
    }
    printf("%s\n", text);

    // The same instant on another wall: this one cannot fail, and 24 bytes are always enough.
    ZemGregorianTimeConstructUTC(&calendar, instant);
    printf("%s UTC\n", ZemGregorianTimeGetAsString(&calendar, text, sizeof text));

    printf("took %s\n", ZemTimePrintCompact(ZemTimeGetElapsed(start), took, sizeof took));
    return 0;
}
