// zemtime convert and zemtime now: instants in every form.

#ifndef ZEMTIME_TOOLS_CONVERT_HPP
#define ZEMTIME_TOOLS_CONVERT_HPP

#include <optional>
#include <string>
#include <vector>

#include "tools/common/text.hpp"
#include "tools/forms/time_reader.hpp"

struct ConvertOptions {
    std::vector<std::string> texts;  // none: one a line on standard input
    std::string form;                // empty: all, or the zone
    std::optional<Zone> zone;        // to print RFC 3339 in
    TimeOptions times;               // for texts that lack a zone or a year
    bool json = false;
};

// The names of the forms.
std::vector<std::string> FormNames();

// Both return the exit status.
int RunConvert(const ConvertOptions& options);
int RunNow();

#endif
