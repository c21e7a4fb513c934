// The zemtime command: its subcommands and their options.

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <new>

#include "tools/common/options.hpp"
#include "tools/common/quote.hpp"
#include "tools/convert/convert.hpp"
#include "tools/lines/lines.hpp"
#include "tools/measure/measure.hpp"
#include "tools/spans/spans.hpp"

namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

using Words = std::vector<std::string>;

// A closed pipe ends the program quietly, even if its parent ignores the signal.
void EndOnClosedPipe()
{
    std::signal(SIGPIPE, SIG_DFL);
}

// Standard output may be a full disk.
int CheckOutput(int status)
{
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        std::perror("zemtime: standard output");
        return kFailed;
    }
    return status;
}

ZemTime ReadGap(const char* text)
{
    std::optional<ZemTime> gap = ParseDuration(text);
    return ValueOrThrow(gap && *gap > 0 ? gap : std::nullopt,
                        "a duration such as 90s, 1.5h or '1h 30m' (ns us ms s m h d w), "
                        "above 0 and below 292 years");
}

unsigned ReadCount(const char* text, unsigned most)
{
    std::optional<ZemUint64> count = ParseNumber(text, 10);
    bool fits = count && *count >= 1 && *count <= most;
    return static_cast<unsigned>(
        ValueOrThrow(fits ? count : std::nullopt, "a number from 1 to " + std::to_string(most)));
}

constexpr char kOffsets[] = "Z or +hh, +hhmm, +hh:mm, +hh:mm:ss (or with -), at most 23:59:59";

Zone ReadZone(const char* text)
{
    return ValueOrThrow(
        ParseZone(text),
        std::string("utc, local, a zone's name such as Europe/Berlin, ") + kOffsets);
}

Zone ReadOffset(const char* text)
{
    return {Zone::Kind::kFixed, ValueOrThrow(ParseOffset(text), kOffsets), nullptr};
}

// A row of the table of log forms.
const Form* ReadInputForm(const char* text)
{
    std::string names;
    for (const Form& form : FormTable()) {
        names += (names.empty() ? "one of " : ", ") + std::string(form.name);
    }
    const Form* form = FindForm(text);
    return ValueOrThrow(form != nullptr ? std::optional(form) : std::nullopt, names);
}

// The help of --input, with the names that the table has.
const char* HelpOfInput()
{
    static const std::string kHelp = [] {
        std::string help = "read times of this form alone (default: found out):";
        size_t column = 56;
        for (const Form& form : FormTable()) {
            std::string name(form.name);
            bool fits = column + 1 + name.size() <= 56;
            help += (fits ? ' ' : '\n') + name;
            column = fits ? column + 1 + name.size() : name.size();
        }
        return help;
    }();
    return kHelp.c_str();
}

// A year of which a ZemTime holds every instant.
int ReadYear(const char* text)
{
    std::optional<ZemUint64> year = ParseNumber(text, 10);
    bool fits = year && *year >= 1678 && *year <= 2261;
    return static_cast<int>(ValueOrThrow(fits ? year : std::nullopt, "a year from 1678 to 2261"));
}

// A form, or the zone of the text to print.
void ReadForm(const char* text, ConvertOptions& o)
{
    o.form.clear();
    o.zone.reset();
    std::string names;
    for (const std::string& name : FormNames()) {
        if (name == text) {
            o.form = name;
            return;
        }
        names += (names.empty() ? "one of " : ", ") + name;
    }
    o.zone = ValueOrThrow(ParseZone(text), names + ", or a zone such as Europe/Berlin");
}

std::string ReadKey(const char* text)
{
    if (*text == '\0') {
        throw UsageError("--key wants the name of a key, not ''");
    }
    return text;
}

Option AssumeOption(TimeOptions& times)
{
    return {"assume", '\0', "ZONE",
            "also read times without a zone, as of this one: utc,\n"
            "local, Europe/Berlin and its kind, or +01:00",
            [&times](const char* text) { times.assumed = ReadZone(text); }};
}

