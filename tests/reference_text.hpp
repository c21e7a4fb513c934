// Second readers and a second printer of texts with a length, to hold the library's against: by
// patterns, one character after the other, with the C library's calendar and snprintf.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "Zem/Os/ZemTimeText.h"

__extension__ typedef __int128 Int128;

// Whether `text` begins like `pattern`: 0 stands for any digit, a letter for those that count as
// it, + for a sign, a comma for a point or a comma, and everything else for itself.
inline bool BeginsLike(std::string_view text, std::string_view pattern)
{
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        std::string_view set = pattern.substr(i, 1);
        set = set == "0"   ? "0123456789"
              : set == "+" ? "+-"
              : set == "," ? ".,"
              : set == "T" ? "Tt "
              : set == "Z" ? "Zz"
                           : set;
        if (i == text.size() || set.find(text[i]) == set.npos)
            return false;
    }
    return true;
}

// Whether `text` may follow, and does not read as more of what stands before it.
inline bool MayFollow(std::string_view text)
{
    const char c = text.empty() ? ' ' : text[0];
    return (c < 'A' || c > 'Z') && (c < 'a' || c > 'z') && !BeginsLike(text, "0") &&
           !BeginsLike(text, ":0") && !BeginsLike(text, ",0");
}

// Reads the timestamp that `text` begins with; returns its size, or 0 with `*gt` as it was.
inline std::size_t ReferenceParse(ZemGregorianTime* gt, std::string_view text, bool zone)
{
    ZemGregorianTime read;
    std::memset(&read, 0, sizeof read);
    auto number = [](std::string_view digits) { return std::stoi(std::string(digits)); };
    if (!BeginsLike(text, "0000-00-00T00:00:00"))
        return 0;
    read.tm.tm_year = number(text.substr(0, 4)) - 1900;
    read.tm.tm_mon = number(text.substr(5, 2)) - 1;
    read.tm.tm_mday = number(text.substr(8, 2));
    read.tm.tm_hour = number(text.substr(11, 2));
    read.tm.tm_min = number(text.substr(14, 2));
    // What the C library moves is not there. It would move the 60th second.
    struct tm there = read.tm;
    timegm(&there);
    read.tm.tm_sec = number(text.substr(17, 2));
    if (read.tm.tm_sec > 60 || there.tm_mon != read.tm.tm_mon || there.tm_mday != read.tm.tm_mday ||
        there.tm_hour != read.tm.tm_hour || there.tm_min != read.tm.tm_min)
        return 0;

    std::size_t end = 19;
    std::string fraction;
    if (BeginsLike(text.substr(end), ",0"))
        while (BeginsLike(text.substr(++end), "0"))
            fraction += text[end];
    fraction.resize(9, '0');
    read.nanosecs = std::stol(fraction);

    const std::string_view rest = text.substr(end);
    std::size_t taken = zone ? 0 : end;
    if (!zone && !MayFollow(rest))
        return 0;
    for (const std::string before : {"", " ", ",", ", "}) {
        const bool zulu =
            BeginsLike(rest, before + "Z") && MayFollow(rest.substr(before.size() + 1));
        if (!zone && (zulu || BeginsLike(rest, before + "+0")))
            return 0;
    }
    for (const std::string space : {"", " "})
        for (const std::string form : {"Z", "+00", "+0000", "+000000", "+00:00", "+00:00:00"}) {
            const std::string pattern = form == "Z" ? form : space + form;
            if (!zone || !BeginsLike(rest, pattern) || !MayFollow(rest.substr(pattern.size())))
                continue;
            taken = end + pattern.size();
            std::string digits;
            for (char c : rest.substr(0, pattern.size()))
                digits += BeginsLike({&c, 1}, "0") ? std::string(1, c) : "";
            digits.resize(6, '0');
            const int hours = number(digits.substr(0, 2)), minutes = number(digits.substr(2, 2)),
                      seconds = number(digits.substr(4));
            if (hours > 23 || minutes > 59 || seconds > 59)
                return 0;
            read.tm.tm_gmtoff = hours * 3600 + minutes * 60 + seconds;
            if (BeginsLike(rest, "-") || BeginsLike(rest, " -"))
                read.tm.tm_gmtoff *= -1;
        }
    if (taken != 0)
        *gt = read;
    return taken;
}

// The instant that a record names; ZEM_TIME_INFINITE where a ZemTime does not reach it.
inline ZemTime ReferenceInstant(const ZemGregorianTime& gt)
{
    struct tm tm = gt.tm;
    const Int128 t = (Int128{timegm(&tm)} - gt.tm.tm_gmtoff) * 1000000000 + gt.nanosecs;
    return t < INT64_MIN || t > INT64_MAX ? ZEM_TIME_INFINITE : static_cast<ZemTime>(t);
}

