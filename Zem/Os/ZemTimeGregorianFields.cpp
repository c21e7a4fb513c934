// Calendar records: validity and order of their fields. Plain C but for its name, as the provers
// read it.

#include "Zem/Os/ZemTimeInline.h"
#include "Zem/Utils/Private/ZemCivil.h"

static inline ZemBool IsWithin(ZemInt64 value, ZemInt64 low, ZemInt64 high)
{
    return value >= low && value <= high;
}

ZemBool ZemGregorianTimeValidateFields_(ZemInt year, ZemInt month, ZemInt monthDay, ZemInt hour,
                                        ZemInt minute, ZemInt second, ZemTime nanosecond)
{
    // Every month has 28 days: the later ones are looked up.
    return IsWithin(month, 1, 12) && IsWithin(monthDay, 1, 31) &&
           (monthDay <= 28 || monthDay <= ZemCivilDaysInMonth(year, month)) &&
           IsWithin(hour, 0, 23) && IsWithin(minute, 0, 59) && IsWithin(second, 0, 60) &&
           IsWithin(nanosecond, 0, 999999999);
}

ZemBool ZemGregorianTimeEqual(const ZemGregorianTime* a, const ZemGregorianTime* b)
{
    return a->tm.tm_year == b->tm.tm_year && a->tm.tm_mon == b->tm.tm_mon &&
           a->tm.tm_mday == b->tm.tm_mday && a->tm.tm_hour == b->tm.tm_hour &&
           a->tm.tm_min == b->tm.tm_min && a->tm.tm_sec == b->tm.tm_sec &&
           a->nanosecs == b->nanosecs &&
           ZemGregorianTimeGetUTCOffset(a) == ZemGregorianTimeGetUTCOffset(b);
}

ZemBool ZemGregorianTimeLess(const ZemGregorianTime* a, const ZemGregorianTime* b)
{
    if (a->tm.tm_year != b->tm.tm_year) {
        return a->tm.tm_year < b->tm.tm_year;
    }
    if (a->tm.tm_mon != b->tm.tm_mon) {
        return a->tm.tm_mon < b->tm.tm_mon;
    }
    if (a->tm.tm_mday != b->tm.tm_mday) {
        return a->tm.tm_mday < b->tm.tm_mday;
    }
    if (a->tm.tm_hour != b->tm.tm_hour) {
        return a->tm.tm_hour < b->tm.tm_hour;
    }
    if (a->tm.tm_min != b->tm.tm_min) {
        return a->tm.tm_min < b->tm.tm_min;
    }
    if (a->tm.tm_sec != b->tm.tm_sec) {
        return a->tm.tm_sec < b->tm.tm_sec;
    }
    if (a->nanosecs != b->nanosecs) {
        return a->nanosecs < b->nanosecs;
    }
    return ZemGregorianTimeGetUTCOffset(a) < ZemGregorianTimeGetUTCOffset(b);
}
