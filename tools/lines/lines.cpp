#include "tools/lines/lines.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>

#include "tools/common/line_reader.hpp"
#include "tools/common/quote.hpp"
#include "tools/common/terminal.hpp"
#include "tools/common/unreadable.hpp"
#include "tools/forms/explain.hpp"
#include "tools/lines/time_search.hpp"

namespace {

// Less than this is read faster than it is sampled.
constexpr off_t kSearchedAtLeast = off_t{1} << 20;
constexpr ZemUint64 kLinesBetweenUpdates = 65536;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr off_t kEnd = std::numeric_limits<off_t>::max();

// One input, and what is known of it before its lines are read.
struct Input {
    std::string file;
    int descriptor;
    bool isFile;  // it has a beginning and an end, and may be read anywhere
    off_t begin;
    off_t end;
    TimeLayout layout;
};

// What became of the lines that were read.
struct Outcome {
    ZemUint64 lines = 0;
    ZemUint64 events = 0;
    ZemUint64 printed = 0;  // events in the window
    bool isOrdered = true;
    bool isWhole = true;  // everything was read from the beginning on
    std::string problem;
};

void Write(std::string_view bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

// Prints what lies in the window. Lines before the first event belong to nothing, and are printed
// where the window has no beginning. Reading ends where event after event is of `stop` or later: a
// single one may be a slip of the clock.
void CopyWindow(const Input& input, LineReader& reader, TimeReader& times,
                const LinesOptions& options, ZemTime stop, Outcome& outcome)
{
    constexpr int kEnough = 100;
    Progress progress(input.file, input.descriptor);
    ZemTime latest = INT64_MIN;
    int behind = 0;
    bool isInside = !options.from;
    std::string_view line;
    std::string_view rest;
    while (reader.Next(line)) {
        if (std::optional<ZemTime> t = times.Read(line)) {
            isInside = (!options.from || *t >= *options.from) && (!options.to || *t < *options.to);
            outcome.events += 1;
            outcome.printed += isInside ? 1U : 0U;
            outcome.isOrdered &= *t >= AddSaturating(latest, -kDisorder);
            latest = std::max(latest, *t);
            behind = *t >= stop ? behind + 1 : 0;
            if (behind == kEnough) {
                return;
            }
        }
        bool isFirst = outcome.lines++ == 0;
        if (outcome.lines % kLinesBetweenUpdates == 0) {
            progress.Update(reader.BytesRead());
        }
        if (isInside) {
            progress.Clear();
            Write(isFirst && reader.HadByteOrderMark() ? kByteOrderMark : "");
            Write(reader.Raw(line));
            while (reader.NextOfLine(rest)) {
                Write(rest);
            }
        }
    }
    // A carriage return at the very end is no line.
    Write(isInside && outcome.lines == 0 && reader.HadByteOrderMark() ? kByteOrderMark : "");
    Write(isInside ? reader.Raw(line) : "");
}

// By how many years the times of a file are read too late that lack one.
int FindYearsBehind(const Input& input, const LinesOptions& options)
{
    Progress progress(input.file, input.descriptor);
    LineReader reader(input.descriptor, input.begin, input.begin, kEnd);
    TimeReader times(input.layout, options.times);
    std::string_view line;
    for (ZemUint64 lines = 1; reader.Next(line); ++lines) {
        times.Read(line);
        if (lines % kLinesBetweenUpdates == 0) {
            progress.Update(reader.BytesRead());
        }
    }
    return YearsBehind({times.Years()}, input.layout, options.times)[0];
}

void ReadFile(const Input& input, const LinesOptions& options, Outcome& outcome)
{
    TimeSearch search(input.descriptor, input.begin, input.end, input.layout, options.times);
    bool isSearched = !options.scan && input.end - input.begin >= kSearchedAtLeast &&
                      !search.LacksYears() && search.IsOrdered();
    off_t begin = isSearched && options.from ? search.FindBefore(*options.from) : input.begin;
    ZemTime stop = isSearched && options.to ? AddSaturating(*options.to, kDisorder) : INT64_MAX;
    int yearsBehind = search.LacksYears() ? FindYearsBehind(input, options) : 0;

    LineReader reader(input.descriptor, input.begin, begin, kEnd);
    TimeReader times(input.layout, options.times, yearsBehind);
    CopyWindow(input, reader, times, options, stop, outcome);
    ReportCounts(input.file, times.Counts(), options.times);
    struct stat status;
    if (reader.Error() != 0) {
        outcome.problem = std::strerror(reader.Error());
    } else if (fstat(input.descriptor, &status) == 0 && status.st_size < input.end) {
        outcome.problem = "became shorter while it was read";
    } else if (isSearched && (!outcome.isOrdered || times.Years().any)) {
        outcome.problem =
            "its lines are not in the order of time, so some may be missing: add --scan";
    }
    // What was taken for a file without such times was read as if it had but one year.
    if (!isSearched && yearsBehind == 0 && outcome.problem.empty() &&
        YearsBehind({times.Years()}, input.layout, options.times)[0] != 0) {
        outcome.problem =
            "some of its times name no year, and were taken for a later one: add --year";
    }
    outcome.isWhole = !isSearched;
}

// Prints the lines of one input.
Outcome ReadInput(const std::string& file, int descriptor, const LinesOptions& options)
{
    Outcome outcome;
    struct stat status;
    Input input{file, descriptor, false, lseek(descriptor, 0, SEEK_CUR), 0, {}};
    input.isFile = input.begin >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    input.end = input.isFile ? std::max(status.st_size, input.begin) : 0;

    LineReader first = input.isFile ? LineReader(descriptor, input.begin, input.begin, kEnd)
                                    : LineReader(descriptor);
    std::string_view beginning = first.Beginning(kTimeSample);
    outcome.problem = DescribeUnreadable(file, beginning, "lines");
    if (!outcome.problem.empty()) {
        return outcome;
    }
    input.layout = FindTimeLayout(descriptor, beginning, options.times);
    if (input.isFile) {
        ReadFile(input, options, outcome);
        lseek(descriptor, 0, SEEK_END);  // as if it had been read in one
        return outcome;
    }
    TimeReader times(input.layout, options.times);
    CopyWindow(input, first, times, options, INT64_MAX, outcome);
    ReportCounts(file, times.Counts(), options.times);
    outcome.problem = first.Error() != 0 ? std::strerror(first.Error()) : "";
    return outcome;
}

Outcome ReadNamed(const std::string& file, const LinesOptions& options)
{
    int descriptor = file == "-" ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC);
    Outcome outcome;
    if (descriptor < 0) {
        outcome.problem = std::strerror(errno);
        return outcome;
    }
    outcome = ReadInput(file, descriptor, options);
    if (descriptor > STDERR_FILENO) {
        close(descriptor);
    }
    return outcome;
}

}  // namespace

