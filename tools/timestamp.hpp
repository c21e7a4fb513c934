// The timestamp at the beginning of a line.

#ifndef ZEMTIME_TOOLS_TIMESTAMP_HPP
#define ZEMTIME_TOOLS_TIMESTAMP_HPP

#include <optional>

#include "line_reader.hpp"
#include "text.hpp"

// The instant that `line` begins with, in any form that the library's parser takes; a bracket
// before it is passed over. A text without a zone is read in the zone `assumed`, if one is given.
// Nothing when the line begins otherwise, or with a time that a ZemTime does not hold.
std::optional<ZemTime> ReadTimestamp(Line line, const std::optional<Zone>& assumed);

#endif
