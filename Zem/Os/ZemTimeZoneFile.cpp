// TZif data (RFC 9636), and the files that hold them.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#if defined(__linux__)
#include <sys/auxv.h>
#endif

#include "Zem/Os/Private/ZemTimeZoneSource.h"
#include "Zem/Utils/ZemStdCLibInline.h"

// ---------------------------------------------------------------------------------------------
// Data
// ---------------------------------------------------------------------------------------------

namespace {

ZemUint32 ReadUint32(const unsigned char* p)
{
    return static_cast<ZemUint32>(p[0]) << 24 | static_cast<ZemUint32>(p[1]) << 16 |
           static_cast<ZemUint32>(p[2]) << 8 | p[3];
}

constexpr ZemSizeT kHeaderSize = 44;
constexpr ZemSizeT kKindSize = 6;
constexpr ZemUint32 kMaxTextSize = 1024;

// The counts in a header, in its order.
struct Header {
    unsigned char version;  // 0, or '2' and up
    ZemUint32 utCount;
    ZemUint32 standardCount;
    ZemUint32 leapCount;
    ZemUint32 transitionCount;
    ZemUint32 kindCount;
    ZemUint32 textSize;
};

bool ReadHeader(const unsigned char* p, ZemSizeT size, Header& h)
{
    if (size < kHeaderSize || std::memcmp(p, "TZif", 4) != 0) {
        return false;
    }
    h.version = p[4];
    h.utCount = ReadUint32(p + 20);
    h.standardCount = ReadUint32(p + 24);
    h.leapCount = ReadUint32(p + 28);
    h.transitionCount = ReadUint32(p + 32);
    h.kindCount = ReadUint32(p + 36);
    h.textSize = ReadUint32(p + 40);
    return h.version == 0 || (h.version >= '2' && h.version <= '9');
}

// The bytes of the block behind a header. Cannot overflow: the counts have 32 bits.
ZemUint64 BlockSize(const Header& h, ZemUint64 secondSize)
{
    return h.transitionCount * (secondSize + 1) + h.kindCount * ZemUint64{kKindSize} + h.textSize +
           h.leapCount * (secondSize + 4) + h.standardCount + h.utCount;
}

// Flags say of a kind whether it was standard time, or UT, to those who would apply other rules to
// it. They are not used, but have to be what they are.
bool AreFlags(const unsigned char* p, ZemUint32 count, const Header& h)
{
    if (count != 0 && count != h.kindCount) {
        return false;
    }
    for (ZemUint32 i = 0; i < count; ++i) {
        if (p[i] > 1) {
            return false;
        }
    }
    return true;
}

// Gives equal abbreviations one place, so that kinds compare by it.
ZemUint32 FirstEqualText(const ZemTimeZoneSource& source, ZemUint32 text)
{
    for (ZemUint32 i = 0; i < source.kindCount; ++i) {
        if (std::strcmp(source.texts + source.kinds[i].text, source.texts + text) == 0) {
            return source.kinds[i].text;
        }
    }
    return text;
}

bool ReadKinds(const unsigned char* p, ZemUint32 count, ZemTimeZoneSource& source)
{
    for (; source.kindCount < count; p += kKindSize) {
        auto offset = static_cast<ZemInt>(ReadUint32(p));
        if (offset < ZEM_TIME_ZONE_MIN_OFFSET || offset > ZEM_TIME_ZONE_MAX_OFFSET || p[4] > 1 ||
            p[5] >= source.textSize) {
            return false;
        }
        ZemTimeZoneSegment& kind = source.kinds[source.kindCount];
        kind.last = 0;
        kind.offset = offset;
        kind.text = static_cast<uint16_t>(FirstEqualText(source, p[5]));
        kind.isDaylight = p[4];
        ++source.kindCount;
    }
    return true;
}

bool AreTransitions(const ZemTimeZoneSource& source)
{
    for (ZemUint32 i = 0; i < source.transitionCount; ++i) {
        if (source.indices[i] >= source.kindCount ||
            (i > 0 && ZemTimeZoneSecondOf(source, i) <= ZemTimeZoneSecondOf(source, i - 1))) {
            return false;
        }
    }
    return true;
}

// Reads the block of a header, which has been found to lie within the data.
bool ReadBlock(const unsigned char* p, const Header& h, ZemUint32 secondSize,
               ZemTimeZoneSource& source)
{
    if (h.kindCount == 0 || h.kindCount > kZemTimeZoneMaxKinds || h.textSize == 0 ||
        h.textSize > kMaxTextSize || h.leapCount != 0) {
        return false;
    }
    source.seconds = p;
    source.secondSize = secondSize;
    source.transitionCount = h.transitionCount;
    source.indices = source.seconds + ZemSizeT{h.transitionCount} * secondSize;
    const unsigned char* kinds = source.indices + h.transitionCount;
    source.texts = reinterpret_cast<const char*>(kinds + h.kindCount * kKindSize);
    source.textSize = h.textSize;
    source.kindCount = 0;
    const unsigned char* flags = kinds + h.kindCount * kKindSize + h.textSize;
    // With the last text terminated, they all are.
    return source.texts[h.textSize - 1] == '\0' && ReadKinds(kinds, h.kindCount, source) &&
           AreTransitions(source) && AreFlags(flags, h.standardCount, h) &&
           AreFlags(flags + h.standardCount, h.utCount, h);
}

// Reads the rule between two line feeds; there may be none.
bool ReadFooter(const unsigned char* p, ZemSizeT size, ZemTimeZoneSource& source)
{
    if (size == 0 || *p != '\n') {
        return false;
    }
    const void* end = std::memchr(p + 1, '\n', size - 1);
    if (end == nullptr) {
        return false;
    }
    source.hasRule = end != p + 1;
    return !source.hasRule || ZemTimeZoneReadRule(reinterpret_cast<const char*>(p + 1),
                                                  static_cast<const char*>(end), source.rule);
}

}  // namespace

