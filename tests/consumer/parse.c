// Parses one timestamp and calls nothing else: how much of the static library does that take? More
// than without the call.
#include <Zem/Os/ZemTimeText.h>

int main(void)
{
#if defined(CALL)
    ZemTime t;
    return ZemTimeParse(&t, "1970-01-01T00:00:01Z", 20) == 20 && t == 1000000000 ? 0 : 1;
#else
    return 0;
#endif
}
