// The vectors of C and of C++ against their model, with allocations that fail where the input says
// so.
#include "fuzz/fuzz.hpp"
#include "tests/vector_model.hpp"

static void Target(FuzzedDataProvider& in)
{
    const int rare = in.ConsumeIntegralInRange(0, 15);
    const auto bytes = in.ConsumeRemainingBytes<std::uint8_t>();
    auto refuses = [&](std::size_t n) { return bytes[n % bytes.size()] % 16 < rare; };
    Require(VectorModel{bytes.data(), bytes.data() + bytes.size(), refuses}.Run());
    CppFace::turn = 0;
    Require(BasicVectorModel<CppFace>{bytes.data(), bytes.data() + bytes.size(), refuses}.Run());
}