int RunLines(const LinesOptions& options)
{
    bool anyPrinted = false;
    bool allRead = true;
    for (const std::string& file : options.files) {
        Outcome outcome = ReadNamed(file, options);
        if (outcome.problem.empty() && outcome.isWhole && outcome.lines != 0 &&
            outcome.events == 0) {
            outcome.problem =
                "no line has a time that can be read: zemtime spans --explain says what was looked "
                "for";
        }
        if (!outcome.problem.empty()) {
            std::fflush(stdout);
            std::fprintf(stderr, "zemtime: %s: %s\n", Printable(file).c_str(),
                         outcome.problem.c_str());
        }
        anyPrinted = anyPrinted || outcome.printed != 0;
        allRead = allRead && outcome.problem.empty();
    }
    return !allRead ? 2 : anyPrinted ? 0 : 1;
}

std::optional<ZemTime> ParseInstant(const std::string& text, const Zone& zone, ZemTime now)
{
    ZemTime t = 0;
    if (text.empty()) {
        return std::nullopt;
    }
    if (text == "now") {
        return now;
    }
    if (text[0] == '+' || text[0] == '-') {
        std::optional<ZemTime> ahead = ParseDuration(text[0] == '+' ? text.substr(1) : text);
        return ahead && !__builtin_add_overflow(now, *ahead, &t) ? std::optional(t) : std::nullopt;
    }
    if (ZemTimeParse(&t, text.data(), text.size()) == text.size()) {
        return t != ZEM_TIME_INFINITE ? std::optional(t) : std::nullopt;
    }
    const std::string today = PrintInstant(now, zone).substr(0, 10) + 'T';
    for (const std::string& date : {std::string(), today}) {
        for (const char* rest : {"", ":00", "T00:00:00"}) {
            std::string whole = date + text + rest;
            ZemGregorianTime record;
            if (ZemGregorianTimeParseLocal(&record, whole.data(), whole.size()) == whole.size()) {
                t = InstantIn(zone, record);
                return t != ZEM_TIME_INFINITE ? std::optional(t) : std::nullopt;
            }
        }
    }
    return std::nullopt;
}
