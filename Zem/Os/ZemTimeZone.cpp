// Time zones: construction, and conversions between instants and records.

#include "Zem/Os/ZemTimeZone.h"

#include <cstdlib>
#include <cstring>

#include "Zem/Os/Private/ZemTimeZoneSource.h"
#include "Zem/Os/ZemTimeInline.h"

// ---------------------------------------------------------------------------------------------
// Construction
// ---------------------------------------------------------------------------------------------

namespace {

// Segments are counted in 16 bits, without the last one's copy.
constexpr ZemUint64 kMaxSegments = 65536;

// From which second on the rule holds.
ZemInt64 RuleSecond(const ZemTimeZoneSource& source)
{
    return source.transitionCount == 0 ? INT64_MIN
                                       : ZemTimeZoneSecondOf(source, source.transitionCount - 1);
}

// The most segments that the source can come to, and the last one's copy.
ZemUint64 Capacity(const ZemTimeZoneSource& source)
{
    ZemUint64 ofRule =
        source.hasRule ? ZemTimeZoneRuleCapacity(&source.rule.rule, RuleSecond(source)) : 0;
    return 2 + ZemUint64{source.transitionCount} + ofRule;
}

// The texts of a zone while they are put together: those of the data, then the rule's names.
struct Texts {
    char* begin;
    ZemSizeT size;

    // The place of a name, at the end if it is not that of a kind.
    uint16_t PlaceOf(const ZemTimeZoneName& name, const ZemTimeZoneSource& source)
    {
        for (ZemUint32 i = 0; i < source.kindCount; ++i) {
            const char* text = begin + source.kinds[i].text;
            if (std::strlen(text) == name.size && std::memcmp(text, name.begin, name.size) == 0) {
                return source.kinds[i].text;
            }
        }
        auto place = static_cast<uint16_t>(size);
        std::memcpy(begin + size, name.begin, name.size);
        begin[size + name.size] = '\0';
        size += name.size + 1;
        return place;
    }
};

// Fills `all`, which has room for Capacity(source), and returns their number.
ZemUint32 FillSegments(ZemTimeZoneSegment* all, const ZemTimeZoneSource& source, Texts& texts)
{
    ZemTimeZoneRule rule = {};
    if (source.hasRule) {
        rule = source.rule.rule;
        rule.standard.text = texts.PlaceOf(source.rule.standardName, source);
        if (rule.hasDaylight) {
            rule.daylight.text = texts.PlaceOf(source.rule.daylightName, source);
        }
    }
    ZemTimeZoneSegments segments = {all, 1};
    // A rule alone replaces it.
    all[0] = source.kinds[0];
    all[0].last = ZEM_TIME_INFINITE;
    for (ZemUint32 i = 0; i < source.transitionCount; ++i) {
        ZemTimeZoneAppend(&segments, ZemTimeZoneSecondOf(source, i),
                          &source.kinds[source.indices[i]]);
    }
    if (source.hasRule) {
        ZemTimeZoneExpand(&segments, &rule, RuleSecond(source));
    }
    return segments.count;
}

// Builds the zone in one block: the table, the segments, their local ends, the texts.
ZemTimeZone* Build(ZemTimeZone* z, const ZemTimeZoneSource& source, ZemAllocator* a)
{
    ZemUint64 capacity = Capacity(source);
    // Names end within their texts, and take a NUL each.
    ZemSizeT textSize = source.textSize;
    if (source.hasRule) {
        textSize += source.rule.standardName.size + source.rule.daylightName.size + 2;
    }
    if (capacity > kMaxSegments || textSize > UINT16_MAX) {
        return nullptr;
    }
    ZemSizeT size = sizeof(ZemTimeZoneTable) +
                    capacity * (sizeof(ZemTimeZoneSegment) + sizeof(ZemInt64)) + textSize;
    ZemVoidPtr block = ZemAllocatorAllocate(a, size);
    if (block == nullptr) {
        return nullptr;
    }

    auto* table = static_cast<ZemTimeZoneTable*>(block);
    auto* segments = reinterpret_cast<ZemTimeZoneSegment*>(table + 1);
    auto* localEnds = reinterpret_cast<ZemInt64*>(segments + capacity);
    Texts texts = {reinterpret_cast<char*>(localEnds + capacity), source.textSize};
    if (source.textSize != 0) {
        std::memcpy(texts.begin, source.texts, source.textSize);
    }
    ZemUint32 count = FillSegments(segments, source, texts);
    segments[count] = segments[count - 1];
    table->segments = segments;
    table->localEnds = localEnds;
    table->texts = texts.begin;
    table->largestOffset = ZemTimeZoneFillLocalEnds(localEnds, segments, count);
    ZemTimeZoneFillBuckets(table->buckets, segments);

    *z = {a, table, size};
    return z;
}

ZemTimeZone* ConstructFile(ZemTimeZone* z, const ZemTimeZoneFile& file, ZemAllocator* a)
{
    return ZemTimeZoneConstructData(z, file.bytes, file.size, a);
}

// The file that an absolute path in TZ names.
ZemTimeZoneFileState ReadPath(const char* path, ZemTimeZoneFile& file)
{
    static const char kLocalTime[] = "/etc/localtime";
    return ZemTimeZoneIsPrivileged() && std::strcmp(path, kLocalTime) != 0
               ? ZemTimeZoneFileState::kUnusable
               : ZemTimeZoneReadFile(path, file);
}

}  // namespace

