#include "line_reader.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

// Large enough to make the system calls cheap, small enough to stay in the cache.
constexpr size_t kBlockSize = size_t{256} * 1024;

}  // namespace

LineReader::LineReader(int descriptor)
    : block_(new char[kBlockSize + 2]), begin_(block_.get()), end_(begin_), descriptor_(descriptor)
{}

LineReader::LineReader(int descriptor, off_t begin, off_t end) : LineReader(descriptor)
{
    offset_ = begin;
    endOffset_ = end;
}

// What read and pread return.
ssize_t LineReader::Read(char* to, size_t size)
{
    if (offset_ < 0) {
        return read(descriptor_, to, size);
    }
    size_t left = static_cast<size_t>(endOffset_ - offset_);
    ssize_t count = pread(descriptor_, to, std::min(size, left), offset_);
    offset_ += count > 0 ? count : 0;
    return count;
}

// Moves what is left to the front of the block and reads behind it. False when nothing was added.
bool LineReader::Fill()
{
    auto left = static_cast<size_t>(end_ - begin_);
    std::memmove(block_.get(), begin_, left);
    begin_ = block_.get();
    end_ = begin_ + left;

    ssize_t count = 0;
    do {
        count = Read(block_.get() + left, kBlockSize - left);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        error_ = errno;
    }
    if (count <= 0) {
        return false;
    }
    end_ += count;
    bytesRead_ += static_cast<ZemUint64>(count);
    return true;
}

bool LineReader::NextBeyondBlock(Line& line)
{
    while (Fill()) {
        char* newline = FindNewline();
        if (insideLongLine_) {
            insideLongLine_ = newline == nullptr;
            begin_ = insideLongLine_ ? end_ : newline + 1;
        }
        if (newline != nullptr) {
            return Next(line);
        }
        if (!insideLongLine_ && end_ == block_.get() + kBlockSize) {
            insideLongLine_ = true;
            break;
        }
    }
    // The last line has no newline, or this is the beginning of a long one.
    TakeUpTo(end_, line);
    return line.size != 0;
}
