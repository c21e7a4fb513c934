// The parser held against the second reader of the tests: verdict, record, and the storage after a
// refusal.
#pragma once

#include "tests/reference_reader.hpp"

inline bool ReadersAgree(const char* text)
{
    ZemGregorianTime gt[2];
    std::memset(gt, 0x5A, sizeof gt);
    bool accepted = ReferenceRead(text, &gt[0]);
    return ZemGregorianTimeConstructCStr(&gt[1], text) == (accepted ? &gt[1] : nullptr) &&
           std::memcmp(&gt[0], &gt[1], sizeof gt[0]) == 0;
}
