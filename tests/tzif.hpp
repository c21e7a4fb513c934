// TZif data put together in memory, right or wrong.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Zem/Os/ZemTime.h"

struct Tzif {
    struct Kind {
        ZemInt64 offset;
        int daylight;
        int text;
    };

    char version = '2';  // 0: seconds of 32 bits alone
    std::vector<std::pair<ZemInt64, int>> transitions;
    std::vector<Kind> kinds = {{0, 0, 0}};
    std::string texts = std::string("UTC\0", 4);
    std::string footer;
    std::string standard, ut;  // the flags
    std::size_t leaps = 0;

    static std::string BigEndian(ZemInt64 value, int size)
    {
        std::string bytes;
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
            bytes += static_cast<char>(value >> shift);
        return bytes;
    }

    std::string Block(int width, bool empty) const
    {
        std::string head = std::string("TZif") + version + std::string(15, '\0');
        if (empty)
            return head + std::string(24, '\0');
        for (std::size_t count :
             {ut.size(), standard.size(), leaps, transitions.size(), kinds.size(), texts.size()})
            head += BigEndian(static_cast<ZemInt64>(count), 4);
        for (const auto& [second, kind] : transitions)
            head += BigEndian(second, width);
        for (const auto& [second, kind] : transitions)
            head += static_cast<char>(kind);
        for (const Kind& kind : kinds)
            head += BigEndian(kind.offset, 4) + static_cast<char>(kind.daylight) +
                    static_cast<char>(kind.text);
        return head + texts + std::string(leaps * (static_cast<std::size_t>(width) + 4), '\0') +
               standard + ut;
    }

    std::string Bytes() const
    {
        return version == 0 ? Block(4, false)
                            : Block(4, true) + Block(8, false) + "\n" + footer + "\n";
    }
};
