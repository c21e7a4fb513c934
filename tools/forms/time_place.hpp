// Finding a time in a line where a layout says that it stands.

#ifndef ZEMTIME_TOOLS_TIME_PLACE_HPP
#define ZEMTIME_TOOLS_TIME_PLACE_HPP

#include <string>
#include <string_view>

#include "tools/forms/time_reader.hpp"

// Reads the time that `line` has at that place, and where it begins; false when there is none.
bool ReadPlace(const TimePlace& place, std::string_view line, Moment& m, size_t& at);

// Whether a time that `line` has at that place is its own, whatever stands before it. Otherwise the
// leftmost is.
bool IsOwn(const TimePlace& place, std::string_view line);

// Whether colour codes stand where times are looked for.
bool HasColour(std::string_view line);

// The beginning of the line without them.
std::string WithoutColour(std::string_view line);

#endif
