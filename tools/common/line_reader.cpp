#include "tools/common/line_reader.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

LineReader::LineReader(int descriptor, size_t blockSize)
    : blockSize_(blockSize),
      block_(new char[blockSize]),
      begin_(block_.get()),
      end_(begin_),
      descriptor_(descriptor)
{}

// A line begins behind a newline, so a part reads from the byte before its own, as if that were
// inside a line, and through the newline at or behind the last of its own.
LineReader::LineReader(int descriptor, off_t first, off_t begin, off_t end, size_t blockSize)
    : LineReader(descriptor, blockSize)
{
    atBeginning_ = begin == first;
    insideLine_ = begin != first;
    ended_ = begin == end;
    offset_ = insideLine_ ? begin - 1 : begin;
    partEnd_ = end;
}

std::string_view LineReader::Beginning(size_t enough)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

    atBeginning_ = false;
    while (Left() < std::min(enough, blockSize_) && Fill()) {
    }
    if (std::string_view(begin_, Left()).substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        begin_ += kByteOrderMark.size();
        hadByteOrderMark_ = true;
    }
    return {begin_, Left()};
}

// What read and pread return.
ssize_t LineReader::Read(char* to, size_t size)
{
    if (offset_ < 0) {
        return read(descriptor_, to, size);
    }
    ssize_t count = pread(descriptor_, to, size, offset_);
    offset_ += count > 0 ? count : 0;
    return count;
}

// Ends the input behind the part's last line when its newline is among the bytes from `added` on,
// which were read last.
void LineReader::EndBehindLastLine(char* added)
{
    if (offset_ < partEnd_) {
        return;
    }
    off_t addedOffset = offset_ - (end_ - added);
    char* from = added + std::max<off_t>(partEnd_ - 1 - addedOffset, 0);
    void* newline = std::memchr(from, '\n', static_cast<size_t>(end_ - from));
    if (newline != nullptr) {
        end_ = static_cast<char*>(newline) + 1;
        ended_ = true;
    }
}

// Moves what is left to the front of the block and reads behind it. False when nothing was added.
bool LineReader::Fill()
{
    if (ended_) {
        return false;
    }
    size_t left = Left();
    std::memmove(block_.get(), begin_, left);
    begin_ = block_.get();
    end_ = begin_ + left;

    ssize_t count = 0;
    do {
        count = Read(end_, blockSize_ - left);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        error_ = errno;
    }
    if (count <= 0) {
        ended_ = true;  // a terminal would be asked again
        return false;
    }
    char* added = end_;
    end_ += count;
    bytesRead_ += static_cast<ZemUint64>(count);
    EndBehindLastLine(added);
    return true;
}

bool LineReader::NextBeyondBlock(std::string_view& line)
{
    if (atBeginning_) {
        Beginning();
        return Next(line);
    }
    begin_ = insideLine_ ? end_ : begin_;
    while (Left() < blockSize_ && Fill()) {
        char* newline = FindNewline();
        if (newline != nullptr) {
            begin_ = insideLine_ ? newline + 1 : begin_;
            insideLine_ = false;
            return Next(line);
        }
        begin_ = insideLine_ ? end_ : begin_;
    }
    // The last line has no newline, or this is the beginning of a long one.
    insideLine_ = Left() == blockSize_;
    TakeUpTo(end_, line);
    begin_ = end_;
    return !line.empty();
}

bool LineReader::NextOfLine(std::string_view& bytes)
{
    if (!insideLine_ || (Left() == 0 && !Fill())) {
        return false;
    }
    char* newline = FindNewline();
    insideLine_ = newline == nullptr;
    const char* end = insideLine_ ? end_ : newline + 1;
    bytes = {begin_, static_cast<size_t>(end - begin_)};
    begin_ += bytes.size();
    return true;
}
