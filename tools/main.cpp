// The zemtime command: its subcommands and their options.

#include <CLI/CLI.hpp>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

#include "convert.hpp"
#include "measure.hpp"
#include "spans.hpp"

namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

CLI::App* AddCommand(CLI::App& app, const char* name, const char* purpose)
{
    CLI::App* command = app.add_subcommand(name, purpose);
    command->set_version_flag("--version", "zemtime " ZEMTIME_VERSION, "Print the version");
    return command;
}

Zone ParseZoneOrThrow(const char* option, const std::string& text)
{
    std::optional<Zone> zone = ParseZone(text);
    if (!zone) {
        throw CLI::ValidationError(option, "no such zone: " + text);
    }
    return *zone;
}

ZemTime ParseGapOrThrow(const std::string& text)
{
    std::optional<ZemTime> gap = ParseDuration(text);
    if (!gap || *gap == 0) {
        throw CLI::ValidationError("--gap", "not a duration such as 90s or 1h30m: " + text);
    }
    return *gap;
}

void AddSpans(CLI::App& app, SpansOptions& o)
{
    auto setGap = [&o](const std::string& text) { o.gap = ParseGapOrThrow(text); };
    auto setAssumed = [&o](const std::string& t) { o.assumed = ParseZoneOrThrow("--assume", t); };
    auto setOffset = [&o](const std::string& text) {
        o.zone = ParseZoneOrThrow("--offset", text);
        if (o.zone.kind != Zone::Kind::kFixed) {
            throw CLI::ValidationError("--offset", "not an offset: " + text);
        }
    };

    CLI::App* spans = AddCommand(app, "spans", "Group timestamped lines into spans of activity");
    spans->add_option("FILE", o.files, "Files to read; standard input without one, or for -")
        ->type_name("");
    spans
        ->add_option_function<std::string>("--gap", setGap,
                                           "Events closer together than this share a span [30m]")
        ->type_name("DURATION");
    spans
        ->add_option_function<std::string>("--assume", setAssumed,
                                           "The zone of times without one: utc, local, +hh:mm")
        ->type_name("ZONE");
    spans->add_flag("--overlap", o.overlap,
                    "Also print when two or more files were active at once");
    CLI::Option* json = spans->add_flag("--json", o.json, "Print one JSON object a line");
    spans
        ->add_flag("--chart,!--no-chart", o.chart,
                   "Draw the activity over time, or do not [on a terminal]")
        ->excludes(json);

    CLI::Option_group* zone = spans->add_option_group("Zone of the output");
    zone->require_option(0, 1);
    zone->add_flag_callback(
        "--local", [&o] { o.zone.kind = Zone::Kind::kLocal; }, "Local time [default]");
    zone->add_flag_callback(
        "--utc", [&o] { o.zone.kind = Zone::Kind::kUtc; }, "UTC");
    zone->add_option_function<std::string>("--offset", setOffset, "A fixed UTC offset")
        ->type_name("+hh:mm");
}

void AddConvert(CLI::App& app, ConvertOptions& o)
{
    CLI::App* convert = AddCommand(app, "convert", "Show instants in other forms");
    convert
        ->add_option("TEXT", o.texts,
                     "Timestamps, @seconds[.fraction] since 1970, or ntp:0x...; one a line on "
                     "standard input without one")
        ->type_name("");
    convert->add_option("--to", o.form, "The one form to print")->check(CLI::IsMember(FormNames()));
}

void AddMeasure(CLI::App& app, MeasureOptions& o)
{
    CLI::App* measure = AddCommand(app, "measure", "Run a command and show how long it takes");
    measure->positionals_at_end();
    measure->add_option("-n", o.runs, "How many times to run it [1]")
        ->type_name("RUNS")
        ->check(CLI::Range(1U, 1000000U));
    measure->add_option("COMMAND", o.command, "The command and its arguments, behind --")
        ->type_name("")
        ->required();
}

std::string UsageMessage(const CLI::App* app, const CLI::Error& error)
{
    bool unknown = app->get_subcommands().empty() && app->remaining_size() != 0;
    std::string problem = unknown ? "no such command: " + app->remaining().front() : error.what();
    return "zemtime: " + problem + "\nRun zemtime with --help for more.\n";
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

int Run(int argc, char** argv)
{
    CLI::App app("Reads, groups, converts and measures times", "zemtime");
    app.set_version_flag("--version", "zemtime " ZEMTIME_VERSION, "Print the version");
    app.failure_message(UsageMessage);
    app.require_subcommand(1);
    SpansOptions spans;
    ConvertOptions convert;
    MeasureOptions measure;
    AddSpans(app, spans);
    AddConvert(app, convert);
    AddCommand(app, "now", "Show the clocks and the UTC offset of this process");
    AddMeasure(app, measure);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsage;
    }

    if (app.got_subcommand("measure")) {
        return RunMeasure(measure);
    }
    // A closed pipe ends the program quietly, even if its parent ignores the signal.
    std::signal(SIGPIPE, SIG_DFL);
    return CheckOutput(app.got_subcommand("spans")     ? RunSpans(spans)
                       : app.got_subcommand("convert") ? RunConvert(convert)
                                                       : RunNow());
}

}  // namespace

int main(int argc, char** argv)
{
    std::setlocale(LC_CTYPE, "");
    try {
        return Run(argc, argv);
    } catch (const std::bad_alloc&) {
        std::fputs("zemtime: out of memory\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zemtime: %s\n", error.what());
    }
    return kFailed;
}
