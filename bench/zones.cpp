// Named zones: instant to fields with their UTC offset, fields to instant, both answers of a
// repeated time, and loading a zone. The reference is localtime_r under each zone's TZ.

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "Zem/Os/ZemTime.hpp"
#include "locals.h"

namespace bench {

namespace {

// The first is the one that jobs with a single zone take.
const char* const kNames[] = {
    "Europe/Berlin",   "America/New_York", "Asia/Tokyo",          "Australia/Sydney",
    "America/Chicago", "Asia/Kolkata",     "America/Sao_Paulo",   "Europe/London",
    "Africa/Cairo",    "Asia/Shanghai",    "America/Los_Angeles", "Pacific/Auckland",
    "Europe/Moscow",   "Asia/Dubai",       "Africa/Casablanca",   "America/Mexico_City",
};
constexpr std::size_t kZones = std::size(kNames);

ZemAllocator* Allocator()
{
    static ZemAllocator allocator;
    static ZemAllocator* made = ZemAllocatorConstructMalloc(&allocator, SIZE_MAX);
    return made;
}

// Every zone as each library has it.
struct AllZones {
    ZemTimeZone ours[kZones];
    std::optional<zem::Zone> face[kZones];
    cctz::time_zone cctz[kZones];
    absl::TimeZone absl[kZones];
    const date::time_zone* date[kZones];
};

const AllZones& Load()
{
    static const AllZones zones = [] {
        AllZones made;
        for (std::size_t z = 0; z < kZones; ++z) {
            if (ZemTimeZoneConstruct(&made.ours[z], kNames[z], Allocator()) == nullptr) {
                std::fprintf(stderr, "No zone %s on this machine\n", kNames[z]);
                std::exit(1);
            }
            made.face[z] = zem::Zone::named(kNames[z]);
            made.cctz[z] = CctzZone(kNames[z]);
            made.absl[z] = AbslZone(kNames[z]);
            made.date[z] = date::locate_zone(kNames[z]);
        }
        return made;
    }();
    return zones;
}

// The values of a job: value i is in zone i % Zones.
template <std::size_t Zones>
struct Values {
    ZemTime instants[kValues];
    ZemGregorianTime records[kValues];
};

// Times within a day of a transition are left out: peers differ in what they make of a skipped or
// repeated hour.
bool IsUnique(ZemTime t)
{
    long before = BreakDownWithLocaltime(t - ZemTimeSecs(86400)).tm.tm_gmtoff;
    long after = BreakDownWithLocaltime(t + ZemTimeSecs(86400)).tm.tm_gmtoff;
    return before == after && BreakDownWithLocaltime(t).tm.tm_gmtoff == after;
}

template <std::size_t Zones>
void MakeValues(Values<Zones>& values, int firstYear, int lastYear)
{
    for (std::size_t z = 0; z < Zones; ++z) {
        SetZone(kNames[z]);
        for (std::size_t i = z; i < kValues; i += Zones) {
            do {
                Moment moment;
                std::int64_t secs = DrawSecond(firstYear, lastYear, moment);
                values.instants[i] = ZemTimeSecs(secs) + (secs < 0 ? 0 : Between(0, 999999999));
            } while (!IsUnique(values.instants[i]));
            values.records[i] = BreakDownWithLocaltime(values.instants[i]);
        }
    }
}

Values<1> g_century;
Values<1> g_decade;
Values<kZones> g_inTurn;

template <std::size_t Zones, const Values<Zones>& v>
void RegisterZoneBreakdown(const std::string& name, int threads)
{
    static const AllZones& zones = Load();
    Job job(name, [](std::size_t i) { return ViewLocal(v.records[i]); });
    job.Threads(threads);
    auto add = [&](const char* column, auto op) { job.Add(column, op, ViewLocal); };
    add("ours exported", [](std::size_t i) {
        ZemGregorianTime gt;
        ZemGregorianTimeConstructInZone(&gt, v.instants[i], &zones.ours[i % Zones]);
        return gt;
    });
    add("C++ face",
        [](std::size_t i) { return zones.face[i % Zones]->record(zem::ToInstant(v.instants[i])); });
    add("cctz",
        [](std::size_t i) { return BreakDownWithCctz(v.instants[i], zones.cctz[i % Zones]); });
    add("Abseil",
        [](std::size_t i) { return BreakDownWithAbsl(v.instants[i], zones.absl[i % Zones]); });
    add("date",
        [](std::size_t i) { return BreakDownWithDate(v.instants[i], zones.date[i % Zones]); });
    if (Zones == 1) {
        job.Zone(kNames[0]);
        add("localtime_r", [](std::size_t i) { return BreakDownWithLocaltime(v.instants[i]); });
    }
    job.AddOther(
        "UTC breakdown", "without a zone",
        [](std::size_t i) {
            ZemGregorianTime gt;
            ZemGregorianTimeConstructUTC(&gt, v.instants[i]);
            return gt;
        },
        [](std::size_t i, const ZemGregorianTime& gt) {
            return ZemGregorianTimeGetTime(&gt) == v.instants[i];
        });
}

template <std::size_t Zones, const Values<Zones>& v>
void RegisterZoneComposition(const std::string& name, int threads)
{
    static const AllZones& zones = Load();
    Job job(name, [](std::size_t i) { return v.instants[i]; });
    job.Threads(threads);
    job.Add("ours exported", [](std::size_t i) {
        return ZemGregorianTimeGetTimeInZone(&v.records[i], &zones.ours[i % Zones]);
    });
    job.Add("C++ face", [](std::size_t i) {
        std::optional<zem::Instant> t = zones.face[i % Zones]->instant(v.records[i]);
        return t ? zem::FromChrono(*t) : ZEM_TIME_INFINITE;
    });
    job.Add("cctz",
            [](std::size_t i) { return ComposeWithCctz(v.records[i], zones.cctz[i % Zones]); });
    job.Add("Abseil",
            [](std::size_t i) { return ComposeWithAbsl(v.records[i], zones.absl[i % Zones]); });
    job.Add("date",
            [](std::size_t i) { return ComposeWithDate(v.records[i], zones.date[i % Zones]); });
    if (Zones == 1) {
        job.Zone(kNames[0]);
        job.Add("mktime", [](std::size_t i) { return ComposeWithMktime(v.records[i]); });
    }
    job.AddOther(
        "UTC composition", "without a zone",
        [](std::size_t i) { return ZemGregorianTimeGetTime(&v.records[i]); },
        [](std::size_t i, ZemTime t) { return t == v.instants[i]; });
}

// Both answers, whether the time is skipped or repeated, and the transition.
void RegisterResolve()
{
    static const Values<1>& v = g_century;
    static const AllZones& zones = Load();
    Job job("zone resolve", [](std::size_t i) { return v.instants[i]; });
    job.Add(
        "ours exported",
        [](std::size_t i) {
            ZemLocalTime result;
            ZemGregorianTimeResolve(&v.records[i], &zones.ours[0], &result);
            return result;
        },
        [](const ZemLocalTime& r) { return r.kind == 0 ? r.earlier : ZEM_TIME_INFINITE; });
    job.Add(
        "C++ face", [](std::size_t i) { return zones.face[0]->resolve(v.records[i]); },
        [](const ZemLocalTime& r) { return r.kind == 0 ? r.earlier : ZEM_TIME_INFINITE; });
    using Lookup = std::pair<cctz::time_zone::civil_lookup, ZemTime>;
    job.Add(
        "cctz",
        [](std::size_t i) {
            auto lookup = zones.cctz[0].lookup(CivilOf<cctz::civil_second>(v.records[i]));
            return Lookup{lookup, v.records[i].nanosecs};
        },
        [](const Lookup& r) {
            return r.first.pre.time_since_epoch().count() * 1000000000 + r.second;
        });
    using TimeInfo = std::pair<absl::TimeZone::TimeInfo, ZemTime>;
    job.Add(
        "Abseil",
        [](std::size_t i) {
            auto info = zones.absl[0].At(CivilOf<absl::CivilSecond>(v.records[i]));
            return TimeInfo{info, v.records[i].nanosecs};
        },
        [](const TimeInfo& r) { return absl::ToUnixNanos(r.first.pre) + r.second; });
    using LocalInfo = std::pair<date::local_info, date::local_time<Nanos>>;
    job.Add(
        "date",
        [](std::size_t i) {
            auto local = DateLocalOf(v.records[i]);
            return LocalInfo{zones.date[0]->get_info(local), local};
        },
        [](const LocalInfo& r) {
            return (r.second.time_since_epoch() - r.first.first.offset).count();
        });
    job.AddOther(
        "UTC composition", "without a zone",
        [](std::size_t i) { return ZemGregorianTimeGetTime(&v.records[i]); },
        [](std::size_t i, ZemTime t) { return t == v.instants[i]; });
}

// A name of the same zone that cctz has not seen: it keeps what it loads, by name.
std::string NewName()
{
    static unsigned next = 0;
    std::string name;
    for (unsigned bits = next++ + 65536; bits > 1; bits /= 2) {
        name += bits % 2 == 0 ? "./" : ".//";
    }
    return name + kNames[0];
}

// From the zone's name to what can be looked up in, and free of it again where the library does
// that.
void RegisterLoad()
{
    static const ZemTime instant = ZemTimeSecs(1720000000);
    Job job("zone load", [](std::size_t) { return 7200; });
    job.Calls(64);
    job.Add("ours exported", [](std::size_t) {
        ZemTimeZone zone;
        ZemGregorianTime gt;
        if (ZemTimeZoneConstruct(&zone, kNames[0], Allocator()) == nullptr) {
            return 0;
        }
        ZemGregorianTimeConstructInZone(&gt, instant, &zone);
        ZemTimeZoneDestruct(&zone);
        return static_cast<int>(gt.tm.tm_gmtoff);
    });
    job.Add("cctz", [](std::size_t) {
        auto at = cctz::time_point<cctz::seconds>(cctz::seconds(instant / 1000000000));
        return CctzZone(NewName().c_str()).lookup(at).offset;
    });
    // Paris has the same offset.
    job.AddOther(
        "setenv, tzset, localtime_r", "the whole process's zone",
        [](std::size_t) {
            static bool paris = false;
            paris = !paris;
            SetZone(paris ? "Europe/Paris" : kNames[0]);
            return static_cast<int>(BreakDownWithLocaltime(instant).tm.tm_gmtoff);
        },
        [](std::size_t, int offset) { return offset == 7200; });
    SetZone(kNames[0]);
}

// The blocks of all zones of the machine, for the report.
void ReportSizes()
{
    const std::string root = "/usr/share/zoneinfo/";
    std::vector<ZemSizeT> sizes;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        ZemTimeZone zone;
        std::string name = entry.path().string().substr(root.size());
        if (entry.is_regular_file() &&
            ZemTimeZoneConstruct(&zone, name.c_str(), Allocator()) != nullptr) {
            sizes.push_back(zone.size);
            ZemTimeZoneDestruct(&zone);
        }
    }
    std::sort(sizes.begin(), sizes.end());
    benchmark::AddCustomContext("zone_bytes", std::to_string(sizes.front()) + " to " +
                                                  std::to_string(sizes.back()) + ", median " +
                                                  std::to_string(sizes[sizes.size() / 2]));
}

}  // namespace

void RegisterZones()
{
    MakeValues(g_century, 1931, 2030);
    MakeValues(g_decade, 2020, 2029);
    MakeValues(g_inTurn, 1931, 2030);
    RegisterZoneBreakdown<1, g_century>("zone breakdown", 1);
    RegisterZoneBreakdown<1, g_century>("zone breakdown, 2 threads", 2);
    RegisterZoneBreakdown<1, g_decade>("zone breakdown, one decade", 1);
    RegisterZoneBreakdown<kZones, g_inTurn>("zone breakdown, 16 zones", 1);
    RegisterZoneComposition<1, g_century>("zone composition", 1);
    RegisterZoneComposition<1, g_century>("zone composition, 2 threads", 2);
    RegisterZoneComposition<1, g_decade>("zone composition, one decade", 1);
    RegisterZoneComposition<kZones, g_inTurn>("zone composition, 16 zones", 1);
    RegisterResolve();
    RegisterLoad();
    ReportSizes();
}

}  // namespace bench
