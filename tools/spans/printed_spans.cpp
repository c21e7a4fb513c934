#include "tools/spans/printed_spans.hpp"

#include <algorithm>

namespace {

constexpr const char* kSpaces = " \t\r\n";

void AddTo(ZemUint64& sum, ZemUint64 count, const char* what)
{
    if (__builtin_add_overflow(sum, count, &sum)) {
        throw WrongJson(std::string("more ") + what + " than can be counted");
    }
}

// The members of every line that tells a range. What is there twice, for people or for ease, must
// agree: readers that keep numbers in 53 bits change them.
ZemTimeRange TakeRange(JsonObject& object)
{
    object.TakeString("begin");
    object.TakeString("end");
    ZemTimeRange range;
    ZemTime begin = object.TakeNumber("begin_ns");
    ZemTime end = object.TakeNumber("end_ns");
    ZemTimeRangeConstruct(&range, end, begin);
    if (!ZemTimeRangeIsValid(&range) || end == ZEM_TIME_INFINITE) {
        throw WrongJson("\"begin_ns\" and \"end_ns\" are no range of times");
    }
    if (object.TakeNumber("length_ns") != LengthOf(range)) {
        throw WrongJson("\"length_ns\" is not \"end_ns\" less \"begin_ns\"");
    }
    return range;
}

}  // namespace

void PrintedSpans::AddSpan(JsonObject& object)
{
    Span span{TakeRange(object), object.TakeCount("events")};
    if (span.events == 0) {
        throw WrongJson("a span without events");
    }
    AddTo(events_, span.events, "events");
    spans.push_back(span);
}

void PrintedSpans::AddActive(JsonObject& object)
{
    std::string name = object.TakeString("file");
    ZemTimeRange range = TakeRange(object);
    auto [place, isNew] = sourcesOfRun_.emplace(object.TakeCount("source"), sources.size());
    if (isNew) {
        sources.push_back({name, runs, {}});
    } else if (sources[place->second].name != name) {
        throw WrongJson("another \"file\" of the same \"source\"");
    }
    sources[place->second].active.push_back(range);
    activeLines_ += 1;
}

void PrintedSpans::AddSummary(JsonObject& object)
{
    if (!object.Has("gap_ns")) {
        throw WrongJson("a summary without \"gap_ns\": printed by an older zemtime");
    }
    ZemTime gap = object.TakeNumber("gap_ns");
    if (gap < 1 || gap == ZEM_TIME_INFINITE) {
        throw WrongJson("\"gap_ns\" is no gap");
    }
    if (object.TakeCount("spans") != spans.size() - spansBefore_ ||
        object.TakeCount("events") != events_ - eventsBefore_) {
        throw WrongJson("the summary counts other spans or events than there are before it");
    }
    bool hasSources = object.Has("active");
    if ((hasSources ? object.TakeCount("active") : 0) != activeLines_) {
        throw WrongJson("the summary counts other times of files than there are before it");
    }
    AddTo(unparsed, object.TakeCount("unparsed"), "lines");
    AddTo(unread, object.TakeCount("unread"), "files");
    // These follow from the spans.
    for (const char* name : {"covered_ns", "idle_ns", "longest_span_ns", "longest_gap_ns"}) {
        object.TakeNumber(name);
    }
    if (hasSources) {
        object.TakeNumber("overlapping_ns");
    }
    allHaveSources = allHaveSources && hasSources;
    largestGap = std::max(largestGap, gap);
    runs += 1;
    insideRun_ = false;
    spansBefore_ = spans.size();
    eventsBefore_ = events_;
    activeLines_ = 0;
    sourcesOfRun_.clear();
}

void PrintedSpans::AddLine(std::string_view line)
{
    if (line.find_first_not_of(kSpaces) == std::string_view::npos) {
        return;
    }
    if (line[line.find_first_not_of(kSpaces)] != '{') {
        throw WrongJson("no JSON object; --merge reads what zemtime spans --json prints");
    }
    insideRun_ = true;
    JsonObject object(line);
    std::string type = object.TakeString("type");
    if (type == "span") {
        AddSpan(object);
    } else if (type == "active") {
        AddActive(object);
    } else if (type == "overlap") {
        TakeRange(object);  // follows from the times of files
        object.TakeStrings("files");
    } else if (type == "summary") {
        AddSummary(object);
    } else {
        throw WrongJson("no such \"type\": \"" + type + '"');
    }
    object.RequireEmpty();
}
