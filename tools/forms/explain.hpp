// What is said of how an input was read.

#ifndef ZEMTIME_TOOLS_EXPLAIN_HPP
#define ZEMTIME_TOOLS_EXPLAIN_HPP

#include <string>
#include <string_view>
#include <vector>

#include "tools/forms/time_reader.hpp"

// A line and the instant that it was read as.
struct TimeExample {
    ZemTime t;
    std::string line;  // its beginning
};

// Keeps the first few.
void AddExample(std::vector<TimeExample>& examples, ZemTime t, std::string_view line);

// Says on standard error how many times lack a zone, occur twice or not at all, if there are any.
void ReportCounts(const std::string& file, const TimeCounts& counts, const TimeOptions& options);

// What an explanation says beside the layout.
struct Explanation {
    Zone zone;  // of the times printed
    ZemUint64 lines = 0;
    std::vector<TimeExample> examples = {};
};

// Prints which forms `file` has, where, with which years and zone, and the examples. `years`: of
// the whole file.
void Explain(const std::string& file, const TimeLayout& layout, const TimeOptions& options,
             const TimeCounts& counts, const YearSteps& years, const Explanation& explanation);

#endif
