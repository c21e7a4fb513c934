#include "tools/common/json_object.hpp"

#include <algorithm>
#include <charconv>

namespace {

// Goes through a text from its beginning; throws WrongJson where it is not what is asked for.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    // The next character that is no space, which stays; '\0' at the end.
    char Peek()
    {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size()));
        return rest_.empty() ? '\0' : rest_[0];
    }

    bool TakeIf(char c)
    {
        bool isThere = !rest_.empty() && Peek() == c;
        rest_.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }

    void Require(char c)
    {
        if (!TakeIf(c)) {
            throw WrongJson(std::string("no ") + c + " where one belongs");
        }
    }

    [[nodiscard]] bool IsAtEnd()
    {
        Peek();
        return rest_.empty();
    }

    std::string TakeString()
    {
        std::string result;
        Require('"');
        for (char c = TakeRaw(); c != '"'; c = TakeRaw()) {
            if (static_cast<unsigned char>(c) < ' ') {
                throw WrongJson("a control character in a string");
            }
            c == '\\' ? AppendEscaped(result) : result.push_back(c);
        }
        return result;
    }

    std::string TakeNumber()
    {
        size_t sign = TakeIf('-') ? 1 : 0;
        size_t digits = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
        if (digits == 0 || (digits > 1 && rest_[0] == '0')) {
            throw WrongJson("a value that is no string, whole number or array of strings");
        }
        std::string text = std::string(sign, '-') + std::string(rest_.substr(0, digits));
        rest_.remove_prefix(digits);
        return text;
    }

    void TakeStrings()
    {
        Require('[');
        if (!TakeIf(']')) {
            do {
                TakeString();
            } while (TakeIf(','));
            Require(']');
        }
    }

  private:
    char TakeRaw()
    {
        if (rest_.empty()) {
            throw WrongJson("a string without an end");
        }
        char c = rest_[0];
        rest_.remove_prefix(1);
        return c;
    }

    unsigned TakeHexadecimal()
    {
        unsigned value = 0;
        std::string_view digits = rest_.substr(0, 4);
        auto number = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (digits.size() < 4 || number.ptr != digits.data() + 4) {
            throw WrongJson("an escape that is none");
        }
        rest_.remove_prefix(4);
        return value;
    }

    void AppendEscaped(std::string& result)
    {
        constexpr std::string_view kLetters = "\"\\/bfnrt";
        constexpr std::string_view kMeant = "\"\\/\b\f\n\r\t";

        char letter = TakeRaw();
        size_t at = kLetters.find(letter);
        if (at != std::string_view::npos) {
            result += kMeant[at];
            return;
        }
        unsigned code = letter == 'u' ? TakeHexadecimal() : 0xDC00;
        if (code >= 0xD800 && code < 0xDC00 && TakeRaw() == '\\' && TakeRaw() == 'u') {
            unsigned low = TakeHexadecimal();
            code = low >= 0xDC00 && low < 0xE000 ? 0x10000 + (code - 0xD800) * 0x400 + low - 0xDC00
                                                 : 0xDC00;
        }
        if (code >= 0xD800 && code < 0xE000) {
            throw WrongJson("an escape that is none");
        }
        AppendUtf8(result, code);
    }

    static void AppendUtf8(std::string& result, unsigned code)
    {
        int following = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        const unsigned kLead[] = {0, 0xC0, 0xE0, 0xF0};
        result += static_cast<char>(kLead[following] | (code >> (6 * following)));
        while (following-- > 0) {
            result += static_cast<char>(0x80 | (code >> (6 * following) & 0x3F));
        }
    }

    std::string_view rest_;
};

}  // namespace

JsonObject::JsonObject(std::string_view text)
{
    Scanner in(text);
    in.Require('{');
    if (!in.TakeIf('}')) {
        do {
            in.Peek();
            std::string name = in.TakeString();
            in.Require(':');
            Value value{in.Peek(), ""};
            if (value.kind == '"') {
                value.text = in.TakeString();
            } else if (value.kind == '[') {
                in.TakeStrings();
            } else {
                value = {0, in.TakeNumber()};
            }
            if (!members_.emplace(name, std::move(value)).second) {
                throw WrongJson("more than one \"" + name + '"');
            }
        } while (in.TakeIf(','));
        in.Require('}');
    }
    if (!in.IsAtEnd()) {
        throw WrongJson("more behind the object");
    }
}

std::string JsonObject::Take(const std::string& name, char kind, const char* wanted)
{
    auto found = members_.find(name);
    if (found == members_.end()) {
        throw WrongJson("no \"" + name + '"');
    }
    if (found->second.kind != kind) {
        throw WrongJson('"' + name + "\" is no " + wanted);
    }
    std::string text = std::move(found->second.text);
    members_.erase(found);
    return text;
}

template <class Number>
Number JsonObject::TakeAs(const std::string& name, const char* wanted)
{
    std::string text = Take(name, 0, wanted);
    Number value = 0;
    auto number = std::from_chars(text.data(), text.data() + text.size(), value);
    if (number.ec != std::errc() || number.ptr != text.data() + text.size()) {
        throw WrongJson('"' + name + "\" is " + text + ", and no " + wanted);
    }
    return value;
}

std::string JsonObject::TakeString(const std::string& name)
{
    return Take(name, '"', "string");
}

ZemInt64 JsonObject::TakeNumber(const std::string& name)
{
    return TakeAs<ZemInt64>(name, "whole number of 64 bits");
}

ZemUint64 JsonObject::TakeCount(const std::string& name)
{
    return TakeAs<ZemUint64>(name, "count");
}

void JsonObject::TakeStrings(const std::string& name)
{
    Take(name, '[', "array");
}

void JsonObject::RequireEmpty() const
{
    if (!members_.empty()) {
        throw WrongJson('"' + members_.begin()->first + "\" is not known here");
    }
}