// How lines are read for their times.
std::vector<Option> OptionsOfTimes(TimeOptions& times)
{
    return {
        AssumeOption(times),
        {"year", '\0', "YEAR",
         "the year of the first time that has none; those after\n"
         "it follow (default: by the date of the file)",
         [&times](const char* text) { times.year = ReadYear(text); }},
        {"input", '\0', "FORM", HelpOfInput(),
         [&times](const char* text) { times.form = ReadInputForm(text); }},
        {"key", '\0', "NAME", "the key whose value is the time, in JSON and key=value",
         [&times](const char* text) { times.key = ReadKey(text); }},
    };
}

void CheckOptionsOfTimes(const TimeOptions& times)
{
    if (!times.key.empty() && times.form != nullptr && times.form->stand != Stand::kKey) {
        throw UsageError("--key goes with --input json or logfmt alone");
    }
}

Command SpansCommand(SpansOptions& o)
{
    Command spans;
    spans.name = "spans";
    spans.purpose = "group the timestamped lines of logs into spans of activity";
    spans.usage = " [OPTION]... [FILE]...";
    spans.description =
        "Groups lines that have a time, in any of the forms that logs have, into spans of\n"
        "activity. Reads standard input without a FILE, or for -.";
    spans.options = {
        {"gap", '\0', "DURATION",
         "events less than this apart share a span: 90s, 1.5h,\n"
         "'1h 30m'; units ns us ms s m h d w (default: 30m, with\n"
         "--merge the largest that spans were printed with)",
         [&o](const char* text) { o.gap = ReadGap(text); }},
        {"explain", '\0', nullptr, "show how the files are read, and not the spans",
         [&o](const char*) { o.explain = true; }},
        {"overlap", '\0', nullptr, "also show when two or more files were active at once",
         [&o](const char*) { o.overlap = true; }},
        {"merge", '\0', nullptr,
         "the FILEs hold what --json printed: show the spans as\n"
         "if one run had read everything",
         [&o](const char*) { o.merge = true; }},
        {"chart", '\0', nullptr, "draw the events over time (default: on a terminal)",
         [&o](const char*) { o.chart = true; }},
        {"no-chart", '\0', nullptr, "do not draw them", [&o](const char*) { o.chart = false; }},
        {"json", '\0', nullptr, "print one JSON object a line, without a chart",
         [&o](const char*) { o.json = true; }},
        {"local", '\0', nullptr, "show local times (default)",
         [&o](const char*) { o.zone = LocalZone(); }},
        {"utc", '\0', nullptr, "show times in UTC", [&o](const char*) { o.zone = Zone{}; }},
        {"zone", '\0', "ZONE", "show times in this zone, named as for --assume",
         [&o](const char* text) { o.zone = ReadZone(text); }},
        {"offset", '\0', "OFFSET", "show times at a fixed offset such as +01:00",
         [&o](const char* text) { o.zone = ReadOffset(text); }},
        {"jobs", 'j', "N",
         "read a file in this many parts at once, 1 to 1024\n"
         "(default: one for each processor if it is large)",
         [&o](const char* text) { o.jobs = ReadCount(text, 1024); }},
    };
    std::vector<Option> times = OptionsOfTimes(o.times);
    spans.options.insert(spans.options.begin() + 1, times.begin(), times.end());
    spans.example =
        "When were two services active at once, in logs that name no zone?\n"
        "  zemtime spans --assume utc --overlap web.log worker.log";
    spans.run = [&o](const Words& words) {
        if (o.json && o.chart.value_or(false)) {
            throw UsageError("--json prints no chart: leave out --json or --chart");
        }
        CheckOptionsOfTimes(o.times);
        bool readsTimes = o.times.assumed || o.times.year || o.times.form != nullptr ||
                          !o.times.key.empty() || o.explain || o.jobs != 0;
        if (o.merge && (o.chart.value_or(false) || readsTimes)) {
            throw UsageError(
                "--merge reads spans, not events: leave out --chart, --assume, --year, --input, "
                "--key, --explain and --jobs");
        }
        if (o.explain && (o.json || o.chart.value_or(false))) {
            throw UsageError("--explain shows no spans: leave out --json and --chart");
        }
        EndOnClosedPipe();
        o.files = words.empty() ? Words{"-"} : words;
        return RunSpans(o);
    };
    return spans;
}

