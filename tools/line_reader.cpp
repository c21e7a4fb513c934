#include "line_reader.hpp"

#include <unistd.h>

#include <cerrno>

namespace {

// Large enough to make the system calls cheap, small enough to stay in the cache.
constexpr size_t kBlockSize = size_t{256} * 1024;

}  // namespace

LineReader::LineReader(int descriptor)
    : block_(new char[kBlockSize]), begin_(block_.get()), end_(begin_), descriptor_(descriptor)
{}

// Moves what is left to the front of the block and reads behind it. False when nothing was added.
bool LineReader::Fill()
{
    auto left = static_cast<size_t>(end_ - begin_);
    std::memmove(block_.get(), begin_, left);
    begin_ = block_.get();
    end_ = begin_ + left;

    ssize_t count = 0;
    do {
        count = read(descriptor_, block_.get() + left, kBlockSize - left);
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

void LineReader::SkipRestOfLine()
{
    const void* newline = nullptr;
    do {
        begin_ = end_;
        if (!Fill()) {
            return;
        }
        newline = std::memchr(begin_, '\n', static_cast<size_t>(end_ - begin_));
    } while (newline == nullptr);
    begin_ = static_cast<const char*>(newline) + 1;
}

bool LineReader::NextBeyondBlock(std::string_view& line)
{
    if (insideLongLine_) {
        insideLongLine_ = false;
        SkipRestOfLine();
        return Next(line);
    }
    while (Fill()) {
        const void* newline = std::memchr(begin_, '\n', static_cast<size_t>(end_ - begin_));
        if (newline != nullptr) {
            TakeUpTo(static_cast<const char*>(newline), line);
            return true;
        }
        if (end_ == block_.get() + kBlockSize) {
            insideLongLine_ = true;
            break;
        }
    }
    // The last line has no newline, or this is the beginning of a long one.
    line = std::string_view(begin_, static_cast<size_t>(end_ - begin_));
    begin_ = end_;
    return !line.empty();
}
