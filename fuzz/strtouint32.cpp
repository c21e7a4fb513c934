// The number reader against strtoul: value, end and errno, for every base.
#include <cerrno>

#include "fuzz/fuzz.hpp"

static void Target(FuzzedDataProvider& in)
{
    const int base = in.ConsumeBool() ? 10 : in.ConsumeIntegralInRange(-1, 38);
    const std::vector<char> text = Exact(in.ConsumeRemainingBytesAsString());
    char *expectedEnd = nullptr, *end = nullptr;
    errno = 0;
    auto expected = static_cast<ZemUint32>(std::strtoul(text.data(), &expectedEnd, base));
    const int expectedErrno = std::exchange(errno, 0);
    Require(ZemStrToUint32(text.data(), &end, base) == expected && end == expectedEnd);
    Require(errno == expectedErrno && ZemStrToUint32(text.data(), nullptr, base) == expected);
}
