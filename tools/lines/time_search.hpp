// Where in an ordered file a time begins, found without reading what is before it.

#ifndef ZEMTIME_TOOLS_TIME_SEARCH_HPP
#define ZEMTIME_TOOLS_TIME_SEARCH_HPP

#include <sys/types.h>

#include <vector>

#include "tools/forms/time_reader.hpp"

// So much earlier than a line before it may a line be in a file that counts as ordered. An hour: in
// local time the clock is put back, servers write when a request ends what time it began, and
// processes write at once.
constexpr ZemTime kDisorder = ZemTime{3600} * 1000000000;

class TimeSearch {
  public:
    // Samples the lines that begin in [begin, end) of a file.
    TimeSearch(int descriptor, off_t begin, off_t end, const TimeLayout& layout,
               const TimeOptions& options);

    // Whether the samples are in order. Lines between them need not be: who reads the file sees
    // that only of the lines that are read.
    [[nodiscard]] bool IsOrdered() const;

    // Whether samples lack a year, which follows from all lines before them.
    [[nodiscard]] bool LacksYears() const
    {
        return times_.Years().any;
    }

    // A place before which the file, if it is ordered, holds no time at `t` or later; less than a
    // sample before the first one that is. A line may not begin there.
    [[nodiscard]] off_t FindBefore(ZemTime t);

  private:
    struct Sample {
        off_t offset;
        ZemTime t;  // of the first event that begins there or later
    };

    std::optional<ZemTime> FirstTime(off_t begin, off_t end);

    int descriptor_;
    off_t begin_;
    off_t end_;
    TimeReader times_;
    std::vector<Sample> samples_;
};

#endif
