// What the tests share: exact arithmetic, random numbers, tables in files, and the check of
// printing into buffers of every size.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>

#include "Zem/Os/ZemTimeInline.h"

__extension__ typedef __int128 Int128;

inline std::mt19937_64 generator;

inline ZemInt64 Between(ZemInt64 first, ZemInt64 last)
{
    return std::uniform_int_distribution(first, last)(generator);
}

// Any magnitude of either sign; powers of two and their neighbours, both extremes among them, make
// up half of the numbers.
inline ZemInt64 AnyInt64()
{
    ZemUint64 kind = generator();
    ZemUint64 value = ((kind & 64) != 0 ? generator() : UINT64_MAX) >> (kind & 63);
    value += (kind >> 8) % 3 - 1;
    return static_cast<ZemInt64>((kind & 128) != 0 ? value : ~value);
}

// The rows of a file in tables/: two columns with " | " between them.
inline std::vector<std::pair<std::string, std::string>> Table(const std::string& name)
{
    std::vector<std::pair<std::string, std::string>> rows;
    std::ifstream file(ZEMTIME_TEST_TABLES + name);
    for (std::string line; std::getline(file, line);)
        if (auto bar = line.find(" | "); bar != std::string::npos)
            rows.emplace_back(line.substr(0, bar), line.substr(bar + 3));
    EXPECT_FALSE(rows.empty()) << name;
    return rows;
}

// Has `print` write a text that should be `whole` into buffers of every size up to two more than it
// needs, or up to `most`: each must hold the beginning that fits and a NUL, with nothing written
// after the buffer, and after the NUL only by a printer that `scribbles`.
template <class Print>
void ExpectBounded(const std::string& whole, Print print, std::size_t most = 0,
                   bool scribbles = false)
{
    most = std::max(most, whole.size() + 3);
    for (std::size_t size = 0; size <= most; ++size) {
        std::string buffer(most + 17, '\x7F');
        print(buffer.data(), size);
        const std::size_t end = scribbles ? size : std::min(size, whole.size() + 1);
        ASSERT_EQ(buffer.find_first_not_of('\x7F', end), std::string::npos) << whole << size;
        ASSERT_TRUE(size == 0 || buffer.c_str() == whole.substr(0, size - 1)) << buffer << size;
    }
}
