// Values of keys in JSON objects and in key=value pairs.

#include <algorithm>

#include "tools/forms/form_table.hpp"

namespace {

size_t PassSpace(std::string_view text, size_t at)
{
    return std::min(text.find_first_not_of(" \t", at), text.size());
}

// Where the string ends whose first character, behind its quote, is byte `at`: at its closing quote
// or at the end of `text`.
size_t EndOfString(std::string_view text, size_t at)
{
    while (at < text.size()) {
        at = std::min(text.find('"', at), text.size());
        size_t escapes = 0;
        while (escapes < at && text[at - escapes - 1] == '\\') {
            ++escapes;
        }
        if (escapes % 2 == 0) {
            break;
        }
        ++at;
    }
    return std::min(at, text.size());
}

// Where the value ends that begins at byte `at`: behind its last byte.
size_t EndOfValue(std::string_view text, size_t at)
{
    size_t depth = 0;
    for (; at < text.size(); ++at) {
        char c = text[at];
        if (c == '"') {
            at = EndOfString(text, at + 1);
        } else if (c == '{' || c == '[') {
            ++depth;
        } else if (c == '}' || c == ']' || c == ',') {
            if (depth == 0) {
                return at;
            }
            depth -= c == ',' ? 0 : 1;
        }
    }
    return std::min(at, text.size());
}

std::string_view WithoutQuotes(std::string_view value)
{
    value = value.substr(0, value.find_last_not_of(" \t\r") + 1);
    bool isQuoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

std::string_view FindInObject(std::string_view text, std::string_view key)
{
    size_t at = PassSpace(text, 0);
    if (at >= text.size() || text[at] != '{') {
        return {};
    }
    do {
        size_t name = PassSpace(text, at + 1);
        if (name >= text.size() || text[name] != '"') {
            return {};
        }
        size_t nameEnd = EndOfString(text, name + 1);
        size_t colon = PassSpace(text, nameEnd + 1);
        if (colon >= text.size() || text[colon] != ':') {
            return {};
        }
        size_t begin = PassSpace(text, colon + 1);
        at = EndOfValue(text, begin);
        if (text.substr(name + 1, nameEnd - name - 1) == key) {
            // A value that goes on beyond the text is none.
            return at < text.size() ? text.substr(begin, at - begin) : std::string_view();
        }
    } while (at < text.size() && text[at] == ',');
    return {};
}

// MongoDB writes a time as an object of its own.
std::string_view FindJson(std::string_view line, std::string_view key)
{
    constexpr size_t kSearched = 4096;
    std::string_view value = FindInObject(line.substr(0, kSearched), key);
    for (std::string_view inner : {"$date", "$numberLong"}) {
        if (!value.empty() && value[0] == '{') {
            value = FindInObject(value, inner);
        }
    }
    return WithoutQuotes(value);
}

// Pairs are separated by spaces; a value may stand in quotes. What is no pair, such as the name of
// an XML element, is passed over.
std::string_view FindLogfmt(std::string_view line, std::string_view key)
{
    constexpr size_t kSearched = 1024;
    std::string_view text = line.substr(0, kSearched);
    for (size_t at = PassSpace(text, 0); at < text.size(); at = PassSpace(text, at)) {
        size_t end = std::min(text.find_first_of(" \t=\"", at), text.size());
        std::string_view name = text.substr(at, end - at);
        if (end < text.size() && text[end] == '=') {
            bool isQuoted = end + 1 < text.size() && text[end + 1] == '"';
            size_t begin = end + (isQuoted ? 2 : 1);
            end = isQuoted ? EndOfString(text, begin)
                           : std::min(text.find_first_of(" \t", begin), text.size());
            if (name == key) {
                // What is cut off is no value.
                bool isWhole = end < text.size() || (!isQuoted && text.size() == line.size());
                return isWhole ? text.substr(begin, end - begin) : std::string_view();
            }
            end += isQuoted ? 1 : 0;
        } else if (end < text.size() && text[end] == '"') {
            end = EndOfString(text, end + 1) + 1;
        }
        at = end;
    }
    return {};
}

}  // namespace

std::string_view FindValue(const Form& form, std::string_view line, std::string_view key)
{
    return form.lead == '{' ? FindJson(line, key) : FindLogfmt(line, key);
}
