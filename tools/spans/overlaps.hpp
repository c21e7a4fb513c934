// The times at which two or more sets of ranges were active at once.

#ifndef ZEMTIME_TOOLS_OVERLAPS_HPP
#define ZEMTIME_TOOLS_OVERLAPS_HPP

#include <functional>
#include <vector>

#include "tools/spans/range_set.hpp"

// Takes a range of time and the indices, in order, of the sets that were active at each of its
// instants and are two or more.
using OverlapRow = std::function<void(const ZemTimeRange&, const std::vector<size_t>&)>;

// Calls `row` for each such range, in order; where one ends and the next begins, other sets are
// active. An instant is a nanosecond, and a range holds both its ends, neither of them
// ZEM_TIME_INFINITE.
// Returns the length of time in which two or more were active; ZEM_TIME_INFINITE when it does not
// fit.
ZemTime FindOverlaps(const std::vector<const RangeSet*>& sets, const OverlapRow& row);

#endif
