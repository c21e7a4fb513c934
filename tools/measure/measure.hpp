// zemtime measure: how long a command takes.

#ifndef ZEMTIME_TOOLS_MEASURE_HPP
#define ZEMTIME_TOOLS_MEASURE_HPP

#include <string>
#include <vector>

struct MeasureOptions {
    std::vector<std::string> command;
    unsigned runs = 1;
};

// Returns the exit status: the first of the command's that is not 0, as shells show it.
int RunMeasure(const MeasureOptions& options);

#endif
