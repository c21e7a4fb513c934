#include "spans.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <deque>

#include "line_reader.hpp"
#include "timestamp.hpp"
#include "unparsed.hpp"

namespace {

// One line on standard error that says how far the reading is, when that is a terminal and the
// work takes long.
class Progress {
  public:
    Progress() : onTerminal_(isatty(STDERR_FILENO) == 1 && ZemTimeInitialize() != 0)
    {
        due_ = ZemTimeGetCurrentMonotonicTime() + ZemTimeSecs(1);
    }

    void Update(const Source& source, ZemUint64 lines, ZemUint64 bytes, ZemUint64 size)
    {
        if (!onTerminal_ || ZemTimeGetCurrentMonotonicTime() < due_) {
            return;
        }
        due_ = ZemTimeGetCurrentMonotonicTime() + ZemTimeMsecs(200);
        std::fprintf(stderr, "\r\033[K%.40s: %" PRIu64 " lines", source.name.c_str(), lines);
        if (size != 0 && bytes <= size) {
            std::fprintf(stderr, ", %.0f %%",
                         100 * static_cast<double>(bytes) / static_cast<double>(size));
        }
        shown_ = true;
    }

    void Clear()
    {
        if (shown_) {
            std::fputs("\r\033[K", stderr);
            shown_ = false;
        }
    }

  private:
    bool onTerminal_;
    bool shown_ = false;
    ZemTime due_;
};

class SourceReader {
  public:
    explicit SourceReader(const SpansOptions& options, Histogram* histogram)
        : options_(options), histogram_(histogram)
    {}

    // Reads all lines of a file; false, with a message, when that fails.
    bool ReadFile(Source& source);

    void ReportRest() const
    {
        unparsed_.ReportRest();
    }

  private:
    bool ReadLines(Source& source, int descriptor);

    const SpansOptions& options_;
    Histogram* histogram_;
    Unparsed unparsed_;
    Progress progress_;
};

ZemUint64 SizeOfFile(int descriptor)
{
    struct stat status;
    bool known = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    return known ? static_cast<ZemUint64>(status.st_size) : 0;
}

bool SourceReader::ReadLines(Source& source, int descriptor)
{
    constexpr ZemUint64 kLinesBetweenUpdates = 65536;

    LineReader reader(descriptor);
    ZemUint64 size = SizeOfFile(descriptor);
    ZemUint64 lines = 0;
    std::string_view line;
    while (reader.Next(line)) {
        if (++lines % kLinesBetweenUpdates == 0) {
            progress_.Update(source, lines, reader.BytesRead(), size);
        }
        std::optional<ZemTime> t = ReadTimestamp(line, options_.assumed);
        if (t) {
            source.spans.AddEvent(*t);
            if (histogram_ != nullptr) {
                histogram_->AddEvent(*t);
            }
        } else if (!line.empty()) {
            progress_.Clear();
            unparsed_.Add(source.name, lines, line);
        }
    }
    progress_.Clear();
    errno = reader.Error();
    return errno == 0;
}

bool SourceReader::ReadFile(Source& source)
{
    int descriptor =
        source.name == "-" ? STDIN_FILENO : open(source.name.c_str(), O_RDONLY | O_CLOEXEC);
    bool isRead = descriptor >= 0 && ReadLines(source, descriptor);
    if (!isRead) {
        std::fprintf(stderr, "zemtime: %s: %s\n", source.name.c_str(), std::strerror(errno));
    }
    if (descriptor > STDERR_FILENO) {
        close(descriptor);
    }
    return isRead;
}

}  // namespace

int RunSpans(const SpansOptions& options)
{
    bool chart = !options.json && options.chart.value_or(isatty(STDOUT_FILENO) == 1);
    Histogram histogram;
    SourceReader reader(options, chart ? &histogram : nullptr);

    std::deque<Source> sources;
    Activity activity{{}, SpanSet(options.gap), SpanSet(1), chart ? &histogram : nullptr};
    std::vector<const SpanSet*> sets;
    bool allRead = true;
    const std::vector<std::string> standardInput = {"-"};
    for (const std::string& file : options.files.empty() ? standardInput : options.files) {
        Source& source = sources.emplace_back(file, options.gap);
        allRead = reader.ReadFile(source) && allRead;
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