// The instant that an option names, or nothing where it is not given.
std::optional<ZemTime> ReadInstant(const char* name, const std::optional<std::string>& text,
                                   const LinesOptions& o, ZemTime now)
{
    if (!text) {
        return std::nullopt;
    }
    Zone zone = o.times.assumed ? *o.times.assumed : LocalZone();
    std::optional<ZemTime> t = ParseInstant(*text, zone, now);
    if (!t) {
        throw UsageError(
            std::string(name) +
            " wants a time such as '2024-03-01 12:30', "
            "2024-03-01T12:30:45Z, 2024-03-01 or 12:30, now, or one like -1h from now, not '" +
            *text + "'");
    }
    return t;
}

Command LinesCommand(LinesOptions& o)
{
    struct Bounds {
        std::optional<std::string> from;
        std::optional<std::string> to;
    };
    auto bounds = std::make_shared<Bounds>();
    Command lines;
    lines.name = "lines";
    lines.purpose = "print the lines of logs in a window of time";
    lines.usage = " [OPTION]... [FILE]...";
    lines.description =
        "Prints the lines whose times lie in a window, with the lines without a time that\n"
        "follow them, as they stand. Large files in the order of time are searched, not\n"
        "read whole. Reads standard input without a FILE, or for -.";
    lines.options = {
        {"from", '\0', "TIME",
         "the first time of the window: '2024-03-01 12:30',\n"
         "2024-03-01T12:30:45Z, 2024-03-01, 12:30 (of today),\n"
         "now, or -1h (an hour ago)",
         [bounds](const char* text) { bounds->from = text; }},
        {"to", '\0', "TIME", "the first time behind the window",
         [bounds](const char* text) { bounds->to = text; }},
        {"scan", '\0', nullptr, "read files whole, in whatever order their lines are",
         [&o](const char*) { o.scan = true; }},
    };
    std::vector<Option> times = OptionsOfTimes(o.times);
    lines.options.insert(lines.options.end(), times.begin(), times.end());
    lines.example =
        "What happened in the last quarter of an hour?\n"
        "  zemtime lines --assume local --from -15m web.log";
    lines.run = [&o, bounds](const Words& words) {
        CheckOptionsOfTimes(o.times);
        ZemTime now = ZemTimeGetCurrentWallTime();
        o.from = ReadInstant("--from", bounds->from, o, now);
        o.to = ReadInstant("--to", bounds->to, o, now);
        if (o.from && o.to && *o.from >= *o.to) {
            throw UsageError("no time is in the window: --from is not before --to");
        }
        EndOnClosedPipe();
        o.files = words.empty() ? Words{"-"} : words;
        return RunLines(o);
    };
    return lines;
}

Command ConvertCommand(ConvertOptions& o)
{
    Command convert;
    convert.name = "convert";
    convert.purpose = "show instants and durations in other forms";
    convert.usage = " [OPTION]... [TEXT]...";
    convert.description =
        "Shows each TEXT, or each line of standard input without one, in every form. A\n"
        "TEXT is a time in any form that logs have, such as 2024-03-01T12:30:45+01:00,\n"
        "now, 10, 13, 16 or 19 digits for seconds, ms, us or ns since 1970, @ and the\n"
        "seconds or (with ns behind them) nanoseconds, ntp:0x and its digits, or a\n"
        "duration such as 1h30m: whatever this command prints.";
    convert.options = {
        {"to", '\0', "FORM",
         "print this form alone: rfc3339, text, utc, local,\n"
         "seconds, nanoseconds or ntp; of durations: duration\n"
         "or compact (default: all of them); or rfc3339 in\n"
         "this zone, such as Europe/Berlin",
         [&o](const char* text) { ReadForm(text, o); }},
        AssumeOption(o.times),
        {"year", '\0', "YEAR", "of times without one (default: the latest that can be)",
         [&o](const char* text) { o.times.year = ReadYear(text); }},
        {"json", '\0', nullptr, "print one JSON object a line",
         [&o](const char*) { o.json = true; }},
    };
    convert.example =
        "Which instant is this?\n"
        "  zemtime convert @1709292645.25";
    convert.run = [&o](const Words& words) {
        EndOnClosedPipe();
        o.texts = words;
        return RunConvert(o);
    };
    return convert;
}

