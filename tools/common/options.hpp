// Command lines: a table of options for each command, read by getopt_long and shown as help.

#ifndef ZEMTIME_TOOLS_OPTIONS_HPP
#define ZEMTIME_TOOLS_OPTIONS_HPP

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// What is wrong with a command line.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What an option wants instead of the argument it was given.
class WrongArgument : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

template <class Value>
Value ValueOrThrow(const std::optional<Value>& value, const std::string& wanted)
{
    if (!value) {
        throw WrongArgument(wanted);
    }
    return *value;
}

struct Option {
    const char* name;      // the long one
    char letter;           // the short one, or '\0'
    const char* argument;  // what the help calls its argument; null: it takes none
    const char* help;      // lines of at most 56 characters
    std::function<void(const char* argument)> set;
    bool isLast = false;  // nothing behind it is read
};

struct Command {
    const char* name = "";
    const char* purpose = "";  // a line in the list of commands
    const char* usage = "";    // what stands behind the name
    const char* description = "";
    std::vector<Option> options;
    const char* example = "";
    std::function<int(const std::vector<std::string>& words)> run;  // returns the exit status
    bool endsAtWord = false;  // options stand before the first word alone
};

// Applies the options behind argv[0] in their order, so that the last of several wins, and returns
// the words between and behind them. What follows -- is no option.
std::vector<std::string> ReadOptions(int argc, char** argv, const Command& command);

void PrintHelp(const Command& command);

#endif
