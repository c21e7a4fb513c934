// What zemtime spans prints.

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "spans.hpp"

namespace {

struct Summary {
    ZemUint64 events = 0;
    ZemTime covered = 0;
    ZemTime idle = 0;
    ZemTime overlapping = 0;
    ZemTimeRange all;
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

Summary Summarise(const Activity& activity)
{
    const SpanSet& spans = activity.spans;
    Summary s;
    s.longestSpan = spans.At(0);
    ZemTimeRangeConstruct(&s.longestGap, 0, 1);
    ZemTimeRangeUnion(&spans.At(0), &spans.At(spans.Size() - 1), &s.all);
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
    for (size_t i = 0; i < activity.overlaps.Size(); ++i) {
        s.overlapping = AddSaturating(s.overlapping, LengthOf(activity.overlaps.At(i)));
    }
    return s;
}

std::vector<const Source*> ActiveIn(const Activity& activity, const ZemTimeRange& range)
{
    std::vector<const Source*> active;
    for (const Source* source : activity.sources) {
        if (IsActiveIn(source->spans, range)) {
            active.push_back(source);
        }
    }
    return active;
}

// The same padded to `width` characters, of which µ takes two bytes.
std::string PrintPadded(ZemTime t, size_t width)
{
    std::string text = PrintDuration(t);
    size_t used = text.size() - (text.find("\xC2\xB5") != std::string::npos ? 1 : 0);
    return std::string(width > used ? width - used : 0, ' ') + text;
}

// Begin, end and length, without the end of the line.
void PrintRange(const ZemTimeRange& range, const Zone& zone)
{
    std::printf("%-30s  %-30s  %s", PrintInstant(ZemTimeRangeEnd(&range), zone).c_str(),
                PrintInstant(ZemTimeRangeBegin(&range), zone).c_str(),
                PrintPadded(LengthOf(range), 10).c_str());
}

void PrintSummary(const Activity& activity, const SpansOptions& options)
{
    Summary s = Summarise(activity);
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
        std::printf("overlapping   %s\n", PrintDuration(s.overlapping).c_str());
    }
}

size_t TerminalWidth()
{
    constexpr size_t kDefault = 80;
    constexpr size_t kLeast = 10;
    constexpr size_t kMost = 1000;

    struct winsize size = {};
    const char* variable = std::getenv("COLUMNS");
    size_t columns = variable != nullptr ? std::strtoul(variable, nullptr, 10) : 0;
    size_t width = kDefault;
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0) {
        width = size.ws_col;
    } else if (columns != 0) {
        width = columns;
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

    std::printf("\n%s\n%s%s%s\n", DrawColumns(columns, blocks).c_str(), begin.c_str(),
                between.c_str(), end.c_str());
    std::printf("one column: %s, at most %" PRIu64 " events\n",
                PrintDuration(LengthOf(all) / static_cast<ZemTime>(width)).c_str(),
                *std::max_element(columns.begin(), columns.end()));
}

// A JSON string. Bytes beyond ASCII pass as they are.
std::string PrintJson(const std::string& text)
{
    std::string result = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
            result += c;
        } else if (static_cast<unsigned char>(c) < ' ') {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
            result += escape;
        } else {
            result += c;
        }
    }
    return result + '"';
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

void PrintSummaryAsJson(const Activity& activity, const SpansOptions& options)
{
    Summary s = Summarise(activity);
    std::printf("{\"type\":\"summary\",\"events\":%" PRIu64 ",\"spans\":%zu,", s.events,
                activity.spans.Size());
    std::printf("\"covered_ns\":%" PRId64 ",\"idle_ns\":%" PRId64 ",\"longest_span_ns\":%" PRId64
                ",\"longest_gap_ns\":%" PRId64,
                s.covered, s.idle, LengthOf(s.longestSpan), LengthOf(s.longestGap));
    if (options.overlap) {
        std::printf(",\"overlapping_ns\":%" PRId64, s.overlapping);
    }
    std::puts("}");
}

}  // namespace

void ReportAsText(const Activity& activity, const SpansOptions& options)
{
    std::printf("%-30s  %-30s  %10s  %10s\n", "begin", "end", "length", "events");
    for (size_t i = 0; i < activity.spans.Size(); ++i) {
        PrintRange(activity.spans.At(i), options.zone);
        std::printf("  %10" PRIu64 "\n", activity.spans.EventsAt(i));
    }
    if (options.overlap) {
        std::printf("\n%-30s  %-30s  %10s  %s\n", "overlap begin", "end", "length", "files");
    }
    for (size_t i = 0; i < activity.overlaps.Size(); ++i) {
        PrintRange(activity.overlaps.At(i), options.zone);
        for (const Source* source : ActiveIn(activity, activity.overlaps.At(i))) {
            std::printf("  %s", source->name.c_str());
        }
        std::puts("");
    }
    PrintSummary(activity, options);
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
    for (size_t i = 0; i < activity.overlaps.Size(); ++i) {
        std::printf("{\"type\":\"overlap\",");
        PrintRangeAsJson(activity.overlaps.At(i), options.zone);
        const char* separator = ",\"files\":[";
        for (const Source* source : ActiveIn(activity, activity.overlaps.At(i))) {
            std::printf("%s%s", separator, PrintJson(source->name).c_str());
            separator = ",";
        }
        std::puts("]}");
    }
    PrintSummaryAsJson(activity, options);
}
