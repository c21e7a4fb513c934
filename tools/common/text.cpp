#include "tools/common/text.hpp"

#include <charconv>

#include "Zem/Os/ZemTimeText.h"

std::optional<ZemUint64> ParseNumber(std::string_view digits, int base)
{
    ZemUint64 value = 0;
    const char* end = digits.data() + digits.size();
    auto number = std::from_chars(digits.data(), end, value, base);
    return number.ec == std::errc() && number.ptr == end ? std::optional(value) : std::nullopt;
}

std::optional<ZemInt> ParseOffset(std::string_view text)
{
    // The library knows every form of an offset; any time in front of it will do.
    std::string dated = "1970-01-01T00:00:00" + std::string(text);
    ZemGregorianTime record;
    bool isOffset = text.find_first_of("Z+-") == 0 &&
                    ZemGregorianTimeParse(&record, dated.data(), dated.size()) == dated.size();
    return isOffset ? std::optional(ZemGregorianTimeGetUTCOffset(&record)) : std::nullopt;
}

NamedZone::NamedZone()
{
    ZemAllocatorConstructMalloc(&heap_, SIZE_MAX);
}

NamedZone::~NamedZone()
{
    if (zone_.table != nullptr) {
        ZemTimeZoneDestruct(&zone_);
    }
}

bool NamedZone::Find(const std::string& name)
{
    return ZemTimeZoneConstruct(&zone_, name.c_str(), &heap_) != nullptr;
}

bool NamedZone::FindLocal()
{
    return ZemTimeZoneConstructLocal(&zone_, &heap_) != nullptr;
}

Zone LocalZone()
{
    auto local = std::make_shared<NamedZone>();
    bool isFound = local->FindLocal();
    return {isFound ? Zone::Kind::kNamed : Zone::Kind::kLibc, 0, local};
}

std::optional<Zone> ParseZone(std::string_view text)
{
    if (text == "utc") {
        return Zone{};
    }
    if (text == "local") {
        return LocalZone();
    }
    if (std::optional<ZemInt> offset = ParseOffset(text)) {
        return Zone{Zone::Kind::kFixed, *offset, nullptr};
    }
    auto named = std::make_shared<NamedZone>();
    if (named->Find(std::string(text))) {
        return Zone{Zone::Kind::kNamed, 0, named};
    }
    return std::nullopt;
}

std::string PrintRecord(const ZemGregorianTime& record)
{
    char buf[64];
    const char* text = ZemGregorianTimeGetAsStringWithOffset(&record, buf, sizeof buf);
    return text != nullptr ? text : "?";
}

ZemGregorianTime RecordIn(const Zone& zone, ZemTime t)
{
    ZemGregorianTime record;
    if (zone.kind == Zone::Kind::kNamed) {
        ZemGregorianTimeConstructInZone(&record, t, &zone.named->Get());
        return record;
    }
    if (zone.kind == Zone::Kind::kLibc && ZemGregorianTimeConstruct(&record, t) != nullptr) {
        return record;
    }
    ZemTime shown;
    if (zone.kind == Zone::Kind::kFixed &&
        !__builtin_add_overflow(t, ZemTimeSecs(zone.offset), &shown)) {
        ZemGregorianTimeConstructUTC(&record, shown);
        ZemGregorianTimeSetUTCOffset(&record, zone.offset);
        return record;
    }
    ZemGregorianTimeConstructUTC(&record, t);
    return record;
}

ZemTime InstantIn(const Zone& zone, ZemGregorianTime record)
{
    if (zone.kind == Zone::Kind::kNamed) {
        return ZemGregorianTimeGetTimeInZone(&record, &zone.named->Get());
    }
    if (zone.kind == Zone::Kind::kLibc) {
        return ZemGregorianTimeGetLocalTime(&record);
    }
    ZemGregorianTimeSetUTCOffset(&record, zone.offset);
    ZemTime t = ZemGregorianTimeGetTime(&record);
    if (t == ZEM_TIME_INFINITE) {
        // The conversion of a record takes one second of 1969 for a failure; its text does not.
        char text[48];
        ZemTimeParse(&t, text, ZemGregorianTimePrint(&record, 9, text, sizeof text));
    }
    return t;
}

std::string PrintInstant(ZemTime t, const Zone& zone)
{
    return PrintRecord(RecordIn(zone, t));
}

std::optional<ZemTime> ParseDuration(std::string_view text)
{
    ZemTime t = 0;
    bool isDuration =
        !text.empty() && ZemTimeParseDuration(&t, text.data(), text.size()) == text.size();
    return isDuration && t != ZEM_TIME_INFINITE && t != INT64_MIN ? std::optional(t) : std::nullopt;
}

std::string PrintDuration(ZemTime t)
{
    char buf[32];
    return ZemTimePrintCompact(t, buf, sizeof buf);
}

std::string PrintExactDuration(ZemTime t)
{
    char buf[48];
    return {buf, ZemTimePrintDuration(t, buf, sizeof buf)};
}
