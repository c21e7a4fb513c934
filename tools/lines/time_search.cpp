#include "tools/lines/time_search.hpp"

#include <algorithm>

#include "tools/common/line_reader.hpp"

namespace {

constexpr off_t kSamples = 64;
constexpr size_t kBlock = size_t{64} << 10;

}  // namespace

TimeSearch::TimeSearch(int descriptor, off_t begin, off_t end, const TimeLayout& layout,
                       const TimeOptions& options)
    : descriptor_(descriptor), begin_(begin), end_(end), times_(layout, options)
{
    off_t length = end - begin;
    for (off_t i = 0; i < kSamples; ++i) {
        off_t offset = begin + length / kSamples * i;
        off_t next = i + 1 < kSamples ? begin + length / kSamples * (i + 1) : end;
        if (std::optional<ZemTime> t = FirstTime(offset, next)) {
            samples_.push_back({offset, *t});
        }
    }
}

// The time of the first event among the lines that begin in [begin, end).
std::optional<ZemTime> TimeSearch::FirstTime(off_t begin, off_t end)
{
    LineReader reader(descriptor_, begin_, begin, end, kBlock);
    std::optional<ZemTime> t;
    std::string_view line;
    while (!t && reader.Next(line)) {
        t = times_.Read(line);
    }
    return t;
}

bool TimeSearch::IsOrdered() const
{
    ZemTime latest = INT64_MIN;
    for (const Sample& sample : samples_) {
        if (sample.t < AddSaturating(latest, -kDisorder)) {
            return false;
        }
        latest = std::max(latest, sample.t);
    }
    return !samples_.empty();
}

// What is before an event at t - kDisorder is before t.
off_t TimeSearch::FindBefore(ZemTime t)
{
    ZemTime surelyBefore = AddSaturating(t, -kDisorder);
    off_t low = begin_;
    off_t high = end_;
    for (auto sample = samples_.rbegin(); sample != samples_.rend(); ++sample) {
        if (sample->t < surelyBefore) {
            low = sample->offset;
            break;
        }
        high = sample->offset;
    }
    while (high - low > static_cast<off_t>(kBlock)) {
        off_t middle = low + (high - low) / 2;
        std::optional<ZemTime> found = FirstTime(middle, high);
        (found && *found < surelyBefore ? low : high) = middle;
    }
    return low;
}
