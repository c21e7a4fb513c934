#include "tools/common/unparsed.hpp"

#include <cinttypes>
#include <cstdio>

#include "tools/common/quote.hpp"

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

void UnparsedLines::Add(ZemUint64 number, std::string_view line)
{
    count_ += 1;
    if (first_.size() < kShown) {
        first_.push_back({number, Excerpt(line)});
    }
}

void UnparsedReport::Add(const UnparsedLines& lines, const std::string& file, ZemUint64 linesBefore)
{
    count_ += lines.count_;
    for (const UnparsedLines::Line& line : lines.first_) {
        if (shown_ < kShown) {
            shown_ += 1;
            std::fprintf(stderr, "%s:%" PRIu64 ": no timestamp: %s\n", Printable(file).c_str(),
                         linesBefore + line.number, line.excerpt.c_str());
        }
    }
}

void UnparsedReport::ShowRest() const
{
    if (count_ > shown_) {
        std::fprintf(stderr, "zemtime: %" PRIu64 " more without a timestamp\n", count_ - shown_);
    }
}
