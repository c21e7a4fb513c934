#include "tools/forms/scanner.hpp"

#include <algorithm>

int Scanner::TakeName(const std::string_view* names, int count)
{
    auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    Scanner ahead = *this;
    std::string_view word = ahead.TakeAll(IsLetter);
    for (int i = 0; i < count; ++i) {
        if (word.size() >= 3 && word.size() <= names[i].size() &&
            std::equal(word.begin(), word.end(), names[i].begin(),
                       [lower](char a, char b) { return lower(a) == b; })) {
            *this = ahead;
            Take('.');
            return i;
        }
    }
    return -1;
}

bool Scanner::TakeLongMonth(char* digits)
{
    static constexpr std::string_view kMonths[] = {
        "january", "february",  "march",   "april",    "may",      "june", "july",
        "august",  "september", "october", "november", "december", "sept"};
    static constexpr char kNumbers[] = "01020304050607080910111209";
    int month = TakeName(kMonths, 13);
    if (month >= 0) {
        std::memcpy(digits, kNumbers + 2 * static_cast<size_t>(month), 2);
    }
    return month >= 0;
}

void Scanner::PassWeekday()
{
    static constexpr std::string_view kDays[] = {"monday", "tuesday",  "wednesday", "thursday",
                                                 "friday", "saturday", "sunday"};
    Scanner ahead = *this;
    if (ahead.TakeName(kDays, 7) >= 0) {
        ahead.Take(',');
        if (ahead.TakeSpaces(2)) {
            *this = ahead;
        }
    }
}

bool Scanner::TakeTime()
{
    char two[2];
    Scanner ahead = *this;
    bool isTime = ahead.TakeDigits(1, 2, two) && ahead.Take(':') && ahead.TakeDigits(2, 2, two) &&
                  ahead.Take(':') && ahead.TakeDigits(2, 2, two);
    if (isTime) {
        *this = ahead;
        if (IsDigit(Peek(1)) && Take(".,")) {
            TakeAll(IsDigit);
        }
    }
    return isTime;
}
