// The reader of durations against the second reader of the tests, on texts of exactly their size;
// and what it reads, printed, reads back.
#include "fuzz/fuzz.hpp"
#include "tests/reference_text.hpp"

static void Target(FuzzedDataProvider& in)
{
    const auto any = in.ConsumeIntegral<ZemTime>();
    const std::vector<char> text = in.ConsumeRemainingBytes<char>();
    Require(DurationReadersAgree(text.data(), text.size()));
    ZemTime t = any, back = 0;
    ZemTimeParseDuration(&t, text.data(), text.size());
    char whole[26];
    const std::size_t size = ZemTimePrintDuration(t, whole, sizeof whole);
    RequireBounded(whole, [&](char* buf, std::size_t len) {
        Require(ZemTimePrintDuration(t, buf, len) == size);
    });
    Require(ZemTimeParseDuration(&back, Exact(whole).data(), size) == size && back == t);
    Require(DurationReadersAgree(ZemTimePrintCompact(t, whole, sizeof whole), std::strlen(whole)));
}
