#include "text.hpp"

#include <charconv>

std::optional<Zone> ParseZone(std::string_view text)
{
    if (text == "utc") {
        return Zone{Zone::Kind::kUtc, 0};
    }
    if (text == "local") {
        return Zone{Zone::Kind::kLocal, 0};
    }
    // The parser knows every form of an offset; any time in front of it will do.
    if (text.substr(0, 1) == ".") {
        return std::nullopt;
    }
    ZemGregorianTime record;
    std::string dated = "1970-01-01T00:00:00" + std::string(text);
    if (ZemGregorianTimeConstructCStr(&record, dated.c_str()) == nullptr) {
        return std::nullopt;
    }
    return Zone{Zone::Kind::kFixed, ZemGregorianTimeGetUTCOffset(&record)};
}

std::string PrintRecord(const ZemGregorianTime& record)
{
    char buf[64];
    const char* text = ZemGregorianTimeGetAsStringWithOffset(&record, buf, sizeof buf);
    return text != nullptr ? text : "?";
}

std::string PrintInstant(ZemTime t, const Zone& zone)
{
    ZemGregorianTime record;
    if (zone.kind == Zone::Kind::kLocal && ZemGregorianTimeConstruct(&record, t) != nullptr) {
        return PrintRecord(record);
    }
    ZemTime shown;
    if (zone.kind == Zone::Kind::kFixed &&
        !__builtin_add_overflow(t, ZemTimeSecs(zone.offset), &shown)) {
        ZemGregorianTimeConstructUTC(&record, shown);
        ZemGregorianTimeSetUTCOffset(&record, zone.offset);
        return PrintRecord(record);
    }
    ZemGregorianTimeConstructUTC(&record, t);
    return PrintRecord(record);
}

std::optional<ZemTime> ParseDuration(std::string_view text)
{
    struct Unit {
        std::string_view name;
        ZemTime length;
    };
    const Unit units[] = {{"ns", 1},
                          {"us", ZemTimeUsecs(1)},
                          {"ms", ZemTimeMsecs(1)},
                          {"s", ZemTimeSecs(1)},
                          {"m", ZemTimeSecs(60)},
                          {"h", ZemTimeSecs(3600)},
                          {"d", ZemTimeSecs(86400)}};

    if (text.empty()) {
        return std::nullopt;
    }
    ZemTime total = 0;
    while (!text.empty()) {
        ZemTime count = 0;
        auto number = std::from_chars(text.data(), text.data() + text.size(), count);
        if (number.ec != std::errc() || count < 0) {
            return std::nullopt;
        }
        text.remove_prefix(static_cast<size_t>(number.ptr - text.data()));

        std::string_view name = text.substr(0, text.find_first_of("0123456789"));
        text.remove_prefix(name.size());
        ZemTime length = 0;
        for (const Unit& unit : units) {
            length = unit.name == name ? unit.length : length;
        }
        if (length == 0 || __builtin_mul_overflow(count, length, &count) ||
            __builtin_add_overflow(total, count, &total)) {
            return std::nullopt;
        }
    }
    return total;
}

std::string PrintDuration(ZemTime t)
{
    char buf[32];
    return ZemTimePrintCompact(t, buf, sizeof buf);
}
