// Waiting with select until a deadline: a point on the monotonic clock, which stays where it is
// however often the wait starts again.

#include <errno.h>
#include <stdio.h>
#include <sys/select.h>
#include <unistd.h>

#include <Zem/Os/ZemTimeInline.h>

// 1 when `fd` can be read, 0 when `deadline` has passed, -1 with errno when select fails.
// ZEM_TIME_INFINITE waits for ever.
static int WaitReadable(int fd, ZemTime deadline)
{
    for (;;) {
        struct timeval left;
        fd_set readable;
        int ready;

        FD_ZERO(&readable);
        FD_SET(fd, &readable);
        // The time left, or null for ever, is just what select takes. It is rounded up, so that
        // the deadline has passed when select gives up.
        ready = select(fd + 1, &readable, NULL, NULL,
                       ZemTimeGetRelativeTimevalFromMonotonicTime(deadline, &left));
        // After a signal only the rest of the time is left.
        if (ready >= 0 || errno != EINTR) {
            return ready;
        }
    }
}

int main(void)
{
    int ends[2];
    ZemTime start;
    ZemTime elapsed;
    char text[16];

    if (!ZemTimeInitialize() || pipe(ends) != 0) {
        perror("deadline");
        return 1;
    }

    start = ZemTimeGetCurrentMonotonicTime();
    if (WaitReadable(ends[0], start + ZemTimeMsecs(20)) != 0) {
        perror("deadline");
        return 1;
    }
    elapsed = ZemTimeGetElapsed(start);
    printf("nothing came in %s\n", ZemTimePrintCompact(elapsed, text, sizeof text));
    if (elapsed < ZemTimeMsecs(20)) {
        fprintf(stderr, "deadline: gave up too early\n");
        return 1;
    }

    if (write(ends[1], "x", 1) != 1 || WaitReadable(ends[0], ZEM_TIME_INFINITE) != 1) {
        perror("deadline");
        return 1;
    }
    printf("something came\n");
    close(ends[0]);
    close(ends[1]);
    return 0;
}
