#include "spans.hpp"

#include <unistd.h>

#include <cstdio>
#include <deque>

#include "source_reader.hpp"

int RunSpans(const SpansOptions& options)
{
    bool chart = !options.json && options.chart.value_or(isatty(STDOUT_FILENO) == 1);
    Histogram histogram;
    SourceReader reader(options.gap, options.assumed, histogram);

    std::deque<Source> sources;
    Activity activity{{}, SpanSet(options.gap), SpanSet(1), chart ? &histogram : nullptr};
    std::vector<const SpanSet*> sets;
    bool allRead = true;
    const std::vector<std::string> standardInput = {"-"};
    for (const std::string& file : options.files.empty() ? standardInput : options.files) {
        Source& source = sources.emplace_back(file, options.gap);
        allRead = reader.Read(file, source.spans) && allRead;
        source.spans.Merge();
        activity.spans.AddAll(source.spans);
        activity.sources.push_back(&source);
        sets.push_back(&source.spans);
    }
    reader.ReportRest();
    activity.spans.Merge();
    if (activity.spans.Size() == 0) {
        std::fprintf(stderr, "zemtime: no line begins with a timestamp%s\n",
                     options.assumed ? "" : " and its zone (see --assume)");
        return 1;
    }
    if (options.overlap) {
        FindOverlaps(sets, activity.overlaps);
    }
    options.json ? ReportAsJson(activity, options) : ReportAsText(activity, options);
    return allRead ? 0 : 1;
}