ZemTimeZone* ZemTimeZoneConstructData(ZemTimeZone* z, const void* tzif, ZemSizeT size,
                                      ZemAllocator* a)
{
    ZemTimeZoneSource source;
    if (!ZemTimeZoneReadData(static_cast<const unsigned char*>(tzif), size, source)) {
        return nullptr;
    }
    return Build(z, source, a);
}

ZemTimeZone* ZemTimeZoneConstructRule(ZemTimeZone* z, const char* rule, ZemAllocator* a)
{
    ZemTimeZoneSource source = {};
    source.hasRule = true;
    if (!ZemTimeZoneReadRule(rule, rule + std::strlen(rule), source.rule)) {
        return nullptr;
    }
    return Build(z, source, a);
}

ZemTimeZone* ZemTimeZoneConstruct(ZemTimeZone* z, const char* name, ZemAllocator* a)
{
    ZemTimeZoneFile file;
    switch (ZemTimeZoneReadNamed(name, file)) {
        case ZemTimeZoneFileState::kRead:
            return ConstructFile(z, file, a);
        case ZemTimeZoneFileState::kMissing:
            return std::strcmp(name, "UTC") == 0 ? ZemTimeZoneConstructRule(z, "UTC0", a) : nullptr;
        default:
            return nullptr;
    }
}

ZemTimeZone* ZemTimeZoneConstructLocal(ZemTimeZone* z, ZemAllocator* a)
{
    const char* tz = std::getenv("TZ");
    const char* name = tz != nullptr && *tz == ':' ? tz + 1 : tz;
    if (name != nullptr && *name == '\0') {
        return ZemTimeZoneConstructRule(z, "UTC0", a);
    }
    ZemTimeZoneFile file;
    bool isPath = name == nullptr || *name == '/';
    ZemTimeZoneFileState state = isPath ? ReadPath(name == nullptr ? "/etc/localtime" : name, file)
                                        : ZemTimeZoneReadNamed(name, file);
    if (state == ZemTimeZoneFileState::kRead) {
        return ConstructFile(z, file, a);
    }
    if (name == nullptr) {
        return state == ZemTimeZoneFileState::kMissing ? ZemTimeZoneConstructRule(z, "UTC0", a)
                                                       : nullptr;
    }
    return ZemTimeZoneConstructRule(z, std::strcmp(name, "UTC") == 0 ? "UTC0" : name, a);
}

void ZemTimeZoneDestruct(ZemTimeZone* z)
{
    ZemAllocatorDeallocate(z->allocator, const_cast<ZemTimeZoneTable*>(z->table), z->size);
}

// ---------------------------------------------------------------------------------------------
// Transitions
// ---------------------------------------------------------------------------------------------