// Whether the library reads timestamps as the second reader does: how many bytes, what is stored,
// and storage left alone where there is nothing to store.
inline bool TimestampReadersAgree(const char* s, std::size_t size)
{
    for (bool zone : {true, false}) {
        ZemGregorianTime gt[2];
        std::memset(gt, 0x5A, sizeof gt);
        const std::size_t taken = ReferenceParse(&gt[0], {s, size}, zone);
        auto* parse = zone ? ZemGregorianTimeParse : ZemGregorianTimeParseLocal;
        if (parse(&gt[1], s, size) != taken || std::memcmp(&gt[0], &gt[1], sizeof gt[0]) != 0)
            return false;
        ZemTime t = 7;
        if (zone &&
            (ZemTimeParse(&t, s, size) != taken || t != (taken != 0 ? ReferenceInstant(gt[0]) : 7)))
            return false;
    }
    return true;
}

// The same for the duration that `text` begins with.
inline std::size_t ReferenceParseDuration(ZemTime* t, std::string_view text)
{
    const std::string_view names[] = {"ns", "us", "\xC2\xB5s", "\xCE\xBCs", "ms",
                                      "s",  "m",  "h",         "d",         "w"};
    const ZemInt64 minute = 60000000000, day = 1440 * minute;
    const ZemInt64 lengths[] = {1,           1000,   1000,        1000, 1000000,
                                minute / 60, minute, 60 * minute, day,  7 * day};
    // More than any ZemTime, and little enough for sums and products.
    const Int128 more = Int128{1} << 66;
    const std::size_t sign = BeginsLike(text, "+") ? 1 : 0;
    std::string_view rest = text.substr(sign);
    Int128 total = 0;
    std::size_t taken = 0;
    while (BeginsLike(rest, "0")) {
        Int128 whole = 0;
        ZemInt64 fraction = 0;
        for (; BeginsLike(rest, "0"); rest.remove_prefix(1))
            whole = std::min(whole * 10 + (rest[0] - '0'), more);
        if (BeginsLike(rest, ".0")) {
            std::string digits;
            for (rest.remove_prefix(1); BeginsLike(rest, "0"); rest.remove_prefix(1))
                digits += rest[0];
            digits.resize(18, '0');
            fraction = std::stol(digits);
        }
        rest.remove_prefix(BeginsLike(rest, " ") ? 1 : 0);
        std::string_view name;
        ZemInt64 unit = 0;
        for (std::size_t i = 0; i < std::size(names); ++i)
            if (BeginsLike(rest, names[i]) && names[i].size() > name.size()) {
                name = names[i];
                unit = lengths[i];
            }
        if (unit == 0)
            break;
        rest.remove_prefix(name.size());
        taken = text.size() - rest.size();
        total += whole * unit + Int128{fraction} * unit / 1000000000000000000;
        total = std::min(total, more);
        rest.remove_prefix(BeginsLike(rest, " ") ? 1 : 0);
    }
    if (taken == 0 || !MayFollow(text.substr(taken)))
        return 0;
    total =
        text[0] == '-' ? std::max(-total, Int128{INT64_MIN}) : std::min(total, Int128{INT64_MAX});
    *t = static_cast<ZemTime>(total);
    return taken;
}

inline bool DurationReadersAgree(const char* s, std::size_t size)
{
    ZemTime t[2] = {7, 7};
    return ReferenceParseDuration(&t[0], {s, size}) == ZemTimeParseDuration(&t[1], s, size) &&
           t[0] == t[1];
}

// The text of a record whose nanoseconds are 0 to 999,999,999.
inline std::string ReferencePrint(const ZemGregorianTime& gt, ZemInt digits)
{
    char text[128];
    const ZemInt64 offset = gt.tm.tm_gmtoff, east = offset < 0 ? -offset : offset;
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%09ld",
                  ZemGregorianTimeGetYear(&gt), ZemGregorianTimeGetMonth(&gt), gt.tm.tm_mday,
                  gt.tm.tm_hour, gt.tm.tm_min, gt.tm.tm_sec, gt.nanosecs);
    std::string whole = text;
    whole.erase(whole.find('.') +
                (digits <= 0 ? 0 : 1 + static_cast<std::size_t>(std::min(digits, 9))));
    std::snprintf(text, sizeof text, "%c%02ld:%02ld:%02ld", offset < 0 ? '-' : '+', east / 3600,
                  east / 60 % 60, east % 60);
    return whole + (offset == 0      ? "Z"
                    : east % 60 == 0 ? std::string(text, std::strlen(text) - 3)
                                     : text);
}
