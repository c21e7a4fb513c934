// What the fuzz targets share: each defines Target, which must promise the same for every input.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstring>

#include "Zem/Os/ZemTimeInline.h"

static void Target(FuzzedDataProvider& in);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider in(data, size);
    Target(in);
    return 0;
}

// Ends the run where a promise is broken.
inline void Require(bool kept)
{
    if (!kept)
        __builtin_trap();
}

// A text and its NUL in memory of exactly that size, so that no read beyond it goes unnoticed.
inline std::vector<char> Exact(const std::string& text)
{
    return {text.c_str(), text.c_str() + std::strlen(text.c_str()) + 1};
}

// Prints with `print` into buffers of every size up to one more than `whole` needs, or up to
// `most`. Each must hold what fits of `whole` and a NUL; AddressSanitizer watches the bytes after
// it.
template <class Print>
void RequireBounded(const std::string& whole, Print print, std::size_t most = 0)
{
    for (std::size_t size = 0; size <= std::max(most, whole.size() + 2); ++size) {
        std::vector<char> buffer(size);
        print(buffer.data(), size);
        Require(size == 0 || buffer.data() == whole.substr(0, size - 1));
    }
}
