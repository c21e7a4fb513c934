#include "tools/spans/spans.hpp"

#include <unistd.h>

#include <cstdio>

#include "tools/spans/merge.hpp"
#include "tools/spans/source_reader.hpp"

namespace {

int ReadAndReport(const SpansOptions& options)
{
    bool chart = !options.json && options.chart.value_or(isatty(STDOUT_FILENO) == 1);
    Histogram histogram;
    Activity activity(options.gap.value_or(ZemTimeSecs(1800)));
    activity.histogram = chart ? &histogram : nullptr;
    SourceReader reader(activity.gap, options.times, options.jobs, histogram,
                        options.explain ? &options.zone : nullptr);

    for (const std::string& file : options.files) {
        SpanSet spans(activity.gap);
        activity.unread += reader.Read(file, spans) ? 0U : 1U;
        if (options.overlap) {
            spans.Merge();
            activity.sources.emplace_back(file, spans);
        }
        activity.spans.AddAll(std::move(spans));
    }
    reader.ReportRest();
    activity.spans.Merge();
    activity.unparsed = reader.CountUnparsed();
    if (activity.spans.Size() == 0) {
        if (activity.unread == options.files.size()) {
            return 1;
        }
        std::fputs(
            "zemtime: no line has a time that can be read (see --explain, --input and --key)\n",
            stderr);
    }
    if (options.explain) {
        return activity.spans.Size() != 0 && activity.unread == 0 ? 0 : 1;
    }
    return Report(activity, options);
}

}  // namespace

int Report(const Activity& activity, const SpansOptions& options)
{
    options.json ? ReportAsJson(activity, options) : ReportAsText(activity, options);
    return activity.spans.Size() != 0 && activity.unread == 0 ? 0 : 1;
}

int RunSpans(const SpansOptions& options)
{
    return options.merge ? RunMerge(options) : ReadAndReport(options);
}
