// Input that is compressed is told, not read.

#ifndef ZEMTIME_TOOLS_UNREADABLE_HPP
#define ZEMTIME_TOOLS_UNREADABLE_HPP

#include <string>
#include <string_view>

// Says that a file that begins so is compressed or in UTF-16, and how `command` of zemtime can read
// it; nothing when it is neither.
std::string DescribeUnreadable(const std::string& file, std::string_view beginning,
                               const std::string& command);

#endif
