// Lines that were to be read as timestamps and are none: the first few are shown, all are counted.

#ifndef ZEMTIME_TOOLS_UNPARSED_HPP
#define ZEMTIME_TOOLS_UNPARSED_HPP

#include <string>
#include <string_view>

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

class Unparsed {
  public:
    void Add(const std::string& file, ZemUint64 lineNumber, std::string_view line);

    // Says how many lines there were beyond those shown.
    void ReportRest() const;

  private:
    ZemUint64 count_ = 0;
};

#endif
