// Lines of a file descriptor, read in blocks.

#ifndef ZEMTIME_TOOLS_LINE_READER_HPP
#define ZEMTIME_TOOLS_LINE_READER_HPP

#include <cstring>
#include <memory>
#include <string_view>

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

class LineReader {
  public:
    explicit LineReader(int descriptor);

    // Sets `line` to the next line, without its newline, and returns true; false at the end of the
    // input or when it cannot be read. The text holds until the next call. Of a line longer than a
    // block only the beginning is given.
    bool Next(std::string_view& line)
    {
        const void* newline = std::memchr(begin_, '\n', static_cast<size_t>(end_ - begin_));
        if (newline == nullptr) {
            return NextBeyondBlock(line);
        }
        TakeUpTo(static_cast<const char*>(newline), line);
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
    void TakeUpTo(const char* newline, std::string_view& line)
    {
        line = std::string_view(begin_, static_cast<size_t>(newline - begin_));
        begin_ = newline + 1;
    }

    bool NextBeyondBlock(std::string_view& line);
    bool Fill();
    void SkipRestOfLine();

    std::unique_ptr<char[]> block_;
    const char* begin_;  // what is not yet given out
    const char* end_;
    int descriptor_;
    int error_ = 0;
    ZemUint64 bytesRead_ = 0;
    bool insideLongLine_ = false;
};

#endif
