// A JSON object of a line, read strictly: what is not understood is refused.

#ifndef ZEMTIME_TOOLS_JSON_OBJECT_HPP
#define ZEMTIME_TOOLS_JSON_OBJECT_HPP

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Zem/Utils/SysDep/ZemBaseTypes.h"

// What is wrong with an object, or with one of its members.
class WrongJson : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

class JsonObject {
  public:
    // Members are strings, whole numbers and arrays of strings. Throws WrongJson where `text` is
    // anything but one such object, or names a member twice.
    explicit JsonObject(std::string_view text);

    [[nodiscard]] bool Has(const std::string& name) const
    {
        return members_.count(name) != 0;
    }

    // Each takes a member out. WrongJson is thrown when it is missing, is of another kind, or when
    // a number does not fit.
    std::string TakeString(const std::string& name);
    ZemInt64 TakeNumber(const std::string& name);
    ZemUint64 TakeCount(const std::string& name);
    void TakeStrings(const std::string& name);

    // Throws WrongJson unless all members have been taken out.
    void RequireEmpty() const;

  private:
    // A string decoded, the digits of a number, nothing of an array.
    struct Value {
        char kind;  // the character that the value begins with; 0 for a digit and a minus
        std::string text;
    };
    std::string Take(const std::string& name, char kind, const char* wanted);
    template <class Number>
    Number TakeAs(const std::string& name, const char* wanted);

    std::map<std::string, Value> members_;
};

#endif
