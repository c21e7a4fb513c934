#include "tools/spans/source_reader.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <deque>
#include <functional>
#include <future>
#include <limits>
#include <new>
#include <string_view>
#include <thread>
#include <vector>

#include "tools/common/line_reader.hpp"
#include "tools/common/quote.hpp"
#include "tools/common/terminal.hpp"
#include "tools/common/unreadable.hpp"
#include "tools/forms/explain.hpp"
#include "tools/forms/time_reader.hpp"

namespace {

// Less than this is not worth a thread.
constexpr off_t kPartAtLeast = off_t{16} << 20;

// What a part is of: the whole of an input that has no length, or [begin, end) of a file whose
// first line begins at `first`.
struct Extent {
    bool isFile = false;
    off_t first = 0;
    off_t begin = 0;
    off_t end = 0;
};

LineReader ReaderOf(int descriptor, const Extent& extent)
{
    return extent.isFile ? LineReader(descriptor, extent.first, extent.begin, extent.end)
                         : LineReader(descriptor);
}

// A part of a file, and what was read from it.
struct Part {
    Part(int descriptor, const Extent& extent_, ZemTime gap)
        : extent(extent_), reader(ReaderOf(descriptor, extent)), spans(gap)
    {}

    Extent extent;
    LineReader reader;
    int yearsBehind = 0;  // what is known of the years when it is read
    SpanSet spans;
    Histogram histogram;
    ZemUint64 lines = 0;
    UnparsedLines unparsed;
    YearSteps years;
    TimeCounts counts;
    std::vector<TimeExample> examples;
};

// What all parts of an input have in common.
struct Input {
    const std::string& file;
    int descriptor;
    const TimeOptions& options;
    bool isExplained;
    TimeLayout layout;
};

void ReadPart(Part& part, const Input& input, const std::function<void()>& update)
{
    constexpr ZemUint64 kLinesBetweenUpdates = 65536;

    TimeReader times(input.layout, input.options, part.yearsBehind);
    std::string_view line;
    while (part.reader.Next(line)) {
        if (++part.lines % kLinesBetweenUpdates == 0) {
            update();
        }
        ZemUint64 withoutZone = times.Counts().withoutZone;
        std::optional<ZemTime> t = times.Read(line);
        if (t) {
            part.spans.AddEvent(*t);
            part.histogram.AddEvents(*t, 1);
            if (input.isExplained) {
                AddExample(part.examples, *t, line);
            }
        } else if (!line.empty() && times.Counts().withoutZone == withoutZone) {
            part.unparsed.Add(part.lines, line);
        }
    }
    part.years = times.Years();
    part.counts = times.Counts();
    part.spans.Merge();
}

// How many parts a regular file of `length` bytes is read in.
off_t CountParts(off_t length, unsigned jobs)
{
    off_t count = jobs != 0
                      ? off_t{jobs}
                      : std::min<off_t>(length / kPartAtLeast, std::thread::hardware_concurrency());
    return std::min(count, length);
}

// Parts alike in size, or one part for an input that has no length.
void Split(int descriptor, unsigned jobs, ZemTime gap, std::deque<Part>& parts)
{
    struct stat status;
    off_t first = lseek(descriptor, 0, SEEK_CUR);
    bool isFile = first >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    off_t length = isFile ? std::max<off_t>(status.st_size - first, 0) : 0;
    off_t count = std::max<off_t>(CountParts(length, jobs), 1);
    for (off_t i = 0; i < count; ++i) {
        // The last part goes on to where the file ends by then.
        off_t begin = first + length / count * i;
        off_t end = i + 1 < count ? begin + length / count : std::numeric_limits<off_t>::max();
        parts.emplace_back(descriptor, Extent{isFile, first, begin, end}, gap);
    }
}

// Reads all parts, at once where threads can be started.
void ReadAtOnce(const Input& input, const std::vector<Part*>& parts)
{
    Progress progress(input.file, input.descriptor);
    std::vector<std::future<void>> others;
    for (size_t i = 1; i < parts.size(); ++i) {
        // Where no thread can be started, get() reads the part on this one.
        others.push_back(std::async(std::launch::async | std::launch::deferred, ReadPart,
                                    std::ref(*parts[i]), std::cref(input), [] {}));
    }
    // The first part stands for all: they are alike in size.
    ReadPart(*parts[0], input,
             [&] { progress.Update(parts[0]->reader.BytesRead() * parts.size()); });
    for (std::future<void>& other : others) {
        other.get();
    }
    progress.Clear();
}

// Reads all parts, and those again whose years turn out to be others by what stands around them.
void ReadWithYears(const Input& input, ZemTime gap, std::deque<Part>& parts)
{
    std::vector<Part*> now;
    now.reserve(parts.size());
    for (Part& part : parts) {
        now.push_back(&part);
    }
    ReadAtOnce(input, now);

    std::vector<YearSteps> years;
    years.reserve(parts.size());
    for (const Part& part : parts) {
        years.push_back(part.years);
    }
    std::vector<int> behind = YearsBehind(years, input.layout, input.options);
    now.clear();
    for (size_t i = 0; i < parts.size(); ++i) {
        if (behind[i] != 0) {
            parts[i] = Part(input.descriptor, parts[i].extent, gap);
            parts[i].yearsBehind = behind[i];
            now.push_back(&parts[i]);
        }
    }
    if (!now.empty()) {
        ReadAtOnce(input, now);
    }
}

}  // namespace

