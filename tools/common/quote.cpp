#include "tools/common/quote.hpp"

#include <cstdio>

namespace {

// The length of the UTF-8 character that `text` begins with, which is not empty; 0 when there is
// none. Overlong forms, surrogates and what is beyond U+10FFFF are none.
size_t CharacterLength(std::string_view text)
{
    auto byte = [text](size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char lead = byte(0);
    if (lead < 0x80) {
        return 1;
    }
    size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) {
        return 0;
    }
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    bool isOverlong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    bool isBeyond = (lead == 0xED && byte(1) > 0x9F) || (lead == 0xF4 && byte(1) > 0x8F);
    return isOverlong || isBeyond ? 0 : length;
}

// ASCII's control characters, and the 32 of Latin 1, which some terminals act on too.
bool IsControl(std::string_view character)
{
    auto first = static_cast<unsigned char>(character[0]);
    return first < ' ' || first == 0x7F ||
           (first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0);
}

// Each byte as `prefix` and two hexadecimal digits.
std::string Escape(const char* prefix, std::string_view bytes)
{
    std::string result;
    for (char c : bytes) {
        char buf[8];
        std::snprintf(buf, sizeof buf, "%s%02x", prefix, static_cast<unsigned char>(c));
        result += buf;
    }
    return result;
}

}  // namespace

std::string Printable(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        size_t length = CharacterLength(text);
        std::string_view taken = text.substr(0, length == 0 ? 1 : length);
        bool isEscaped = length == 0 || IsControl(taken);
        result += isEscaped ? Escape("\\x", taken) : std::string(taken);
        text.remove_prefix(taken.size());
    }
    return result;
}

std::string QuoteForShell(std::string_view text)
{
    constexpr std::string_view kPlain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=.,/:@%";
    std::string printable = Printable(text);
    bool isPrintable = printable == text;
    std::string result;
    for (char c : text) {
        // A name in $'...' is written byte by byte, as \x takes at most two digits there.
        bool isEscaped = c == '\'' || (!isPrintable && kPlain.find(c) == std::string_view::npos);
        result += !isEscaped ? std::string(1, c) : isPrintable ? "'\\''" : Escape("\\x", {&c, 1});
    }
    // One that begins with a dash would be an option.
    std::string dash = text.substr(0, 1) == "-" ? "./" : "";
    bool isPlain = !text.empty() && text.find_first_not_of(kPlain) == std::string_view::npos;
    return isPlain ? dash + result : (isPrintable ? "'" : "$'") + dash + result + "'";
}

std::string PrintJson(std::string_view text)
{
    std::string result = "\"";
    while (!text.empty()) {
        size_t length = CharacterLength(text);
        std::string_view taken = text.substr(0, length == 0 ? 1 : length);
        if (length == 0) {
            result += "\xEF\xBF\xBD";
        } else if (taken == "\"" || taken == "\\") {
            result += '\\';
            result += taken;
        } else if (length == 1 && IsControl(taken)) {
            result += Escape("\\u00", taken);
        } else {
            result += taken;
        }
        text.remove_prefix(taken.size());
    }
    return result + '"';
}
