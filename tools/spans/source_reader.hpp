// Reads whole files of timestamped lines, large ones in parts at once.

#ifndef ZEMTIME_TOOLS_SOURCE_READER_HPP
#define ZEMTIME_TOOLS_SOURCE_READER_HPP

#include <optional>
#include <string>

#include "tools/common/unparsed.hpp"
#include "tools/forms/time_reader.hpp"
#include "tools/spans/histogram.hpp"
#include "tools/spans/span_set.hpp"

class SourceReader {
  public:
    // Counts all events in `histogram`. `jobs`: how many parts a regular file is read in at once,
    // or 0: a large one in one for every processor. `explainIn`: prints how each file was
    // read, with times of this zone; null: does not.
    SourceReader(ZemTime gap, const TimeOptions& options, unsigned jobs, Histogram& histogram,
                 const Zone* explainIn)
        : gap_(gap), options_(options), jobs_(jobs), histogram_(histogram), explainIn_(explainIn)
    {}

    // Adds the events of a file (-: standard input) to `spans`, which are then to be merged; false,
    // with a message, when it cannot be read to its end.
    bool Read(const std::string& file, SpanSet& spans);

    // Says how many lines had no timestamp beyond those shown.
    void ReportRest() const
    {
        unparsed_.ShowRest();
    }

    [[nodiscard]] ZemUint64 CountUnparsed() const
    {
        return unparsed_.Count() + withoutZone_;
    }

  private:
    std::string ReadParts(const std::string& file, int descriptor, SpanSet& spans);

    ZemTime gap_;
    const TimeOptions& options_;
    unsigned jobs_;
    Histogram& histogram_;
    const Zone* explainIn_;
    UnparsedReport unparsed_;
    ZemUint64 withoutZone_ = 0;  // lines whose times are not read for their zones
};

#endif
