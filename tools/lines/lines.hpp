// zemtime lines: the events of a window of time, with the lines that belong to them.

#ifndef ZEMTIME_TOOLS_LINES_HPP
#define ZEMTIME_TOOLS_LINES_HPP

#include <optional>
#include <string>
#include <vector>

#include "tools/forms/time_reader.hpp"

struct LinesOptions {
    std::vector<std::string> files;  // -: standard input
    std::optional<ZemTime> from;     // the first instant of the window
    std::optional<ZemTime> to;       // the first one behind it
    bool scan = false;               // no search: files are read whole
    TimeOptions times;
};

// Prints the lines whose times lie in the window, and behind each the lines without a time that
// follow it, byte for byte. Returns the exit status: 1 where there is none, 2 where a file could
// not be read.
int RunLines(const LinesOptions& options);

// The instant that `text` names: a timestamp; a date and a time, one of both, or a time without
// seconds, in `zone`; now; or a duration with a sign, counted from `now`.
std::optional<ZemTime> ParseInstant(const std::string& text, const Zone& zone, ZemTime now);

#endif