ZemBool ZemTimeZoneNextTransition(const ZemTimeZone* z, ZemTime t, ZemTime* at)
{
    ZemTime last = z->table->segments[ZemTimeZoneFind(z->table, t)].last;
    if (last == ZEM_TIME_INFINITE) {
        return 0;
    }
    *at = last + 1;
    return 1;
}

ZemBool ZemTimeZonePreviousTransition(const ZemTimeZone* z, ZemTime t, ZemTime* at)
{
    // Nothing is before the smallest time.
    ZemUint32 i = ZemTimeZoneFind(z->table, t == INT64_MIN ? t : t - 1);
    if (i == 0) {
        return 0;
    }
    *at = z->table->segments[i - 1].last + 1;
    return 1;
}

// ---------------------------------------------------------------------------------------------
// Conversions
// ---------------------------------------------------------------------------------------------

ZemGregorianTime* ZemGregorianTimeConstructInZone(ZemGregorianTime* gt, ZemTime t,
                                                  const ZemTimeZone* z)
{
    const ZemTimeZoneTable* table = z->table;
    ZemInt offset;
    const ZemTimeZoneSegment* segment = ZemTimeZoneFindOffset(table, t, &offset);
    gt->tm.tm_isdst = segment->isDaylight;
    gt->tm.tm_gmtoff = offset;
    gt->tm.tm_zone = const_cast<char*>(table->texts + segment->text);
    gt->nanosecs = t % 1000000000;
    ZemCivilSetTm(t / 1000000000 + offset, &gt->tm);
    return gt;
}

namespace {

// The second that a time is in. Fields of times before 1970 name the one after it, and the
// nanoseconds count back from there: on the wrong side of a transition that would be an hour.
ZemInt64 FloorSecond(ZemInt64 second, ZemInt64 nanosecs)
{
    if (nanosecs >= 0 && nanosecs < 1000000000) {
        return second;
    }
    ZemInt64 whole = nanosecs / 1000000000;
    return second + whole - (nanosecs % 1000000000 < 0 ? 1 : 0);
}

}  // namespace

ZemTime ZemGregorianTimeGetTimeInZone(const ZemGregorianTime* gt, const ZemTimeZone* z)
{
    ZemInt64 second = ZemCivilSecsOfTm(&gt->tm);
    ZemUint32 i = ZemTimeZoneFindLocal(z->table, FloorSecond(second, gt->nanosecs));
    return ZemTimeFromSecsAndNanosecs_(second - z->table->segments[i].offset, gt->nanosecs);
}

ZemLocalTime* ZemGregorianTimeResolve(const ZemGregorianTime* gt, const ZemTimeZone* z,
                                      ZemLocalTime* result)
{
    const ZemTimeZoneTable* table = z->table;
    ZemInt64 second = ZemCivilSecsOfTm(&gt->tm);
    ZemInt64 floored = FloorSecond(second, gt->nanosecs);
    ZemUint32 i = ZemTimeZoneFindLocal(table, floored);
    const ZemTimeZoneSegment* segment = &table->segments[i];

    if (segment->last != ZEM_TIME_INFINITE) {
        // The transition's second by the clock before it and after it: what lies between is skipped
        // or repeated.
        ZemInt64 before = segment[0].offset;
        ZemInt64 after = segment[1].offset;
        ZemInt64 smaller = before < after ? before : after;
        ZemInt64 larger = before < after ? after : before;
        if (floored >= table->localEnds[i] - (larger - smaller)) {
            result->earlier = ZemTimeFromSecsAndNanosecs_(second - larger, gt->nanosecs);
            result->later = ZemTimeFromSecsAndNanosecs_(second - smaller, gt->nanosecs);
            result->transition = segment->last + 1;
            result->kind = after > before ? 1 : 2;
            return result;
        }
    }
    result->earlier = ZemTimeFromSecsAndNanosecs_(second - segment->offset, gt->nanosecs);
    result->later = result->earlier;
    result->transition = result->earlier;
    result->kind = 0;
    return result;
}
