// Lines of a file descriptor, read in blocks.

#ifndef ZEMTIME_TOOLS_LINE_READER_HPP
#define ZEMTIME_TOOLS_LINE_READER_HPP

#include <sys/types.h>

#include <cstring>
#include <limits>
#include <memory>
#include <string_view>

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

class LineReader {
  public:
    // Large enough to make the system calls cheap, small enough to stay in the cache.
    static constexpr size_t kBlockSize = size_t{256} * 1024;

    // Reads on from where the descriptor stands to the end of the input. `blockSize`: at least 16.
    explicit LineReader(int descriptor, size_t blockSize = kBlockSize);

    // Reads a part of a file whose first line begins at `first`: the lines that begin in
    // [begin, end), the last of them to its end, with first <= begin <= end. Parts that adjoin
    // share no line and leave none out.
    LineReader(int descriptor, off_t first, off_t begin, off_t end, size_t blockSize = kBlockSize);

    // What the input begins with, behind a byte order mark: at least `enough` bytes where there are
    // as many and a block holds them. To be called once, before Next, and of no part but the first.
    std::string_view Beginning(size_t enough = 16);

    // Sets `line` to the next line, without its newline and a carriage return before that, and
    // returns true; false at the end of the input or when it cannot be read. The text holds until
    // the next call. Of a line longer than a block only the
    // beginning is given. A byte order mark before the first is passed over.
    bool Next(std::string_view& line)
    {
        char* newline = FindNewline();
        if (newline == nullptr) {
            return NextBeyondBlock(line);
        }
        TakeUpTo(newline, line);
        begin_ = newline + 1;
        return true;
    }

    // What stands in the input where `line` was found, which Next gave last: with the newline and a
    // carriage return before it, if there are any. Of a line longer than a block the beginning.
    [[nodiscard]] std::string_view Raw(std::string_view line) const
    {
        return {line.data(), static_cast<size_t>(begin_ - line.data())};
    }

    // Sets `bytes` to what follows in the line that Next gave last, of which only the beginning was
    // given, and returns true; false when all of it was given.
    bool NextOfLine(std::string_view& bytes);

    // Whether a byte order mark was passed over.
    [[nodiscard]] bool HadByteOrderMark() const
    {
        return hadByteOrderMark_;
    }

    // The errno of a read that failed, or 0.
    [[nodiscard]] int Error() const
    {
        return error_;
    }

    [[nodiscard]] ZemUint64 BytesRead() const
    {
        return bytesRead_;
    }

  private:
    [[nodiscard]] size_t Left() const
    {
        return static_cast<size_t>(end_ - begin_);
    }

    [[nodiscard]] char* FindNewline() const
    {
        return static_cast<char*>(std::memchr(begin_, '\n', Left()));
    }

    void TakeUpTo(const char* lineEnd, std::string_view& line) const
    {
        lineEnd -= lineEnd != begin_ && lineEnd[-1] == '\r' ? 1 : 0;
        line = {begin_, static_cast<size_t>(lineEnd - begin_)};
    }

    bool NextBeyondBlock(std::string_view& line);
    ssize_t Read(char* to, size_t size);
    bool Fill();
    void EndBehindLastLine(char* added);

    size_t blockSize_;
    std::unique_ptr<char[]> block_;
    char* begin_;  // what is not yet given out
    char* end_;
    int descriptor_;
    int error_ = 0;
    ZemUint64 bytesRead_ = 0;
    off_t offset_ = -1;  // of what is read next; -1: where the descriptor stands
    off_t partEnd_ = std::numeric_limits<off_t>::max();
    bool atBeginning_ = true;  // of the input: a byte order mark may stand here
    bool hadByteOrderMark_ = false;
    bool insideLine_ = false;  // the rest of the line is passed over
    bool ended_ = false;       // all that is left is in the block
};

#endif
