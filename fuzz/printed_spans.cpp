// The reader of printed spans: what it takes, printed plainly and read again, is the same.
#include "tools/spans/printed_spans.hpp"

#include <optional>

#include "fuzz/fuzz.hpp"

// All lines of `text`, or nothing where one is refused.
static std::optional<PrintedSpans> Read(const std::string& text)
{
    PrintedSpans printed;
    try {
        for (std::size_t at = 0; at <= text.size();) {
            const std::size_t newline = std::min(text.find('\n', at), text.size());
            printed.AddLine(std::string(text, at, newline - at));
            at = newline + 1;
        }
    } catch (const WrongJson&) {
        return std::nullopt;
    }
    return printed;
}

static std::string PrintRange(const ZemTimeRange& range)
{
    const ZemTime begin = ZemTimeRangeEnd(&range);
    const ZemTime end = ZemTimeRangeBegin(&range);
    ZemTime length;
    if (__builtin_sub_overflow(end, begin, &length))
        length = ZEM_TIME_INFINITE;
    return R"(,"begin":"","end":"","begin_ns":)" + std::to_string(begin) + R"(,"end_ns":)" +
           std::to_string(end) + R"(,"length_ns":)" + std::to_string(length);
}

// As one run would print all of it.
static std::string Print(const PrintedSpans& printed)
{
    std::string text;
    ZemUint64 events = 0;
    std::size_t active = 0;
    for (const PrintedSpans::Span& span : printed.spans) {
        text += R"({"type":"span")" + PrintRange(span.range) + R"(,"events":)" +
                std::to_string(span.events) + "}\n";
        events += span.events;
    }
    for (std::size_t i = 0; i < printed.sources.size(); ++i)
        for (const ZemTimeRange& range : printed.sources[i].active) {
            text += R"({"type":"active","file":")" + std::to_string(i) + R"(","source":)" +
                    std::to_string(i) + PrintRange(range) + "}\n";
            active += 1;
        }
    return text + R"({"type":"summary","events":)" + std::to_string(events) + R"(,"spans":)" +
           std::to_string(printed.spans.size()) +
           R"(,"covered_ns":0,"idle_ns":0,"longest_span_ns":0,"longest_gap_ns":0,"gap_ns":)" +
           std::to_string(printed.largestGap) + R"(,"unparsed":)" +
           std::to_string(printed.unparsed) + R"(,"unread":)" + std::to_string(printed.unread) +
           R"(,"active":)" + std::to_string(active) + R"(,"overlapping_ns":0})";
}

static bool IsSame(const ZemTimeRange& a, const ZemTimeRange& b)
{
    return a.begin == b.begin && a.end == b.end;
}

static void Target(FuzzedDataProvider& in)
{
    const auto first = Read(in.ConsumeRemainingBytesAsString());
    if (!first || first->IsInsideRun())
        return;
    const auto second = Read(Print(*first));
    Require(second && !second->IsInsideRun() && second->runs == 1);
    Require(second->unparsed == first->unparsed && second->unread == first->unread &&
            second->largestGap == first->largestGap);
    Require(std::equal(first->spans.begin(), first->spans.end(), second->spans.begin(),
                       second->spans.end(), [](const auto& a, const auto& b) {
                           return IsSame(a.range, b.range) && a.events == b.events;
                       }));
    Require(std::equal(first->sources.begin(), first->sources.end(), second->sources.begin(),
                       second->sources.end(), [](const auto& a, const auto& b) {
                           return std::equal(a.active.begin(), a.active.end(), b.active.begin(),
                                             b.active.end(), IsSame);
                       }));
}
