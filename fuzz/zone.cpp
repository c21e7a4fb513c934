// TZif data against a reader that goes through everything: the same verdict, and the same
// transitions and conversions. The input is the data, so that files of zones are seeds.
#include "fuzz/fuzz.hpp"
#include "tests/reference_zone.hpp"

static void Target(FuzzedDataProvider& in)
{
    const std::vector<char> data = in.ConsumeRemainingBytes<char>();
    // Expressions of the reference take the stack for their text.
    if (data.size() > 20000)
        return;
    ZemAllocator allocator;
    ZemAllocatorConstructMalloc(&allocator, SIZE_MAX);
    ZemTimeZone zone;
    std::memset(&zone, 0x5A, sizeof zone);
    const ZemTimeZone before = zone;
    bool made = ZemTimeZoneConstructData(&zone, data.data(), data.size(), &allocator) == &zone;
    auto reference = ReferenceZone::Read({data.data(), data.size()});
    Require(made == reference.has_value());
    if (!made) {
        Require(std::memcmp(&zone, &before, sizeof zone) == 0);
        return;
    }
    // Instants of the data's own choice, whole and in eighths of the span.
    std::vector<ZemTime> instants;
    for (std::size_t i = 0; i + 8 <= data.size() && i < 256; i += 8) {
        ZemTime t;
        std::memcpy(&t, data.data() + data.size() - i - 8, sizeof t);
        instants.insert(instants.end(), {t, t / 8});
    }
    // A few of the transitions are many inputs a second.
    const std::size_t stride = reference->all.size() / 16 + 1;
    Require(ZoneIs(zone, *reference, instants, stride));
    ZemTimeZoneDestruct(&zone);
}
