#include "tools/spans/merge.hpp"

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>

#include "tools/common/quote.hpp"
#include "tools/common/unreadable.hpp"
#include "tools/spans/printed_spans.hpp"

namespace {

// What a file holds cannot be merged.
class WrongFile : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Lines of a stream, however long, without an end at a NUL.
class Lines {
  public:
    explicit Lines(const std::string& file)
        : isInput_(file == "-"), stream_(isInput_ ? stdin : std::fopen(file.c_str(), "re"))
    {
        if (stream_ == nullptr) {
            throw WrongFile(std::strerror(errno));
        }
    }

    ~Lines()
    {
        std::free(line_);
        if (!isInput_) {
            std::fclose(stream_);
        }
    }

    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    bool Next(std::string_view& line)
    {
        ssize_t length = getline(&line_, &capacity_, stream_);
        if (length < 0 && std::feof(stream_) == 0) {
            throw WrongFile(std::strerror(errno));
        }
        line = {line_, length < 0 ? 0 : static_cast<size_t>(length)};
        line.remove_suffix(!line.empty() && line.back() == '\n' ? 1 : 0);
        return length >= 0;
    }

  private:
    bool isInput_;
    FILE* stream_;
    char* line_ = nullptr;
    size_t capacity_ = 0;
};

// What the files hold, and which of them each run came from.
struct Merged {
    PrintedSpans printed;
    std::vector<std::string> fileOfRun;
};

void Read(const std::string& file, Merged& merged)
{
    ZemUint64 number = 0;
    try {
        Lines lines(file);
        std::string_view line;
        while (lines.Next(line)) {
            number += 1;
            std::string unreadable =
                number == 1 ? DescribeUnreadable(file, line, "spans --merge") : "";
            if (!unreadable.empty()) {
                throw WrongFile(unreadable);
            }
            merged.printed.AddLine(line);
        }
    } catch (const WrongJson& wrong) {
        throw WrongFile(Printable(file) + ':' + std::to_string(number) + ": " +
                        Printable(wrong.what()));
    } catch (const WrongFile& wrong) {
        throw WrongFile(Printable(file) + ": " + wrong.what());
    }
    if (merged.printed.IsInsideRun() || merged.printed.runs == merged.fileOfRun.size()) {
        throw WrongFile(Printable(file) +
                        ": no summary at its end: cut off, or not printed by zemtime spans --json");
    }
    merged.fileOfRun.resize(merged.printed.runs, file);
}

// The gap that was asked for, or the least that can be had.
ZemTime ChooseGap(const SpansOptions& options, const PrintedSpans& printed)
{
    if (options.gap && *options.gap < printed.largestGap) {
        throw WrongFile("--gap " + PrintExactDuration(*options.gap) + " is below the " +
                        PrintExactDuration(printed.largestGap) +
                        " of the spans, which cannot be taken apart: print them anew with the "
                        "smaller one");
    }
    return options.gap.value_or(printed.largestGap);
}

// The files of all runs. Where several runs have a file of one name, each is named behind the file
// that it was read from.
std::deque<Source> SourcesOf(const Merged& merged, ZemTime gap)
{
    std::map<std::string, size_t> firstRun;
    std::set<std::string> several;
    for (const PrintedSpans::Source& source : merged.printed.sources) {
        if (firstRun.emplace(source.name, source.run).first->second != source.run) {
            several.insert(source.name);
        }
    }
    std::deque<Source> sources;
    for (const PrintedSpans::Source& source : merged.printed.sources) {
        SpanSet spans(gap);
        for (const ZemTimeRange& range : source.active) {
            spans.AddSpan(range, 1);
        }
        spans.Merge();
        bool isUnique = several.count(source.name) == 0;
        sources.emplace_back(
            isUnique ? source.name : merged.fileOfRun[source.run] + ':' + source.name, spans);
    }
    return sources;
}

int Merge(const SpansOptions& options)
{
    Merged merged;
    for (const std::string& file : options.files) {
        Read(file, merged);
    }
    const PrintedSpans& printed = merged.printed;
    if (options.overlap && !printed.allHaveSources) {
        throw WrongFile("--overlap wants spans that were all printed with --overlap");
    }
    Activity activity(ChooseGap(options, printed));
    if (options.overlap) {
        activity.sources = SourcesOf(merged, activity.gap);
    }
    for (const PrintedSpans::Span& span : printed.spans) {
        activity.spans.AddSpan(span.range, span.events);
    }
    activity.spans.Merge();
    activity.unparsed = printed.unparsed;
    activity.unread = printed.unread;
    if (printed.unread != 0) {
        std::fprintf(stderr, "zemtime: %" PRIu64 " files could not be read where they were\n",
                     printed.unread);
    }
    if (activity.spans.Size() == 0) {
        std::fputs("zemtime: no span in what was merged\n", stderr);
    }
    return Report(activity, options);
}

}  // namespace

int RunMerge(const SpansOptions& options)
{
    try {
        return Merge(options);
    } catch (const WrongFile& wrong) {
        std::fprintf(stderr, "zemtime: %s\n", wrong.what());
        return 1;
    }
}
