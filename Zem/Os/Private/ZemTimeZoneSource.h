// What a time zone is made from, between the sources that read it and the one that builds the zone.
// Not installed and exports nothing.

#ifndef ZEM_OS_PRIVATE_ZEMTIMEZONESOURCE_H
#define ZEM_OS_PRIVATE_ZEMTIMEZONESOURCE_H

#include "Zem/Os/Private/ZemTimeZoneTable.h"

// A text of its own length.
struct ZemTimeZoneName {
    const char* begin;
    ZemSizeT size;
};

// A rule as it was read. Its names have no places among a zone's texts yet.
struct ZemTimeZoneRuleSource {
    ZemTimeZoneRule rule;
    ZemTimeZoneName standardName;
    ZemTimeZoneName daylightName;
};

constexpr ZemUint32 kZemTimeZoneMaxKinds = 256;  // an index is a byte

// TZif data that have been found valid, where they lie; or a rule alone, and then all counts are 0.
struct ZemTimeZoneSource {
    const unsigned char* seconds;  // of the transitions, big-endian
    ZemUint32 secondSize;          // 4 or 8 bytes each
    const unsigned char* indices;  // the kind from each transition on
    ZemUint32 transitionCount;
    ZemTimeZoneSegment kinds[kZemTimeZoneMaxKinds];  // `last` is not used
    ZemUint32 kindCount;
    const char* texts;
    ZemUint32 textSize;
    bool hasRule;
    ZemTimeZoneRuleSource rule;
};

// The second of a transition.
ZemInt64 ZemTimeZoneSecondOf(const ZemTimeZoneSource& source, ZemUint32 transition);

// Reads the rule from `begin` up to `end`; false where it is none.
bool ZemTimeZoneReadRule(const char* begin, const char* end, ZemTimeZoneRuleSource& result);

// Reads TZif data, which must live as long as the result; false where they are not valid.
bool ZemTimeZoneReadData(const unsigned char* data, ZemSizeT size, ZemTimeZoneSource& result);

// The bytes of a zone's file. Zones have up to 4 KiB.
constexpr ZemSizeT kZemTimeZoneMaxFileSize = 32768;
struct ZemTimeZoneFile {
    ZemSizeT size;
    unsigned char bytes[kZemTimeZoneMaxFileSize + 1];
};

// Reads a regular file of 1 to kZemTimeZoneMaxFileSize bytes.
enum class ZemTimeZoneFileState { kRead, kMissing, kUnusable };
ZemTimeZoneFileState ZemTimeZoneReadFile(const char* path, ZemTimeZoneFile& result);

// Finds the file of a zone's name, in TZDIR or where the platform keeps its zones, and reads it.
ZemTimeZoneFileState ZemTimeZoneReadNamed(const char* name, ZemTimeZoneFile& result);

// Whether the process has rights that its user has not, so that the environment is not to be
// trusted.
bool ZemTimeZoneIsPrivileged();

#endif
