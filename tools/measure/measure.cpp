#include "tools/measure/measure.hpp"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "tools/common/quote.hpp"
#include "tools/common/text.hpp"

namespace {

// As shells, env and nice have it.
constexpr int kCannotRun = 126;
constexpr int kNotFound = 127;
constexpr int kKilled = 128;  // and the signal's number

volatile std::sig_atomic_t interrupted = 0;

void Interrupt(int)
{
    interrupted = 1;
}

// Ctrl-C reaches the command too, whose end is awaited and reported; exec gives the command the
// default back. A caller that ignores Ctrl-C has it ignored in both. With SIGCHLD ignored the
// system would throw the command's status away; to hand it on ignored would take a fork of our own,
// which adds a seventh to the time of a short command.
void PrepareSignals()
{
    struct sigaction before = {};
    struct sigaction action = {};
    action.sa_handler = Interrupt;
    if (sigaction(SIGINT, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
        sigaction(SIGINT, &action, nullptr);
    }
    std::signal(SIGCHLD, SIG_DFL);
}

struct Result {
    int status = 0;  // as a shell shows it
    ZemTime time = 0;
    bool hasRun = false;
};

Result RunOnce(const std::vector<char*>& arguments)
{
    Result result;
    ZemTime start = ZemTimeGetCurrentMonotonicTime();
    pid_t pid = 0;
    int error = posix_spawnp(&pid, arguments.front(), nullptr, nullptr, arguments.data(), environ);
    int status = 0;
    while (error == 0 && waitpid(pid, &status, 0) < 0) {
        error = errno != EINTR ? errno : 0;
    }
    if (error != 0) {
        std::fprintf(stderr, "zemtime: %s: %s\n", Printable(arguments.front()).c_str(),
                     std::strerror(error));
        result.status = error == ENOENT ? kNotFound : kCannotRun;
        return result;
    }
    result.time = ZemTimeGetElapsed(start);
    result.status = WIFSIGNALED(status) ? kKilled + WTERMSIG(status) : WEXITSTATUS(status);
    result.hasRun = true;
    return result;
}

ZemTime MedianOf(const std::vector<ZemTime>& sorted)
{
    size_t middle = sorted.size() / 2;
    if (sorted.size() % 2 == 1) {
        return sorted[middle];
    }
    return sorted[middle - 1] + (sorted[middle] - sorted[middle - 1]) / 2;
}

// On standard error, away from the output of the command.
void Report(std::vector<ZemTime> times)
{
    if (times.empty()) {
        return;
    }
    if (times.size() == 1) {
        std::fprintf(stderr, "%s\n", PrintDuration(times.front()).c_str());
        return;
    }
    std::sort(times.begin(), times.end());
    std::fprintf(stderr, "%zu runs: minimum %s, median %s, maximum %s\n", times.size(),
                 PrintDuration(times.front()).c_str(), PrintDuration(MedianOf(times)).c_str(),
                 PrintDuration(times.back()).c_str());
}

// Who waits for this program sees what it would have without the handler.
int EndAsInterrupted()
{
    std::signal(SIGINT, SIG_DFL);
    std::raise(SIGINT);
    return kKilled + SIGINT;
}

}  // namespace

int RunMeasure(const MeasureOptions& options)
{
    if (ZemTimeInitialize() == 0) {
        std::fputs("zemtime: the monotonic clock of this host cannot be read\n", stderr);
        return 1;
    }
    std::vector<std::string> command = options.command;
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& argument : command) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);

    PrepareSignals();
    std::vector<ZemTime> times;
    int status = 0;
    for (unsigned run = 1; run <= options.runs && interrupted == 0; ++run) {
        Result result = RunOnce(arguments);
        status = status != 0 ? status : result.status;
        if (!result.hasRun) {
            break;
        }
        // A command may go on at Ctrl-C, as an interactive one does: then this was a run like any.
        if (interrupted != 0 && result.status == kKilled + SIGINT) {
            Report(times);
            std::fprintf(stderr, "interrupted in run %u of %u, after %s\n", run, options.runs,
                         PrintDuration(result.time).c_str());
            return EndAsInterrupted();
        }
        times.push_back(result.time);
    }
    Report(times);
    return interrupted != 0 && times.size() < options.runs ? EndAsInterrupted() : status;
}
