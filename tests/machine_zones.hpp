// The zones of the machine, held against the C library's local time under the same TZ.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "Zem/Os/ZemTimeInline.h"
#include "Zem/Os/ZemTimeZone.h"

inline std::string FileBytes(const std::filesystem::path& path)
{
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

// The names of all zones below a folder, in order.
inline std::vector<std::string> ZoneNames(const std::string& folder = "/usr/share/zoneinfo")
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::string name = entry.path().string().substr(folder.size() + 1);
        if (entry.is_regular_file() && name.compare(0, 6, "right/") != 0 &&
            FileBytes(entry.path()).compare(0, 4, "TZif") == 0)
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

inline void SetTz(const char* tz)
{
    tz == nullptr ? unsetenv("TZ") : setenv("TZ", tz, 1);
    tzset();
}

// Whether a zone's record of the second of `t` is localtime_r's, and leads back to it.
inline bool IsLocalTime(const ZemTimeZone& zone, ZemTime t)
{
    // Before 1970 localtime_r is asked about whole seconds: it does not see the instant itself.
    t -= t < 0 ? t % 1000000000 : 0;
    const time_t second = t / 1000000000;
    tm expected;
    ZemGregorianTime gt;
    ZemLocalTime back;
    localtime_r(&second, &expected);
    ZemGregorianTimeConstructInZone(&gt, t, &zone);
    ZemGregorianTimeResolve(&gt, &zone, &back);
    return std::memcmp(&gt.tm, &expected, offsetof(tm, tm_isdst) + sizeof(int)) == 0 &&
           gt.tm.tm_gmtoff == expected.tm_gmtoff &&
           std::strcmp(gt.tm.tm_zone, expected.tm_zone) == 0 && gt.nanosecs == t % 1000000000 &&
           (back.earlier == t || back.later == t) && back.kind != 1;
}

// Holds a zone against the present TZ beside every transition, and once in every `step` of the span
// from `first` to `last`; returns the first instant that differs, or ZEM_TIME_INFINITE.
inline ZemTime FirstDifference(const ZemTimeZone& zone, ZemTime first, ZemTime last, ZemTime step)
{
    constexpr ZemTime kSecond = 1000000000;
    for (ZemTime at = first; ZemTimeZoneNextTransition(&zone, at, &at) && at < last;)
        for (ZemTime t : {at - 1800 * kSecond, at - kSecond, at - 1, at, at + 1, at + kSecond,
                          at + 1800 * kSecond})
            if (!IsLocalTime(zone, t))
                return t;
    for (ZemTime t = first; t < last - step; t += step)
        if (!IsLocalTime(zone, t))
            return t;
    return ZEM_TIME_INFINITE;
}