// Returns what went wrong, or nothing.
std::string SourceReader::ReadParts(const std::string& file, int descriptor, SpanSet& spans)
{
    Input input{file, descriptor, options_, explainIn_ != nullptr, {}};
    std::deque<Part> parts;
    try {
        Split(descriptor, jobs_, gap_, parts);
        std::string_view beginning = parts[0].reader.Beginning(kTimeSample);
        std::string unreadable = DescribeUnreadable(file, beginning, "spans");
        if (!unreadable.empty()) {
            return unreadable;
        }
        input.layout = FindTimeLayout(descriptor, beginning, options_);
        ReadWithYears(input, gap_, parts);
    } catch (const std::bad_alloc&) {
        // Several parts, and what the C library sets aside for threads, take more memory than one.
        // Reading them has not moved the file's offset; one alone cannot be read again.
        if (parts.size() == 1 && parts[0].reader.BytesRead() != 0) {
            throw;
        }
        parts.clear();
        Split(descriptor, 1, gap_, parts);
        std::string_view beginning = parts[0].reader.Beginning(kTimeSample);
        input.layout = FindTimeLayout(descriptor, beginning, options_);
        ReadWithYears(input, gap_, parts);
    }

    ZemUint64 lines = 0;
    int error = 0;
    TimeCounts counts;
    YearSteps years;
    Explanation explanation{explainIn_ != nullptr ? *explainIn_ : Zone{}};
    for (Part& part : parts) {
        spans.AddAll(std::move(part.spans));
        histogram_.AddAll(part.histogram);
        unparsed_.Add(part.unparsed, file, lines);
        lines += part.lines;
        counts.Add(part.counts);
        years.Append(part.years);
        for (const TimeExample& example : part.examples) {
            AddExample(explanation.examples, example.t, example.line);
        }
        error = error != 0 ? error : part.reader.Error();
    }
    withoutZone_ += counts.withoutZone;
    ReportCounts(file, counts, options_);
    if (explainIn_ != nullptr) {
        explanation.lines = lines;
        Explain(file, input.layout, options_, counts, years, explanation);
    }
    if (parts[0].extent.isFile) {
        // As if it had been read in one: standard input may be given twice, or belong to others.
        lseek(descriptor, 0, SEEK_END);
    }
    return error != 0 ? std::strerror(error) : "";
}

bool SourceReader::Read(const std::string& file, SpanSet& spans)
{
    int descriptor = file == "-" ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC);
    std::string problem =
        descriptor < 0 ? std::strerror(errno) : ReadParts(file, descriptor, spans);
    if (!problem.empty()) {
        std::fprintf(stderr, "zemtime: %s: %s\n", Printable(file).c_str(), problem.c_str());
    }
    if (descriptor > STDERR_FILENO) {
        close(descriptor);
    }
    return problem.empty();
}
