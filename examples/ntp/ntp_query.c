// Asks an NTP server on this machine for the time, once:
//
//   ntp_query PORT
//
// Prints how far the clock here is behind the server's and how long the way there and back took
// (RFC 5905). Exit status 0 when a sound answer came, else 1.

#include <arpa/inet.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <unistd.h>

#include <Zem/Os/ZemTimeInline.h>

enum { kPacketSize = 48, kOrigin = 24, kReceive = 32, kTransmit = 40 };

// Timestamps travel with the most significant byte first, whatever the host's own order.
static void PutTimestamp(unsigned char* bytes, ZemUint64 ntp)
{
    int i;
    for (i = 7; i >= 0; --i) {
        bytes[i] = (unsigned char)(ntp & 0xFF);
        ntp >>= 8;
    }
}

static ZemUint64 GetTimestamp(const unsigned char* bytes)
{
    ZemUint64 ntp = 0;
    int i;
    for (i = 0; i < 8; ++i) {
        ntp = ntp << 8 | bytes[i];
    }
    return ntp;
}

static int Connect(const char* port)
{
    struct timeval limit = {2, 0};
    struct sockaddr_in server;
    int fd;

    memset(&server, 0, sizeof server);
    server.sin_family = AF_INET;
    server.sin_port = htons((unsigned short)strtoul(port, NULL, 10));
    server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    fd = socket(AF_INET, SOCK_DGRAM, 0);
    // A connected socket takes packets from this server alone.
    if (fd >= 0 && (setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit) != 0 ||
                    connect(fd, (const struct sockaddr*)&server, sizeof server) != 0)) {
        close(fd);
        fd = -1;
    }
    return fd;
}

// Why the answer is of no use, or null.
static const char* FindFault(const unsigned char* answer, ZemUint64 sent)
{
    if ((answer[0] & 7) != 4) {
        return "not an answer of a server";
    }
    if (answer[0] >> 6 == 3 || answer[1] == 0 || answer[1] > 15) {
        return "the server does not know the time";
    }
    // Proves that the answer is to this question, not a late or a forged one.
    if (GetTimestamp(answer + kOrigin) != sent) {
        return "the answer to another question";
    }
    return NULL;
}

int main(int argc, char** argv)
{
    unsigned char question[kPacketSize] = {0x23};  // version 4, mode 3: client
    unsigned char answer[kPacketSize];
    ZemUint64 sent;
    ZemTime t1, t2, t3, t4;
    ZemTime offset, delay;
    const char* fault;
    char text[2][16];
    int fd = argc == 2 ? Connect(argv[1]) : -1;

    if (fd < 0) {
        fprintf(stderr, "usage: ntp_query PORT\n");
        return 1;
    }
    sent = ZemTimeGetNtp(ZemTimeGetCurrentWallTime());
    PutTimestamp(question + kTransmit, sent);
    if (send(fd, question, sizeof question, 0) != kPacketSize ||
        recv(fd, answer, sizeof answer, 0) != kPacketSize) {
        perror("ntp_query");
        close(fd);
        return 1;
    }
    t4 = ZemTimeGetCurrentWallTime();
    close(fd);
    fault = FindFault(answer, sent);
    if (fault != NULL) {
        fprintf(stderr, "ntp_query: %s\n", fault);
        return 1;
    }

    // All four go through timestamps, so that the end of the era in 2036 shifts all four alike.
    ZemTimeConstructFromNtp(&t1, sent);
    ZemTimeConstructFromNtp(&t2, GetTimestamp(answer + kReceive));
    ZemTimeConstructFromNtp(&t3, GetTimestamp(answer + kTransmit));
    ZemTimeConstructFromNtp(&t4, ZemTimeGetNtp(t4));
    // No sum overflows, whatever the server says: an era has 2^32 s, less than 2^62 ns.
    offset = ((t2 - t1) + (t3 - t4)) / 2;
    delay = (t4 - t1) - (t3 - t2);
    printf("stratum %d, offset %s, delay %s\n", answer[1],
           ZemTimePrintCompact(offset, text[0], sizeof text[0]),
           ZemTimePrintCompact(delay, text[1], sizeof text[1]));
    return 0;
}
