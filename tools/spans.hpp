// zemtime spans: spans of activity in timestamped lines.

#ifndef ZEMTIME_TOOLS_SPANS_HPP
#define ZEMTIME_TOOLS_SPANS_HPP

#include <optional>
#include <string>
#include <vector>

#include "histogram.hpp"
#include "span_set.hpp"
#include "text.hpp"

struct SpansOptions {
    std::vector<std::string> files;  // none, or -: standard input
    ZemTime gap = ZemTimeSecs(1800);
    Zone zone;
    std::optional<Zone> assumed;
    std::optional<bool> chart;  // by default on a terminal
    bool overlap = false;
    bool json = false;
};

// Returns the exit status.
int RunSpans(const SpansOptions& options);

// One input and what was active in it.
struct Source {
    explicit Source(std::string name_, ZemTime gap) : name(std::move(name_)), spans(gap) {}

    std::string name;
    SpanSet spans;
};

// What the report shows: all spans, merged and at least one, and the times of overlap.
struct Activity {
    std::vector<const Source*> sources;
    SpanSet spans;
    SpanSet overlaps;
    const Histogram* histogram;  // null: no picture
};

void ReportAsText(const Activity& activity, const SpansOptions& options);
void ReportAsJson(const Activity& activity, const SpansOptions& options);

#endif
