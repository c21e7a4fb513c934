// The bounded formatter against snprintf, for formats of any text and order of conversions.
#include "fuzz/fuzz.hpp"

static void Target(FuzzedDataProvider& in)
{
    static const char* const numbers[] = {"%d",  "%u",  "%04d", "%02d", "%02u", "%5d",  "%9u",
                                          "%7d", "%0d", "%x",   "%+d",  "%-4d", "%i",   "%.3d",
                                          "%c",  "% d", "%#o",  "%09d", "%03d", "%12u", "%%%d"};
    // Seven numbers, a text and more numbers, as far as the format goes. The seven of a date take a
    // way of their own.
    std::string format = in.ConsumeBool() ? "%04d-%02d-%02d %02d:%02d:%02d.%03d" : "";
    for (int i = format.empty() ? 0 : 7, last = in.ConsumeIntegralInRange(i, 11); i < last; ++i) {
        format += i == 7 ? in.PickValueInArray({"%s", "%5s", "%.2s", "%-7s"})
                         : in.PickValueInArray(numbers);
        const std::string text = in.ConsumeRandomLengthString(6);
        format += std::string(text.c_str()).substr(0, text.find('%'));
    }
    const std::vector<char> s = Exact(in.ConsumeRandomLengthString(40));
    int n[10];
    for (int& number : n)
        number = in.ConsumeBool() ? in.ConsumeIntegralInRange(0, 99) : in.ConsumeIntegral<int>();
    auto print = [&](auto* function, char* buf, std::size_t len) {
        return function(buf, len, format.c_str(), n[0], n[1], n[2], n[3], n[4], n[5], n[6],
                        s.data(), n[7], n[8], n[9]);
    };
    std::vector<char> whole(2000);  // a %c may print a NUL: bytes are compared, not texts
    const auto length = static_cast<std::size_t>(print(std::snprintf, whole.data(), whole.size()));
    for (std::size_t len = 0; len <= length + 2; ++len) {
        std::vector<char> printed(len);
        Require(print(ZemSNPrintf, printed.data(), len) == length);
        Require(len == 0 || printed[std::min(len - 1, length)] == '\0');
        Require(std::equal(printed.begin(), printed.end() - (len > 0), whole.begin()));
    }
}