ZemInt64 ZemTimeZoneSecondOf(const ZemTimeZoneSource& source, ZemUint32 transition)
{
    const unsigned char* p = source.seconds + ZemSizeT{transition} * source.secondSize;
    ZemUint64 upper = ReadUint32(p);
    if (source.secondSize == 8) {
        return static_cast<ZemInt64>(upper << 32 | ReadUint32(p + 4));
    }
    return static_cast<ZemInt>(upper);
}

bool ZemTimeZoneReadData(const unsigned char* data, ZemSizeT size, ZemTimeZoneSource& result)
{
    Header h;
    result.hasRule = false;
    if (!ReadHeader(data, size, h) || BlockSize(h, 4) > size - kHeaderSize) {
        return false;
    }
    data += kHeaderSize;
    size -= kHeaderSize;
    if (h.version == 0) {
        return ReadBlock(data, h, 4, result);
    }

    // The same again follows with seconds of 64 bits; what there is of 32 bits is for old readers.
    ZemUint64 first = BlockSize(h, 4);
    data += first;
    size -= first;
    if (!ReadHeader(data, size, h) || h.version == 0 || BlockSize(h, 8) > size - kHeaderSize) {
        return false;
    }
    data += kHeaderSize;
    size -= kHeaderSize;
    ZemUint64 second = BlockSize(h, 8);
    return ReadBlock(data, h, 8, result) && ReadFooter(data + second, size - second, result);
}

// ---------------------------------------------------------------------------------------------
// Files
// ---------------------------------------------------------------------------------------------

namespace {

// Reads up to `size` bytes until the end of the file; negative on failure.
ssize_t ReadAll(int descriptor, unsigned char* bytes, ZemSizeT size)
{
    ZemSizeT done = 0;
    while (done < size) {
        ssize_t count = read(descriptor, bytes + done, size - done);
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            return -1;
        }
        done += count > 0 ? static_cast<ZemSizeT>(count) : 0;
    }
    return static_cast<ssize_t>(done);
}

// Whether a name stays within its folder: parts between single slashes, none of them . or ..
bool IsZoneName(const char* name)
{
    for (;;) {
        ZemSizeT size = std::strcspn(name, "/");
        if (size == 0 || std::strncmp(name, ".", size) == 0 ||
            std::strncmp(name, "..", size) == 0) {
            return false;
        }
        if (name[size] == '\0') {
            return true;
        }
        name += size + 1;
    }
}

}  // namespace

ZemTimeZoneFileState ZemTimeZoneReadFile(const char* path, ZemTimeZoneFile& result)
{
    // Opening must not wait for the other end of a pipe.
    int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor < 0) {
        return errno == ENOENT || errno == ENOTDIR ? ZemTimeZoneFileState::kMissing
                                                   : ZemTimeZoneFileState::kUnusable;
    }
    struct stat status;
    ssize_t size = -1;
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        size = ReadAll(descriptor, result.bytes, sizeof result.bytes);
    }
    close(descriptor);
    if (size <= 0 || static_cast<ZemSizeT>(size) > kZemTimeZoneMaxFileSize) {
        return ZemTimeZoneFileState::kUnusable;
    }
    result.size = static_cast<ZemSizeT>(size);
    return ZemTimeZoneFileState::kRead;
}

bool ZemTimeZoneIsPrivileged()
{
#if defined(__linux__)
    return getauxval(AT_SECURE) != 0;
#elif defined(__APPLE__) || defined(__FreeBSD__) || defined(__NetBSD__) || defined(__OpenBSD__) || \
    defined(__DragonFly__)
    return issetugid() != 0;
#else
    return getuid() != geteuid() || getgid() != getegid();
#endif
}

ZemTimeZoneFileState ZemTimeZoneReadNamed(const char* name, ZemTimeZoneFile& result)
{
    static const char* const kFolders[] = {"/usr/share/zoneinfo", "/usr/lib/zoneinfo",
                                           "/usr/share/lib/zoneinfo", "/etc/zoneinfo"};
    if (!IsZoneName(name)) {
        return ZemTimeZoneFileState::kMissing;
    }
    const char* own = ZemTimeZoneIsPrivileged() ? nullptr : std::getenv("TZDIR");
    bool hasOwn = own != nullptr && *own != '\0';
    auto state = ZemTimeZoneFileState::kMissing;
    for (const char* folder : kFolders) {
        char path[1024];
        ZemSizeT size = ZemSNPrintf(path, sizeof path, "%s/%s", hasOwn ? own : folder, name);
        if (size < sizeof path) {
            state = ZemTimeZoneReadFile(path, result);
        }
        if (hasOwn || state != ZemTimeZoneFileState::kMissing) {
            break;
        }
    }
    return state;
}
