// The command's line reader against lines split by hand, whole files and parts; and its reader of
// timestamps, which must find nothing that the library's parser does not accept.
#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/fuzz.hpp"
#include "tools/line_reader.hpp"
#include "tools/timestamp.hpp"

static void RequireLines(LineReader reader, std::string_view text)
{
    Line line;
    while (!text.empty()) {
        std::string_view expected = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), expected.size() + 1));
        Require(reader.Next(line) && line.View() == expected.substr(0, 262144));
        Require(line.text[line.size] == '\0');
    }
    Require(!reader.Next(line) && !reader.Next(line) && reader.Error() == 0);
}

static void RequireTimestamp(std::string line)
{
    // The reader may write the byte behind the NUL.
    std::vector<char> exact(line.c_str(), line.c_str() + line.size() + 1);
    exact.push_back('x');
    auto found = ReadTimestamp({exact.data(), line.size()}, std::nullopt);
    line.erase(0, !line.empty() && line[0] == '[' ? 1 : 0);
    for (ZemGregorianTime gt; found && !(ZemGregorianTimeConstructCStr(&gt, line.c_str()) &&
                                         ZemGregorianTimeGetTime(&gt) == *found);
         line.pop_back())
        Require(!line.empty());
}

static void Target(FuzzedDataProvider& in)
{
    static const int file = memfd_create("lines", 0);
    std::string text = in.ConsumeRandomLengthString();
    RequireTimestamp(text.substr(0, std::min<std::size_t>(text.find('\n'), 300)));
    // Seldom: a line about as long as one of the reader's blocks.
    if (in.ConsumeIntegral<std::uint8_t>() == 7)
        text.append(262094 + in.ConsumeIntegralInRange(0u, 100u), 'x');
    text += in.ConsumeRandomLengthString();
    const auto total = static_cast<off_t>(text.size());
    Require(ftruncate(file, 0) == 0 && pwrite(file, text.data(), text.size(), 0) == total);
    Require(lseek(file, 0, SEEK_SET) == 0);
    RequireLines(LineReader(file), text);

    auto begin = in.ConsumeIntegralInRange<off_t>(0, total);
    auto end = in.ConsumeIntegralInRange<off_t>(begin, total);
    RequireLines(LineReader(file, begin, end), {text.begin() + begin, text.begin() + end});
}
