// Every zone of the machine at every transition and on every day that a ZemTime can name: against
// localtime_r and against the reader that goes through everything. Then the same zones as zic
// writes them in either form, slim and fat: usage: exhaust_zones SLIM-FOLDER FAT-FOLDER. Run by
// scripts/exhaust. Ends at the first difference.

#include "tests/machine_zones.hpp"
#include "tests/reference_zone.hpp"

static void Require(bool right, const char* what, const std::string& zone, ZemTime at)
{
    if (!right) {
        std::fprintf(stderr, "%s: %s differs at %ld\n", zone.c_str(), what, at);
        std::_Exit(1);
    }
}

static ZemTimeZone Load(const std::string& path)
{
    static ZemAllocator allocator;
    static ZemAllocator* made = ZemAllocatorConstructMalloc(&allocator, SIZE_MAX);
    const std::string bytes = FileBytes(path);
    ZemTimeZone zone;
    Require(ZemTimeZoneConstructData(&zone, bytes.data(), bytes.size(), made) != nullptr, "Reading",
            path, 0);
    return zone;
}

static void SweepZone(const std::string& folder, const std::string& name)
{
    const std::string path = folder + "/" + name;
    ZemTimeZone zone = Load(path);
    SetTz(path.c_str());
    // A day and some, so that every second of a day has its turn.
    ZemTime at = FirstDifference(zone, ZemTimeSecs(-9223372000), ZemTimeSecs(9223372000),
                                 ZemTimeSecs(86400 + 7));
    Require(at == ZEM_TIME_INFINITE, "Local time", path, at);
    auto reference = ReferenceZone::Read(FileBytes(path));
    Require(reference && ZoneIs(zone, *reference, {}), "The reference", path, 0);
    ZemTimeZoneDestruct(&zone);
}

// Whether both forms have the same transitions, with the same times after them.
static bool IsSame(const std::string& name, const std::string& slim, const std::string& fat)
{
    ZemTimeZone zones[] = {Load(slim + "/" + name), Load(fat + "/" + name)};
    ZemTime at = INT64_MIN;
    bool same = true;
    for (bool more = true; same && more;) {
        ZemGregorianTime times[2];
        ZemTime next[2];
        ZemBool found[2];
        for (int form : {0, 1}) {
            ZemGregorianTimeConstructInZone(&times[form], at, &zones[form]);
            next[form] = at;
            found[form] = ZemTimeZoneNextTransition(&zones[form], at, &next[form]);
        }
        same = ZemGregorianTimeEqual(&times[0], &times[1]) != 0 && found[0] == found[1] &&
               times[0].tm.tm_isdst == times[1].tm.tm_isdst && next[0] == next[1] &&
               std::strcmp(times[0].tm.tm_zone, times[1].tm.tm_zone) == 0;
        more = found[0] != 0;
        at = next[0];
    }
    for (ZemTimeZone& zone : zones)
        ZemTimeZoneDestruct(&zone);
    return same;
}

int main(int argc, char** argv)
{
    const std::vector<std::string> names = ZoneNames();
    Require(argc == 3 && names.size() > 300, "The number of zones", "all", 0);
    for (const std::string& name : names)
        SweepZone("/usr/share/zoneinfo", name);
    const std::vector<std::string> made = ZoneNames(argv[1]);
    Require(made.size() > 300, "The number of zones", argv[1], 0);
    std::string different;
    for (const std::string& name : made) {
        SweepZone(argv[1], name);
        SweepZone(argv[2], name);
        if (!IsSame(name, argv[1], argv[2]))
            different += " " + name;
    }
    std::printf(
        "%zu zones on every day and beside every transition, and %zu slim and fat; forms that "
        "differ:%s\n",
        names.size(), made.size(), different.empty() ? " none" : different.c_str());
}
