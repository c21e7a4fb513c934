// zemtime spans: spans of activity in timestamped lines.

#ifndef ZEMTIME_TOOLS_SPANS_HPP
#define ZEMTIME_TOOLS_SPANS_HPP

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "tools/common/text.hpp"
#include "tools/forms/time_reader.hpp"
#include "tools/spans/histogram.hpp"
#include "tools/spans/range_set.hpp"
#include "tools/spans/span_set.hpp"

struct SpansOptions {
    std::vector<std::string> files;  // -: standard input
    bool merge = false;              // they hold what --json printed
    std::optional<ZemTime> gap;      // by default 30 min, or that of the spans to merge
    Zone zone = LocalZone();         // of what is printed
    TimeOptions times;
    std::optional<bool> chart;  // by default on a terminal
    bool overlap = false;
    bool json = false;
    bool explain = false;  // how the files are read, instead of the spans
    unsigned jobs = 0;  // parts that a file is read in at once; 0: by its size and the processors
};

// Returns the exit status.
int RunSpans(const SpansOptions& options);

// One input and when it was active.
struct Source {
    Source(std::string name_, const SpanSet& spans) : name(std::move(name_)), active(spans) {}

    std::string name;
    RangeSet active;
};

// What the report shows.
struct Activity {
    explicit Activity(ZemTime gap_) : gap(gap_), spans(gap_) {}

    ZemTime gap;
    std::deque<Source> sources;            // none unless the overlaps are to be shown
    SpanSet spans;                         // of all sources, merged
    ZemUint64 unparsed = 0;                // lines without a timestamp
    ZemUint64 unread = 0;                  // files that could not be read to their end
    const Histogram* histogram = nullptr;  // null: no picture
};

// Prints it, and returns the exit status.
int Report(const Activity& activity, const SpansOptions& options);

// Without spans there is no text, and a summary of nothing in JSON.
void ReportAsText(const Activity& activity, const SpansOptions& options);
void ReportAsJson(const Activity& activity, const SpansOptions& options);

#endif
