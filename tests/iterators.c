// The operations of all four kinds of iterator, called from C.

#include <stdio.h>

#include "Zem/Os/ZemTimeInline.h"

static int failures;

#define CHECK(ok) (failures += (ok) ? 0 : printf("line %d: %s\n", __LINE__, #ok))

// For each kind, a function that takes every step between the positions 0 to 3, counted from
// `first`; element[i] is what the kind designates at position i.
#define DEFINE_CHECK(KIND)                                                                        \
    static void Check_##KIND(KIND first, const ZemTimeRange* const element[3])                    \
    {                                                                                             \
        for (int step = 0; step < 16; ++step) {                                                   \
            KIND##DifferenceType i = step / 4;                                                    \
            KIND##DifferenceType j = step % 4;                                                    \
            KIND x = KIND##Add(&first, i);                                                        \
            KIND y = KIND##Add(&first, j);                                                        \
            KIND z;                                                                               \
            CHECK(KIND##Equal(&x, &y) == (i == j) && KIND##Less(&x, &y) == (i < j));              \
            CHECK(KIND##Subtract(&y, &x) == j - i && KIND##Subtract(&x, &first) == i);            \
            CHECK(KIND##ConstructCopy(&z, &x) == &z && z == x);                                   \
            CHECK(KIND##IncrementN(&z, j - i) == &z && z == y);                                   \
            CHECK(KIND##DecrementN(&z, j - i) == &z && z == x);                                   \
            CHECK(j == 3 || KIND##At(&x, j - i) == element[j]);                                   \
            CHECK(j == 3 ||                                                                       \
                  (KIND##ContentOf(&y) == element[j] && KIND##ContentOfConst(&y) == element[j])); \
            CHECK(i == 3 || (KIND##Increment(&z) == &z && KIND##Subtract(&z, &x) == 1));          \
            CHECK(i == 3 || (KIND##Decrement(&z) == &z && z == x));                               \
            CHECK(KIND##Swap(&z, &y) == 1 && y == x && KIND##Subtract(&z, &x) == j - i);          \
            CHECK(KIND##Assign(&y, &z) == &y && y == z && !KIND##IsExceptional(y));               \
            CHECK(KIND##ConstructExceptional(&z) == &z && z == NULL);                             \
            CHECK(KIND##IsExceptional(z) == 1 && KIND##Add(&z, 0) == NULL);                       \
            KIND##Destruct(&z);                                                                   \
        }                                                                                         \
    }

DEFINE_CHECK(ZemVector_ZemTimeRangeIterator)
DEFINE_CHECK(ZemVector_ZemTimeRangeConstIterator)
DEFINE_CHECK(ZemVector_ZemTimeRangeReverseIterator)
DEFINE_CHECK(ZemVector_ZemTimeRangeConstReverseIterator)

int main(void)
{
    ZemTimeRange ranges[3] = {{2, 1}, {4, 3}, {6, 5}};
    const ZemTimeRange* const forward[3] = {&ranges[0], &ranges[1], &ranges[2]};
    const ZemTimeRange* const reverse[3] = {&ranges[2], &ranges[1], &ranges[0]};
    Check_ZemVector_ZemTimeRangeIterator(ranges, forward);
    Check_ZemVector_ZemTimeRangeConstIterator(ranges, forward);
    Check_ZemVector_ZemTimeRangeReverseIterator(ranges + 3, reverse);
    Check_ZemVector_ZemTimeRangeConstReverseIterator(ranges + 3, reverse);
    return failures != 0;
}