Command NowCommand()
{
    Command now;
    now.name = "now";
    now.purpose = "show the clocks and the UTC offset of this process";
    now.usage = " [OPTION]...";
    now.description = "Shows the wall clock in every form, the monotonic clock and the UTC offset.";
    now.example =
        "What time is it in Tokyo?\n"
        "  TZ=Asia/Tokyo zemtime now";
    now.run = [](const Words& words) {
        if (!words.empty()) {
            throw UsageError("now takes options alone, not '" + words.front() + "'");
        }
        EndOnClosedPipe();
        return RunNow();
    };
    return now;
}

Command MeasureCommand(MeasureOptions& o)
{
    Command measure;
    measure.name = "measure";
    measure.purpose = "run a command and show how long it takes";
    measure.usage = " [OPTION]... [--] COMMAND [ARGUMENT]...";
    measure.description =
        "Runs COMMAND as it is written, and shows on standard error how long it took: of\n"
        "several runs the minimum, the median and the maximum.";
    measure.options = {
        {"runs", 'n', "RUNS", "how many times to run it, 1 to 1000000 (default: 1)",
         [&o](const char* text) { o.runs = ReadCount(text, 1000000); }},
    };
    measure.example =
        "How long does a search take?\n"
        "  zemtime measure -n 20 -- grep -rc '[0-9]' /etc/services";
    measure.endsAtWord = true;
    measure.run = [&o](const Words& words) {
        if (words.empty()) {
            throw UsageError("no COMMAND to measure");
        }
        o.command = words;
        return RunMeasure(o);
    };
    return measure;
}

// The name of the command that runs, for what is said where it goes wrong.
std::string running;

// Reads the options of `command` and runs it, or shows what they ask for.
int RunCommand(int argc, char** argv, Command& command)
{
    running = command.name;
    bool help = false;
    bool version = false;
    command.options.push_back(
        {"help", 'h', nullptr, "show this help", [&](const char*) { help = true; }, true});
    command.options.push_back(
        {"version", '\0', nullptr, "show the version", [&](const char*) { version = true; }, true});
    Words words = ReadOptions(argc, argv, command);
    if (!help && !version) {
        return command.run(words);
    }
    EndOnClosedPipe();
    help ? PrintHelp(command) : static_cast<void>(std::puts("zemtime " ZEMTIME_VERSION));
    return 0;
}

int Run(int argc, char** argv)
{
    SpansOptions spans;
    LinesOptions lines;
    ConvertOptions convert;
    MeasureOptions measure;
    Command commands[] = {SpansCommand(spans), LinesCommand(lines), ConvertCommand(convert),
                          NowCommand(), MeasureCommand(measure)};

    std::string description = "Reads, groups, converts and measures times.\n\nCommands:";
    for (const Command& command : commands) {
        description += "\n  " + std::string(command.name);
        description += std::string(9 - std::strlen(command.name), ' ') + command.purpose;
    }
    Command all;
    all.usage = "COMMAND [OPTION]... [ARGUMENT]...";
    all.description = description.c_str();
    all.example = "zemtime COMMAND --help says more about a command.";
    all.endsAtWord = true;
    all.run = [&](const Words& words) {
        if (words.empty()) {
            throw UsageError("no COMMAND: spans, lines, convert, now or measure");
        }
        for (Command& command : commands) {
            if (words.front() == command.name) {
                int count = static_cast<int>(words.size());
                return RunCommand(count, argv + (argc - count), command);
            }
        }
        throw UsageError("no such command: " + words.front());
    };
    return RunCommand(argc, argv, all);
}

}  // namespace

int main(int argc, char** argv)
{
    std::setlocale(LC_CTYPE, "");
    try {
        return CheckOutput(Run(argc, argv));
    } catch (const UsageError& error) {
        std::fprintf(stderr, "zemtime: %s\nRun zemtime %s%s--help for more.\n",
                     Printable(error.what()).c_str(), running.c_str(), running.empty() ? "" : " ");
        return kUsage;
    } catch (const std::bad_alloc&) {
        std::fputs("zemtime: out of memory\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zemtime: %s\n", error.what());
    }
    return kFailed;
}
