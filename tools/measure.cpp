#include "measure.hpp"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "text.hpp"

namespace {

constexpr int kCannotStart = 127;
constexpr int kKilled = 128;  // and the signal's number

// Runs the command once, adds the time it took, and returns its status as a shell shows it.
int RunOnce(const std::vector<char*>& arguments, std::vector<ZemTime>& times)
{
    ZemTime start = ZemTimeGetCurrentMonotonicTime();
    pid_t pid = 0;
    int error = posix_spawnp(&pid, arguments.front(), nullptr, nullptr, arguments.data(), environ);
    if (error != 0) {
        std::fprintf(stderr, "zemtime: %s: %s\n", arguments.front(), std::strerror(error));
        return kCannotStart;
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) {
            std::fprintf(stderr, "zemtime: %s: %s\n", arguments.front(), std::strerror(errno));
            return kCannotStart;
        }
    }
    times.push_back(ZemTimeGetElapsed(start));
    return WIFSIGNALED(status) ? kKilled + WTERMSIG(status) : WEXITSTATUS(status);
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
    if (times.size() == 1) {
        std::fprintf(stderr, "%s\n", PrintDuration(times.front()).c_str());
        return;
    }
    std::sort(times.begin(), times.end());
    std::fprintf(stderr, "%zu runs: minimum %s, median %s, maximum %s\n", times.size(),
                 PrintDuration(times.front()).c_str(), PrintDuration(MedianOf(times)).c_str(),
                 PrintDuration(times.back()).c_str());
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

    std::vector<ZemTime> times;
    int status = 0;
    for (unsigned run = 0; run < options.runs; ++run) {
        int result = RunOnce(arguments, times);
        status = status != 0 ? status : result;
        if (times.size() == run) {
            return status;
        }
    }
    Report(times);
    return status;
}
