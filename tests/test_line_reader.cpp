// The command's line reader, with blocks so small that every way of lying across their ends and
// across the ends of parts comes up.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <random>

#include "tests/line_model.hpp"
#include "tools/common/line_reader.hpp"

using Lines = std::vector<std::string>;

static std::string RandomText(std::mt19937& random)
{
    const std::string_view pieces[] = {
        "\n", "\r\n", "\r", "a", "bc\n", "0123456789abcde", "\xEF\xBB\xBF", "\n\r\n"};
    std::string text;
    for (auto left = random() % 12; left != 0; --left)
        text += pieces[random() % std::size(pieces)];
    return text;
}

static Lines ReadAll(LineReader reader)
{
    Lines lines;
    for (std::string_view line; reader.Next(line);)
        lines.emplace_back(line);
    std::string_view none;
    EXPECT_FALSE(reader.Next(none));
    EXPECT_EQ(reader.Error(), 0);
    return lines;
}

// Every byte as it stands, the rest of long lines now and then.
static std::string ReadRaw(LineReader reader, std::mt19937& random, bool& leftOut)
{
    std::string text;
    std::string_view line, rest;
    while (reader.Next(line)) {
        text += text.empty() && reader.HadByteOrderMark() ? "\xEF\xBB\xBF" : "";
        text += reader.Raw(line);
        bool takesRest = random() % 4 != 0;
        while (takesRest && reader.NextOfLine(rest))
            text += rest;
        leftOut |= !takesRest && reader.Raw(line).back() != '\n';
    }
    text += text.empty() && reader.HadByteOrderMark() ? "\xEF\xBB\xBF" : "";
    return text.append(reader.Raw(line));
}

TEST(LineReader, PartsOfFiles)
{
    std::mt19937 random(1);
    const int file = memfd_create("lines", 0);
    for (int round = 0; round < 30000; ++round) {
        std::string text = RandomText(random);
        const auto size = static_cast<off_t>(text.size());
        ASSERT_EQ(ftruncate(file, 0), 0);
        ASSERT_EQ(pwrite(file, text.data(), text.size(), 0), size);
        const std::size_t blockSize = 16 + random() % 8;
        const off_t first = static_cast<off_t>(random() % 3) % (size + 1);
        std::vector<off_t> bounds = {first, size + 1};
        for (auto more = random() % 8; more != 0; --more)
            bounds.push_back(first + static_cast<off_t>(random()) % (size - first + 1));
        std::sort(bounds.begin(), bounds.end());

        Lines together;
        for (std::size_t i = 1; i < bounds.size(); ++i) {
            Lines lines = ReadAll({file, first, bounds[i - 1], bounds[i], blockSize});
            Lines expected = ModelLines(text, static_cast<std::size_t>(first),
                                        static_cast<std::size_t>(bounds[i - 1]),
                                        static_cast<std::size_t>(bounds[i]), blockSize);
            ASSERT_EQ(lines, expected) << testing::PrintToString(text);
            together.insert(together.end(), lines.begin(), lines.end());
        }
        ASSERT_EQ(lseek(file, first, SEEK_SET), first);
        ASSERT_EQ(ReadAll(LineReader(file, blockSize)), together) << testing::PrintToString(text);
        bool leftOut = false;
        std::string raw = ReadRaw({file, first, first, size + 1, blockSize}, random, leftOut);
        ASSERT_TRUE(leftOut || raw == text.substr(static_cast<std::size_t>(first)))
            << testing::PrintToString(text);
    }
    close(file);
}

// An input that comes a byte at a time: each is a message of its own.
TEST(LineReader, ShortReads)
{
    std::mt19937 random(2);
    for (int round = 0; round < 300; ++round) {
        std::string text = (round % 2 == 0 ? "\xEF\xBB\xBF" : "") + RandomText(random);
        int ends[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends), 0);
        for (char c : text)
            ASSERT_EQ(write(ends[0], &c, 1), 1);
        close(ends[0]);
        ASSERT_EQ(ReadAll(LineReader(ends[1], 16)), ModelLines(text, 0, 0, text.size(), 16))
            << testing::PrintToString(text);
        close(ends[1]);
    }
}
