#include "tools/forms/time_place.hpp"

#include <algorithm>
#include <cstring>

#include "tools/forms/scanner.hpp"
#include "tools/forms/zone_names.hpp"

namespace {

constexpr size_t kSearched = 128;

bool MayLead(char lead, char c)
{
    switch (lead) {
        case '0':
            return IsDigit(c);
        case 'a':
            return IsLetter(c);
        case '*':
            return IsDigit(c) || IsLetter(c);
        default:
            return c == lead;
    }
}

// What stands before a time at the beginning of a line: <34>, <34>1, a bracket, a quote, an
// asterisk or two dashes.
size_t LeadOf(std::string_view line)
{
    size_t at = 0;
    if (!line.empty() && line[0] == '<') {
        size_t end = line.substr(0, 5).find('>');
        bool isPriority =
            end != std::string_view::npos && end > 1 &&
            std::all_of(line.begin() + 1, line.begin() + static_cast<ptrdiff_t>(end), IsDigit);
        at = isPriority ? end + 1 : 0;
        at += isPriority && line.substr(at, 2) == "1 " ? 2U : 0U;
    }
    if (line.substr(at, 2) == "--") {
        return at + 2;
    }
    bool isMark = at < line.size() && std::strchr("[(\"*", line[at]) != nullptr && line[at] != '\0';
    return at + (isMark ? 1U : 0U);
}

size_t MatchAt(const Form& form, std::string_view line, size_t at, Moment& m)
{
    return at < line.size() && MayLead(form.lead, line[at]) ? form.match(line.substr(at), m) : 0;
}

// Whether a time may begin at byte `at`: not inside a word, a number, a path or the name of a file.
bool MayBegin(std::string_view line, size_t at)
{
    char before = at == 0 ? ' ' : line[at - 1];
    bool isPart = before == '-' || before == '.' || before == '/' || before == '_';
    return !isPart && !IsDigit(before) && !IsLetter(before);
}

// The zone's name may stand before the time. Read are only those of local time.
bool TakeZoneBefore(std::string_view line, size_t at, Moment& m)
{
    if (m.hasZone) {
        return true;
    }
    size_t begin = at == 0 ? 0 : at - 1;
    while (begin > 0 && IsLetter(line[begin - 1])) {
        --begin;
    }
    std::string_view word = line.substr(begin, at == 0 ? 0 : at - 1 - begin);
    if (!IsZoneName(word)) {
        return true;
    }
    m.abbreviation = word;
    return word != "UTC" && word != "GMT";
}

// Where the text ends whose first character is byte `at`, when it is the value of a key and stands
// in quotes; otherwise `at`. Dates inside such a text are those of a message.
size_t EndOfQuoted(std::string_view line, size_t at)
{
    if (at < 2 || line[at - 2] != '=' || (line[at - 1] != '"' && line[at - 1] != '\'')) {
        return at;
    }
    char quote = line[at - 1];
    while (at < line.size() && line[at] != quote) {
        at += line[at] == '\\' ? 2U : 1U;
    }
    return at;
}

bool Search(const Form& form, std::string_view line, Moment& m, size_t& at)
{
    std::string_view head = line.substr(0, kSearched);
    if (form.lead == '[') {
        for (at = head.find('['); at != std::string_view::npos; at = head.find('[', at + 1)) {
            if (form.match(line.substr(at), m) != 0) {
                return TakeZoneBefore(line, at, m);
            }
        }
        return false;
    }
    for (at = 0; at < head.size(); ++at) {
        if (MayBegin(line, at) && MatchAt(form, line, at, m) != 0) {
            return TakeZoneBefore(line, at, m);
        }
        at = EndOfQuoted(head, at);
    }
    return false;
}

}  // namespace

bool ReadPlace(const TimePlace& place, std::string_view line, Moment& m, size_t& at)
{
    const Form& form = *place.form;
    if (place.isSearched && place.key.empty()) {
        return Search(form, line, m, at);
    }
    if (form.stand == Stand::kKey) {
        bool isObject = form.lead == '{';
        size_t begin = place.isSearched ? line.substr(0, kSearched).find('{') : 0;
        if (begin == std::string_view::npos || (isObject && (line.empty() || line[begin] != '{'))) {
            return false;
        }
        std::string_view value = FindValue(form, line.substr(begin), place.key);
        // All of an object inside the line is behind its brace.
        at = place.isSearched || value.empty() ? begin
                                               : static_cast<size_t>(value.data() - line.data());
        return !value.empty() && ReadValue(value, m);
    }
    at = LeadOf(line);
    if (MatchAt(form, line, at, m) != 0) {
        return true;
    }
    bool isMarked = at != 0;
    at = 0;
    return isMarked && MatchAt(form, line, 0, m) != 0;
}

bool IsOwn(const TimePlace& place, std::string_view line)
{
    bool isPair = !place.key.empty() && place.form->lead != '{';
    size_t end = isPair ? line.find_first_of(" \t=\"") : std::string_view::npos;
    bool beginsWithPair = end != std::string_view::npos && end != 0 && line[end] == '=';
    return !place.isSearched && (!isPair || beginsWithPair);
}

bool HasColour(std::string_view line)
{
    return line.substr(0, kSearched).find('\x1b') != std::string_view::npos;
}

std::string WithoutColour(std::string_view line)
{
    std::string plain;
    for (size_t i = 0; i < line.size() && plain.size() < 4 * kSearched; ++i) {
        if (line[i] == '\x1b' && i + 1 < line.size() && line[i + 1] == '[') {
            size_t end = line.find_first_not_of("0123456789;", i + 2);
            i = std::min(end, line.size());
        } else {
            plain += line[i];
        }
    }
    return plain;
}
