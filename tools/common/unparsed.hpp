// Lines that were to be read as timestamps and are none: all are counted, the first few shown.

#ifndef ZEMTIME_TOOLS_UNPARSED_HPP
#define ZEMTIME_TOOLS_UNPARSED_HPP

#include <string>
#include <string_view>
#include <vector>

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

// The lines of one input, or of a part of it.
class UnparsedLines {
  public:
    void Add(ZemUint64 number, std::string_view line);

  private:
    friend class UnparsedReport;

    struct Line {
        ZemUint64 number;
        std::string excerpt;
    };
    std::vector<Line> first_;
    ZemUint64 count_ = 0;
};

// Prints the lines of all inputs on standard error.
class UnparsedReport {
  public:
    // Of an input, or of a part of it that begins behind `linesBefore` other lines.
    void Add(const UnparsedLines& lines, const std::string& file, ZemUint64 linesBefore);

    // Says how many lines there were beyond those shown.
    void ShowRest() const;

    [[nodiscard]] ZemUint64 Count() const
    {
        return count_;
    }

  private:
    ZemUint64 shown_ = 0;
    ZemUint64 count_ = 0;
};

#endif
