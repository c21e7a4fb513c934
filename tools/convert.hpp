// zemtime convert and zemtime now: instants in every form.

#ifndef ZEMTIME_TOOLS_CONVERT_HPP
#define ZEMTIME_TOOLS_CONVERT_HPP

#include <string>
#include <vector>

struct ConvertOptions {
    std::vector<std::string> texts;  // none: one a line on standard input
    std::string form;                // empty: all
};

// The names of the forms.
std::vector<std::string> FormNames();

// Both return the exit status.
int RunConvert(const ConvertOptions& options);
int RunNow();

#endif
