// zemtime spans --merge: the spans of several runs as if one had read everything.

#ifndef ZEMTIME_TOOLS_MERGE_HPP
#define ZEMTIME_TOOLS_MERGE_HPP

#include "tools/spans/spans.hpp"

// Returns the exit status.
int RunMerge(const SpansOptions& options);

#endif
