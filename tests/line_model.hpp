// The lines that a LineReader should give, found in a text the plain way.
#ifndef ZEMTIME_TESTS_LINE_MODEL_HPP
#define ZEMTIME_TESTS_LINE_MODEL_HPP

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Those that begin in [begin, end) of `text`, whose first line begins at `first`.
inline std::vector<std::string> ModelLines(std::string_view text, std::size_t first,
                                           std::size_t begin, std::size_t end,
                                           std::size_t blockSize)
{
    std::vector<std::string> lines;
    for (std::size_t at = first; at < text.size();) {
        std::size_t newline = std::min(text.find('\n', at), text.size());
        std::string line(text.substr(at, newline - at));
        if (at == first && line.compare(0, 3, "\xEF\xBB\xBF") == 0)
            line.erase(0, 3);
        line.resize(std::min(line.size(), blockSize));
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        bool isNothing = newline == text.size() && line.empty();
        if (at >= begin && at < end && !isNothing)
            lines.push_back(line);
        at = newline + 1;
    }
    return lines;
}

#endif
