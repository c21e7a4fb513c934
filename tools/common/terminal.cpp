#include "tools/common/terminal.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/common/quote.hpp"

namespace {

bool KnowsCodes(int descriptor)
{
    const char* terminal = std::getenv("TERM");
    bool isPlain = terminal == nullptr || *terminal == '\0' || std::strcmp(terminal, "dumb") == 0;
    return !isPlain && isatty(descriptor) == 1;
}

std::string WithCode(const char* code, const std::string& text)
{
    const char* off = std::getenv("NO_COLOR");
    bool isOff = off != nullptr && *off != '\0';
    return isOff || !KnowsCodes(STDOUT_FILENO) ? text : code + text + "\033[0m";
}

// The end of a long name.
std::string Shortened(const std::string& file)
{
    constexpr size_t kShown = 40;
    std::string name = Printable(file);
    if (name.size() <= kShown) {
        return name;
    }
    size_t from = name.size() - kShown;
    while ((static_cast<unsigned char>(name[from]) & 0xC0) == 0x80) {
        ++from;  // inside a character
    }
    return "..." + name.substr(from);
}

}  // namespace

Progress::Progress(const std::string& file, int descriptor)
    : name_(Shortened(file)), onTerminal_(KnowsCodes(STDERR_FILENO) && ZemTimeInitialize() != 0)
{
    struct stat status;
    off_t begin = lseek(descriptor, 0, SEEK_CUR);
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > begin) {
        total_ = static_cast<ZemUint64>(status.st_size - begin);
    }
    due_ = ZemTimeGetCurrentMonotonicTime() + ZemTimeSecs(1);
}

void Progress::Update(ZemUint64 bytes)
{
    if (!onTerminal_ || ZemTimeGetCurrentMonotonicTime() < due_) {
        return;
    }
    due_ = ZemTimeGetCurrentMonotonicTime() + ZemTimeMsecs(200);
    std::fprintf(stderr, "\r\033[K%s: %" PRIu64, name_.c_str(), bytes >> 20);
    if (total_ != 0) {
        std::fprintf(stderr, " of %" PRIu64, total_ >> 20);
    }
    std::fputs(" MiB", stderr);
    shown_ = true;
}

void Progress::Clear()
{
    if (shown_) {
        std::fputs("\r\033[K", stderr);
        shown_ = false;
    }
}

std::string Heading(const std::string& text)
{
    return WithCode("\033[1m", text);
}

std::string Coloured(const std::string& text)
{
    return WithCode("\033[36m", text);
}
