#include "unparsed.hpp"

#include <cinttypes>
#include <cstdio>

namespace {

constexpr ZemUint64 kShown = 5;
constexpr size_t kShownLength = 60;

// The beginning of `line`, with nothing in it that a terminal would act on.
std::string Excerpt(std::string_view line)
{
    std::string text(line.substr(0, kShownLength));
    for (char& c : text) {
        c = c < ' ' || c > '~' ? '?' : c;
    }
    return line.size() > kShownLength ? text + "..." : text;
}

}  // namespace

void Unparsed::Add(const std::string& file, ZemUint64 lineNumber, std::string_view line)
{
    if (++count_ <= kShown) {
        std::fprintf(stderr, "%s:%" PRIu64 ": no timestamp: %s\n", file.c_str(), lineNumber,
                     Excerpt(line).c_str());
    }
}

void Unparsed::ReportRest() const
{
    if (count_ > kShown) {
        std::fprintf(stderr, "zemtime: %" PRIu64 " more without a timestamp\n", count_ - kShown);
    }
}
