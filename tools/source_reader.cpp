#include "source_reader.hpp"

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
#include <thread>
#include <vector>

#include "line_reader.hpp"
#include "timestamp.hpp"

namespace {

// Less than this is not worth a thread.
constexpr off_t kPartAtLeast = off_t{16} << 20;

// One line on standard error that says how far the reading is, when that is a terminal and the
// work takes long.
class Progress {
  public:
    explicit Progress(const std::string& file)
        : file_(file), onTerminal_(isatty(STDERR_FILENO) == 1 && ZemTimeInitialize() != 0)
    {
        due_ = ZemTimeGetCurrentMonotonicTime() + ZemTimeSecs(1);
    }

    void Update(ZemUint64 bytes)
    {
        if (onTerminal_ && ZemTimeGetCurrentMonotonicTime() >= due_) {
            due_ = ZemTimeGetCurrentMonotonicTime() + ZemTimeMsecs(200);
            std::fprintf(stderr, "\r\033[K%.40s: %" PRIu64 " MiB", file_.c_str(), bytes >> 20);
            shown_ = true;
        }
    }

    void Clear() const
    {
        if (shown_) {
            std::fputs("\r\033[K", stderr);
        }
    }

  private:
    const std::string& file_;
    bool onTerminal_;
    bool shown_ = false;
    ZemTime due_;
};

// A part of a file, and what was read from it.
struct Part {
    Part(LineReader reader_, ZemTime gap) : reader(std::move(reader_)), spans(gap) {}

    LineReader reader;
    SpanSet spans;
    Histogram histogram;
    ZemUint64 lines = 0;
    UnparsedLines unparsed;
};

void ReadPart(Part& part, const std::optional<Zone>& assumed, const std::function<void()>& update)
{
    constexpr ZemUint64 kLinesBetweenUpdates = 65536;

    Line line;
    while (part.reader.Next(line)) {
        if (++part.lines % kLinesBetweenUpdates == 0) {
            update();
        }
        std::optional<ZemTime> t = ReadTimestamp(line, assumed);
        if (t) {
            part.spans.AddEvent(*t);
            part.histogram.AddEvents(*t, 1);
        } else if (line.size != 0) {
            part.unparsed.Add(part.lines, line.View());
        }
    }
    part.spans.Merge();
}

// The beginning of the first line after `offset`, or `end` when it is not near.
off_t FindLine(int descriptor, off_t offset, off_t end)
{
    char near[65536];
    ssize_t count = pread(descriptor, near, sizeof near, offset);
    const void* newline = count > 0 ? std::memchr(near, '\n', static_cast<size_t>(count)) : nullptr;
    return newline == nullptr ? end : offset + (static_cast<const char*>(newline) - near) + 1;
}

// A part for every processor when the file is large, else one for all of it.
void Split(int descriptor, ZemTime gap, std::deque<Part>& parts)
{
    struct stat status;
    off_t begin = lseek(descriptor, 0, SEEK_CUR);
    bool isFile = begin >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    off_t length = isFile ? status.st_size - begin : 0;
    off_t count = std::min<off_t>(length / kPartAtLeast, std::thread::hardware_concurrency());
    if (count < 2) {
        parts.emplace_back(LineReader(descriptor), gap);
        return;
    }
    off_t end = begin + length;
    for (off_t i = 1; i <= count; ++i) {
        off_t next =
            i == count ? end : FindLine(descriptor, end - length / count * (count - i), end);
        parts.emplace_back(LineReader(descriptor, begin, next), gap);
        begin = next;
    }
}

}  // namespace

// Returns the errno of a failure, or 0.
int SourceReader::ReadParts(const std::string& file, int descriptor, SpanSet& spans)
{
    std::deque<Part> parts;
    Split(descriptor, gap_, parts);

    Progress progress(file);
    std::vector<std::future<void>> others;
    for (size_t i = 1; i < parts.size(); ++i) {
        others.push_back(std::async(std::launch::async, ReadPart, std::ref(parts[i]),
                                    std::cref(assumed_), [] {}));
    }
    // The first part stands for all: they are alike in size.
    ReadPart(parts[0], assumed_,
             [&] { progress.Update(parts[0].reader.BytesRead() * parts.size()); });
    for (std::future<void>& other : others) {
        other.get();
    }
    progress.Clear();

    ZemUint64 lines = 0;
    int error = 0;
    for (const Part& part : parts) {
        spans.AddAll(part.spans);
        histogram_.AddAll(part.histogram);
        unparsed_.Add(part.unparsed, file, lines);
        lines += part.lines;
        error = error != 0 ? error : part.reader.Error();
    }
    return error;
}

bool SourceReader::Read(const std::string& file, SpanSet& spans)
{
    int descriptor = file == "-" ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC);
    int error = descriptor < 0 ? errno : ReadParts(file, descriptor, spans);
    if (error != 0) {
        std::fprintf(stderr, "zemtime: %s: %s\n", file.c_str(), std::strerror(error));
    }
    if (descriptor > STDERR_FILENO) {
        close(descriptor);
    }
    return error == 0;
}
