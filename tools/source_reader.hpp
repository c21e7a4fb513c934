// Reads whole files of timestamped lines, large ones in parts at once.

#ifndef ZEMTIME_TOOLS_SOURCE_READER_HPP
#define ZEMTIME_TOOLS_SOURCE_READER_HPP

#include <optional>
#include <string>

#include "histogram.hpp"
#include "span_set.hpp"
#include "text.hpp"
#include "unparsed.hpp"

class SourceReader {
  public:
    // Counts all events in `histogram`.
    SourceReader(ZemTime gap, const std::optional<Zone>& assumed, Histogram& histogram)
        : gap_(gap), assumed_(assumed), histogram_(histogram)
    {}

    // Adds the events of a file (-: standard input) to `spans`; false, with a message, when it
    // cannot be read to its end.
    bool Read(const std::string& file, SpanSet& spans);

    // Says how many lines had no timestamp beyond those shown.
    void ReportRest() const
    {
        unparsed_.ShowRest();
    }

  private:
    int ReadParts(const std::string& file, int descriptor, SpanSet& spans);

    ZemTime gap_;
    std::optional<Zone> assumed_;
    Histogram& histogram_;
    UnparsedReport unparsed_;
};

#endif
