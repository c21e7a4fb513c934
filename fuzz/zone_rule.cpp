// Rules against a reader that asks them year by year.
#include "fuzz/fuzz.hpp"
#include "tests/reference_zone.hpp"

static void Target(FuzzedDataProvider& in)
{
    const std::vector<char> text = Exact(in.ConsumeRandomLengthString(200));
    ZemAllocator allocator;
    ZemAllocatorConstructMalloc(&allocator, SIZE_MAX);
    ZemTimeZone zone;
    bool made = ZemTimeZoneConstructRule(&zone, text.data(), &allocator) == &zone;
    auto reference = ReferenceZone::FromRule(text.data());
    Require(made == reference.has_value());
    if (made) {
        const std::size_t stride = in.ConsumeIntegralInRange<std::size_t>(20, 100);
        const std::vector<ZemTime> instants = {in.ConsumeIntegral<ZemTime>(),
                                               in.ConsumeIntegral<ZemTime>() / 8};
        Require(ZoneIs(zone, *reference, instants, stride));
        ZemTimeZoneDestruct(&zone);
    }
}
