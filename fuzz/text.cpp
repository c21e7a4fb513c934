// The readers of timestamps against the second reader of the tests, on texts of exactly their size;
// and what they read, printed with all its digits, reads back.
#include "fuzz/fuzz.hpp"
#include "tests/reference_text.hpp"

static void Target(FuzzedDataProvider& in)
{
    const std::vector<char> text = in.ConsumeRemainingBytes<char>();
    Require(TimestampReadersAgree(text.data(), text.size()));
    ZemGregorianTime gt, back;
    if (ZemGregorianTimeParse(&gt, text.data(), text.size()) == 0 &&
        ZemGregorianTimeParseLocal(&gt, text.data(), text.size()) == 0)
        return;
    const std::string whole = ReferencePrint(gt, 9);
    auto print = [&](char* buf, std::size_t len) {
        Require(ZemGregorianTimePrint(&gt, 9, buf, len) == whole.size());
    };
    RequireBounded(whole, print, 49);
    Require(ZemGregorianTimeParse(&back, whole.data(), whole.size()) == whole.size());
    Require(std::memcmp(&back, &gt, sizeof gt) == 0);
}
