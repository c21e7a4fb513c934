// What zemtime spans prints.

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/common/quote.hpp"
#include "tools/common/terminal.hpp"
#include "tools/spans/overlaps.hpp"
#include "tools/spans/spans.hpp"

namespace {

struct Summary {
    ZemUint64 events = 0;
    ZemTime covered = 0;
    ZemTime idle = 0;
    ZemTimeRange longestSpan;
    ZemTimeRange longestGap;  // invalid when there is none
};

// The idle time between a span and the next: the upper bound is where the next one begins.
ZemTimeRange GapAfter(const SpanSet& spans, size_t i)
{
    ZemTimeRange gap;
    return *ZemTimeRangeConstruct(&gap, ZemTimeRangeEnd(&spans.At(i + 1)),
                                  ZemTimeRangeBegin(&spans.At(i)));
}

Summary Summarise(const SpanSet& spans)
{
    Summary s;
    ZemTimeRangeConstruct(&s.longestSpan, 0, 0);
    ZemTimeRangeConstruct(&s.longestGap, 0, 1);
    if (spans.Size() != 0) {
        s.longestSpan = spans.At(0);
    }
    for (size_t i = 0; i < spans.Size(); ++i) {
        s.events += spans.EventsAt(i);
        s.covered = AddSaturating(s.covered, LengthOf(spans.At(i)));
        if (LengthOf(spans.At(i)) > LengthOf(s.longestSpan)) {
            s.longestSpan = spans.At(i);
        }
        if (i + 1 < spans.Size()) {
            ZemTimeRange gap = GapAfter(spans, i);
            s.idle = AddSaturating(s.idle, LengthOf(gap));
            if (LengthOf(gap) > LengthOf(s.longestGap)) {
                s.longestGap = gap;
            }
        }
    }
    return s;
}

std::vector<const RangeSet*> SetsOf(const Activity& activity)
{
    std::vector<const RangeSet*> sets;
    for (const Source& source : activity.sources) {
        sets.push_back(&source.active);
    }
    return sets;
}

std::vector<std::string> NamesOf(const Activity& activity, std::string (*print)(std::string_view))
{
    std::vector<std::string> names;
    for (const Source& source : activity.sources) {
        names.push_back(print(source.name));
    }
    return names;
}

// The characters of a duration, of which µ takes two bytes.
size_t WidthOf(const std::string& duration)
{
    return duration.size() - (duration.find("\xC2\xB5") != std::string::npos ? 1U : 0U);
}

// The first three columns.
std::string RowOf(std::string begin, std::string end, const std::string& length)
{
    constexpr size_t kInstant = 30;
    constexpr size_t kLength = 10;
    begin.resize(std::max(begin.size(), kInstant), ' ');
    end.resize(std::max(end.size(), kInstant), ' ');
    size_t used = WidthOf(length);
    return begin + "  " + end + "  " + std::string(kLength - std::min(used, kLength), ' ') + length;
}

// Begin, end and length, without the end of the line.
void PrintRange(const ZemTimeRange& range, const Zone& zone)
{
    std::fputs(RowOf(PrintInstant(ZemTimeRangeEnd(&range), zone),
                     PrintInstant(ZemTimeRangeBegin(&range), zone), PrintDuration(LengthOf(range)))
                   .c_str(),
               stdout);
}

// Returns the length of all overlaps.
ZemTime PrintOverlaps(const Activity& activity, const SpansOptions& options)
{
    std::vector<std::string> names = NamesOf(activity, Printable);
    std::printf("\n%s\n", Heading(RowOf("overlap begin", "end", "length") + "  files").c_str());
    auto printRow = [&](const ZemTimeRange& range, const std::vector<size_t>& active) {
        PrintRange(range, options.zone);
        for (size_t source : active) {
            std::printf("  %s", names[source].c_str());
        }
        std::puts("");
    };
    return FindOverlaps(SetsOf(activity), printRow);
}

void PrintSummary(const Activity& activity, const SpansOptions& options, ZemTime overlapping)
{
    Summary s = Summarise(activity.spans);
    std::printf("\nevents        %" PRIu64 "\n", s.events);
    std::printf("spans         %zu\n", activity.spans.Size());
    std::printf("covered       %s\n", PrintDuration(s.covered).c_str());
    std::printf("idle          %s\n", PrintDuration(s.idle).c_str());
    std::printf("longest span  %-10s  from %s\n", PrintDuration(LengthOf(s.longestSpan)).c_str(),
                PrintInstant(ZemTimeRangeEnd(&s.longestSpan), options.zone).c_str());
    if (ZemTimeRangeIsValid(&s.longestGap)) {
        std::printf("longest gap   %-10s  from %s\n", PrintDuration(LengthOf(s.longestGap)).c_str(),
                    PrintInstant(ZemTimeRangeEnd(&s.longestGap), options.zone).c_str());
    }
    if (options.overlap) {
        std::printf("overlapping   %s\n", PrintDuration(overlapping).c_str());
    }
}

// What COLUMNS says, or 0 when that is no count.
size_t ColumnsOfEnvironment()
{
    const char* text = std::getenv("COLUMNS");
    size_t columns = 0;
    if (text == nullptr) {
        return 0;
    }
    const char* end = text + std::strlen(text);
    auto number = std::from_chars(text, end, columns);
    return number.ec == std::errc() && number.ptr == end ? columns : 0;
}

size_t TerminalWidth()
{
    constexpr size_t kDefault = 80;
    constexpr size_t kLeast = 10;
    constexpr size_t kMost = 1000;

    struct winsize size = {};
    size_t width = kDefault;
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0) {
        width = size.ws_col;
    } else if (ColumnsOfEnvironment() != 0) {
        width = ColumnsOfEnvironment();
    }
    return std::clamp(width, kLeast, kMost);
}

