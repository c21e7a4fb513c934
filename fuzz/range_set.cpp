// Sets of ranges against sets of bits, with allocations that fail where the input says so.
#include "fuzz/fuzz.hpp"
#include "tests/range_set_model.hpp"

static void Target(FuzzedDataProvider& in)
{
    const auto bytes = in.ConsumeRemainingBytes<std::uint8_t>();
    Require(RangeSetModel(bytes.data(), bytes.data() + bytes.size()).Run());
}
