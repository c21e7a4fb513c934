// Lines of a file descriptor, read in blocks.

#ifndef ZEMTIME_TOOLS_LINE_READER_HPP
#define ZEMTIME_TOOLS_LINE_READER_HPP

#include <sys/types.h>

#include <cstring>
#include <memory>
#include <string_view>

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

// A line without its newline: a NUL stands in its place, and the byte behind that may be written.
struct Line {
    char* text;
    size_t size;

    [[nodiscard]] std::string_view View() const
    {
        return {text, size};
    }
};

class LineReader {
  public:
    // Reads on from where the descriptor stands to the end of the input.
    explicit LineReader(int descriptor);

    // Reads a part of a file.
    LineReader(int descriptor, off_t begin, off_t end);

    // Sets `line` to the next line and returns true; false at the end of the input or when it
    // cannot be read. The text holds until the next call. Of a line longer than a block only the
    // beginning is given.
    bool Next(Line& line)
    {
        char* newline = FindNewline();
        if (newline == nullptr) {
            return NextBeyondBlock(line);
        }
        TakeUpTo(newline, line);
        begin_ = newline + 1;
        return true;
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
    [[nodiscard]] char* FindNewline() const
    {
        return static_cast<char*>(std::memchr(begin_, '\n', static_cast<size_t>(end_ - begin_)));
    }

    void TakeUpTo(char* lineEnd, Line& line)
    {
        line = {begin_, static_cast<size_t>(lineEnd - begin_)};
        *lineEnd = '\0';
        begin_ = lineEnd;
    }

    bool NextBeyondBlock(Line& line);
    ssize_t Read(char* to, size_t size);
    bool Fill();
    void SkipRestOfLine();

    std::unique_ptr<char[]> block_;
    char* begin_;  // what is not yet given out
    char* end_;
    int descriptor_;
    int error_ = 0;
    ZemUint64 bytesRead_ = 0;
    off_t offset_ = -1;  // of what is read next; -1: where the descriptor stands
    off_t endOffset_ = 0;
    bool insideLongLine_ = false;
};

#endif
