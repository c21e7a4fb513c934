// What zemtime spans --json printed, here or on other machines, read back.

#ifndef ZEMTIME_TOOLS_PRINTED_SPANS_HPP
#define ZEMTIME_TOOLS_PRINTED_SPANS_HPP

#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "tools/common/json_object.hpp"
#include "tools/spans/span_set.hpp"

// The output of one or several runs, each of which ends with its summary.
class PrintedSpans {
  public:
    struct Span {
        ZemTimeRange range;
        ZemUint64 events;
    };

    // The ranges of one file of one run.
    struct Source {
        std::string name;
        size_t run;
        std::deque<ZemTimeRange> active;
    };

    // Reads the next line, an empty one too. Throws WrongJson where it is none that spans --json
    // prints, or where a summary does not agree with the lines before it: nothing is left out.
    void AddLine(std::string_view line);

    // Whether a run has begun and not come to its summary.
    [[nodiscard]] bool IsInsideRun() const
    {
        return insideRun_;
    }

    std::deque<Span> spans;      // of all runs, in the order of their lines
    std::deque<Source> sources;  // of the runs that had --overlap, in order
    size_t runs = 0;
    bool allHaveSources = true;
    ZemTime largestGap = 1;
    ZemUint64 unparsed = 0;  // lines without a timestamp
    ZemUint64 unread = 0;    // files that could not be read to their end

  private:
    void AddSpan(JsonObject& object);
    void AddActive(JsonObject& object);
    void AddSummary(JsonObject& object);

    bool insideRun_ = false;
    size_t spansBefore_ = 0;  // at the beginning of the run
    ZemUint64 eventsBefore_ = 0;
    ZemUint64 events_ = 0;
    ZemUint64 activeLines_ = 0;                 // of the run
    std::map<ZemUint64, size_t> sourcesOfRun_;  // number in the run: index in `sources`
};

#endif
