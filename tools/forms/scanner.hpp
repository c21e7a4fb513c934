// Takes texts apart from their front.

#ifndef ZEMTIME_TOOLS_SCANNER_HPP
#define ZEMTIME_TOOLS_SCANNER_HPP

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

inline bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

inline bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// A date as digits: YYYYMMDD. One without a year is of 2000, which is a leap year.
struct DateDigits {
    char year[4] = {'2', '0', '0', '0'};
    char month[2];
    char day[2];
};

// The digits of the month whose first three letters stand at `s`, as in Jan; false when there is
// none.
inline bool ReadShortMonth(const char* s, char* digits)
{
    static constexpr char kNames[] = "JanFebMarAprMayJunJulAugSepOctNovDec";
    static constexpr char kNumbers[] = "010203040506070809101112";
    for (std::size_t i = 0; i < 12; ++i) {
        if (std::memcmp(s, kNames + 3 * i, 3) == 0) {
            std::memcpy(digits, kNumbers + 2 * i, 2);
            return true;
        }
    }
    return false;
}

// A step that does not find what it wants takes nothing and is false.
class Scanner {
  public:
    // Takes from byte `at` of `text` on, at most its size.
    explicit Scanner(std::string_view text, std::size_t at = 0)
        : text_(text), at_(std::min(at, text.size()))
    {}

    // Where the next step begins.
    [[nodiscard]] std::size_t At() const
    {
        return at_;
    }

    // The character `ahead` of that; NUL where there is none.
    [[nodiscard]] char Peek(std::size_t ahead = 0) const
    {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }

    [[nodiscard]] std::string_view Since(std::size_t begin) const
    {
        return text_.substr(begin, at_ - begin);
    }

    bool Take(char c)
    {
        bool isThere = at_ < text_.size() && text_[at_] == c;
        at_ += isThere ? 1 : 0;
        return isThere;
    }

    // One of `any`.
    bool Take(std::string_view any)
    {
        bool isThere = at_ < text_.size() && any.find(text_[at_]) != std::string_view::npos;
        at_ += isThere ? 1 : 0;
        return isThere;
    }

    // A space or, up to `most`, several.
    bool TakeSpaces(int most)
    {
        int count = 0;
        while (count < most && Take(' ')) {
            ++count;
        }
        return count != 0;
    }

    // `least` to `most` digits, behind which none stands. Writes them at `to`, `most` of them, with
    // zeros before them.
    bool TakeDigits(std::size_t least, std::size_t most, char* to)
    {
        const char* digits = text_.data() + at_;
        std::size_t limit = text_.size() - at_ <= most ? text_.size() - at_ : most + 1;
        std::size_t count = 0;
        while (count < limit && IsDigit(digits[count])) {
            ++count;
        }
        if (count < least || count > most) {
            return false;
        }
        // Whole pieces: bytes written one by one and then read together cost more than all the
        // rest.
        if (count == most) {
            std::memcpy(to, digits, most);
        } else {
            std::memset(to, '0', most);
            std::memcpy(to + most - count, digits, count);
        }
        at_ += count;
        return true;
    }

    // What stands here of such characters.
    std::string_view TakeAll(bool (*belongs)(char))
    {
        std::size_t begin = at_;
        while (at_ < text_.size() && belongs(text_[at_])) {
            ++at_;
        }
        return Since(begin);
    }

    // A month by its English name or three letters of it or more, in any case, perhaps with a
    // point. Writes its two digits.
    bool TakeMonth(char* digits)
    {
        // Nearly all are three of its letters.
        if (text_.size() - at_ > 3 && !IsLetter(text_[at_ + 3]) && text_[at_ + 3] != '.' &&
            ReadShortMonth(text_.data() + at_, digits)) {
            at_ += 3;
            return true;
        }
        return TakeLongMonth(digits);
    }

    // A weekday in the same way, which is not checked, and what stands between it and a date.
    void PassWeekday();

    // hh:mm:ss and a fraction, if there is one; the hour may lack its first digit.
    bool TakeTime();

  private:
    bool TakeLongMonth(char* digits);

    // The beginning of one of `names`; its number from 0 on, or -1.
    int TakeName(const std::string_view* names, int count);

    std::string_view text_;
    std::size_t at_;
};

#endif
