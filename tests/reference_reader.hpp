// A second reader of calendar texts, written plainly after the grammar, to hold the library's
// parser against.
#pragma once

#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "Zem/Os/ZemTime.h"

// Fills `*gt` and returns true when `at` is a calendar text; else returns false, with `*gt` as it
// was.
inline bool ReferenceRead(const char* at, ZemGregorianTime* gt)
{
    ZemInt value = 0, offset = 0, f[6];
    // A field is what strtoul takes, cut to 32 bits. Returns its width: white space and sign count.
    auto read = [&] {
        char* end;
        value = static_cast<ZemInt>(std::strtoul(at, &end, 10));
        return end - std::exchange(at, end);
    };
    auto take = [&](const char* set) { return *at && std::strchr(set, *at) ? *at++ : '\0'; };

    const char* const separators[] = {"-", "-", "T ", ":", ":"};
    for (int i = 0; i < 6; f[i++] = value)
        if (read() != (i == 0 ? 4 : 2) || (i < 5 && take(separators[i]) == '\0'))
            return false;
    std::string fraction;
    for (char c = take("."); c != '\0'; c = take("0123456789"))
        fraction += c;
    fraction.resize(10, '0');
    if (take("Z") == '\0') {
        take(" ");
        char sign = take("+-");
        auto width = read();
        bool ok = sign != '\0' && (width == 2 || width == 4 || width == 6);
        offset = width == 2   ? value * 3600
                 : width == 4 ? value / 100 * 3600 + value % 100 * 60
                              : value / 10000 * 3600 + value / 100 % 100 * 60 + value % 100;
        for (int unit = 60; ok && width == 2 && unit > 0 && take(":") != '\0'; unit /= 60) {
            ok = read() == 2;
            offset += ok ? unit * value : 0;
        }
        if (!ok)
            return false;
        offset = sign == '-' ? -offset : offset;
    }
    const int days[] = {
        31, f[0] % (f[0] % 100 == 0 ? 400 : 4) == 0 ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30,
        31};
    if (*at != '\0' || f[1] < 1 || f[1] > 12 || f[2] < 1 || f[2] > days[f[1] - 1] || f[3] < 0 ||
        f[3] > 23 || f[4] < 0 || f[4] > 59 || f[5] < 0 || f[5] > 60)
        return false;
    std::memset(gt, 0, sizeof *gt);
    const auto [year, month, day, hour, minute, second] = f;
    gt->tm.tm_year = year - 1900;
    gt->tm.tm_mon = month - 1;
    gt->tm.tm_mday = day;
    gt->tm.tm_hour = hour;
    gt->tm.tm_min = minute;
    gt->tm.tm_sec = second;
    gt->tm.tm_gmtoff = offset;
    gt->nanosecs = std::stol(fraction.substr(1, 9));
    return true;
}