void PrintChart(const Activity& activity, const SpansOptions& options)
{
    ZemTimeRange all;
    ZemTimeRangeUnion(&activity.spans.At(0), &activity.spans.At(activity.spans.Size() - 1), &all);
    size_t width = TerminalWidth();
    std::vector<ZemUint64> columns = activity.histogram->Columns(all, width);
    bool blocks = std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
    std::string begin = PrintInstant(ZemTimeRangeEnd(&all), options.zone);
    std::string end = PrintInstant(ZemTimeRangeBegin(&all), options.zone);
    size_t used = begin.size() + end.size();
    std::string between(width > used ? width - used : 1, ' ');

    std::printf("\nevents over time: a column is %s, the tallest has %" PRIu64 "\n",
                PrintDuration(LengthOf(all) / static_cast<ZemTime>(width)).c_str(),
                *std::max_element(columns.begin(), columns.end()));
    std::printf("%s\n%s%s%s\n", Coloured(DrawColumns(columns, blocks)).c_str(), begin.c_str(),
                between.c_str(), end.c_str());
}

// The bounds and the length of a range as members of an object, without braces.
void PrintRangeAsJson(const ZemTimeRange& range, const Zone& zone)
{
    ZemTime begin = ZemTimeRangeEnd(&range);
    ZemTime end = ZemTimeRangeBegin(&range);
    std::printf("\"begin\":\"%s\",\"end\":\"%s\",", PrintInstant(begin, zone).c_str(),
                PrintInstant(end, zone).c_str());
    std::printf("\"begin_ns\":%" PRId64 ",\"end_ns\":%" PRId64 ",\"length_ns\":%" PRId64, begin,
                end, LengthOf(range));
}

// Returns the length of all overlaps.
ZemTime PrintOverlapsAsJson(const Activity& activity, const SpansOptions& options)
{
    std::vector<std::string> names = NamesOf(activity, PrintJson);
    auto printRow = [&](const ZemTimeRange& range, const std::vector<size_t>& active) {
        std::printf("{\"type\":\"overlap\",");
        PrintRangeAsJson(range, options.zone);
        const char* separator = ",\"files\":[";
        for (size_t source : active) {
            std::printf("%s%s", separator, names[source].c_str());
            separator = ",";
        }
        std::puts("]}");
    };
    return FindOverlaps(SetsOf(activity), printRow);
}

// When each file was active, from which --merge finds the overlaps anew; the files that were are
// numbered. Returns how many lines.
size_t PrintActiveAsJson(const Activity& activity, const SpansOptions& options)
{
    size_t lines = 0;
    size_t number = 0;
    for (const Source& source : activity.sources) {
        std::string name = PrintJson(source.name);
        for (size_t i = 0; i < source.active.Size(); ++i) {
            std::printf("{\"type\":\"active\",\"file\":%s,\"source\":%zu,", name.c_str(), number);
            PrintRangeAsJson(source.active.At(i), options.zone);
            std::puts("}");
        }
        lines += source.active.Size();
        number += source.active.Size() != 0 ? 1U : 0U;
    }
    return lines;
}

void PrintSummaryAsJson(const Activity& activity, const SpansOptions& options, ZemTime overlapping,
                        size_t activeLines)
{
    Summary s = Summarise(activity.spans);
    std::printf("{\"type\":\"summary\",\"events\":%" PRIu64 ",\"spans\":%zu,", s.events,
                activity.spans.Size());
    std::printf("\"covered_ns\":%" PRId64 ",\"idle_ns\":%" PRId64 ",\"longest_span_ns\":%" PRId64
                ",\"longest_gap_ns\":%" PRId64,
                s.covered, s.idle, LengthOf(s.longestSpan), LengthOf(s.longestGap));
    if (options.overlap) {
        std::printf(",\"overlapping_ns\":%" PRId64 ",\"active\":%zu", overlapping, activeLines);
    }
    std::printf(",\"gap_ns\":%" PRId64 ",\"unparsed\":%" PRIu64 ",\"unread\":%" PRIu64 "}\n",
                activity.gap, activity.unparsed, activity.unread);
}

}  // namespace

void ReportAsText(const Activity& activity, const SpansOptions& options)
{
    if (activity.spans.Size() == 0) {
        return;
    }
    std::printf("%s\n", Heading(RowOf("begin", "end", "length") + "      events").c_str());
    for (size_t i = 0; i < activity.spans.Size(); ++i) {
        PrintRange(activity.spans.At(i), options.zone);
        std::printf("  %10" PRIu64 "\n", activity.spans.EventsAt(i));
    }
    ZemTime overlapping = options.overlap ? PrintOverlaps(activity, options) : 0;
    PrintSummary(activity, options, overlapping);
    if (activity.histogram != nullptr) {
        PrintChart(activity, options);
    }
}

void ReportAsJson(const Activity& activity, const SpansOptions& options)
{
    for (size_t i = 0; i < activity.spans.Size(); ++i) {
        std::printf("{\"type\":\"span\",");
        PrintRangeAsJson(activity.spans.At(i), options.zone);
        std::printf(",\"events\":%" PRIu64 "}\n", activity.spans.EventsAt(i));
    }
    ZemTime overlapping = options.overlap ? PrintOverlapsAsJson(activity, options) : 0;
    size_t activeLines = PrintActiveAsJson(activity, options);
    PrintSummaryAsJson(activity, options, overlapping, activeLines);
}
