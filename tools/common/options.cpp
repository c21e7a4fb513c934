#include "tools/common/options.hpp"

#include <getopt.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

// Stands for the first long option: no character has this number.
constexpr int kFirstLong = 0x110000;

// The options as getopt_long wants them.
struct Known {
    // It stops at the first word, and tells an option without its argument from an unknown one.
    std::string letters = "+:";
    std::vector<option> names;
};

Known Describe(const std::vector<Option>& options)
{
    Known known;
    int code = kFirstLong;
    for (const Option& o : options) {
        bool takesArgument = o.argument != nullptr;
        known.names.push_back(
            {o.name, takesArgument ? required_argument : no_argument, nullptr, code++});
        if (o.letter != '\0') {
            known.letters += o.letter;
            known.letters += takesArgument ? ":" : "";
        }
    }
    known.names.push_back({nullptr, 0, nullptr, 0});
    return known;
}

// The option that getopt_long means by `code`, or null.
const Option* FindOption(const std::vector<Option>& options, int code)
{
    if (code >= kFirstLong) {
        return &options[static_cast<size_t>(code - kFirstLong)];
    }
    auto found = std::find_if(options.begin(), options.end(), [code](const Option& o) {
        return o.letter != '\0' && o.letter == code;
    });
    return found != options.end() ? &*found : nullptr;
}

// What getopt_long did not like about `word`.
std::string ProblemWith(const std::string& word, const std::vector<Option>& options, bool isKnown)
{
    std::string name = word.substr(0, word.find('='));
    if (isKnown) {
        return name + " takes no argument";
    }
    std::string several;
    for (const Option& o : options) {
        if (("--" + std::string(o.name)).compare(0, name.size(), name) == 0) {
            several += several.empty() ? " (--" : ", --";
            several += o.name;
        }
    }
    return several.empty() ? "no such option: " + word
                           : name + " is short for several" + several + ")";
}

void Apply(const Option& o, const std::string& word)
{
    try {
        o.set(optarg);
    } catch (const WrongArgument& wanted) {
        bool isLong = word.compare(0, 2, "--") == 0;
        throw UsageError(word.substr(0, isLong ? word.find('=') : 2) + " wants " + wanted.what() +
                         ", not '" + optarg + "'");
    }
}

}  // namespace

std::vector<std::string> ReadOptions(int argc, char** argv, const Command& command)
{
    Known known = Describe(command.options);
    std::vector<std::string> words;
    opterr = 0;
    optind = 0;  // begins anew
    // Words are passed over here: where getopt_long does it, it heeds POSIXLY_CORRECT or not, and
    // takes a lone - for the end or not, as the C library has it.
    while (true) {
        int at = std::max(optind, 1);
        int code = getopt_long(argc, argv, known.letters.c_str(), known.names.data(), nullptr);
        if (code == -1) {
            bool isBehindDashes = optind > at;
            if (isBehindDashes || command.endsAtWord || optind >= argc) {
                break;
            }
            words.emplace_back(argv[optind++]);
            continue;
        }
        const Option* o = FindOption(command.options, code == '?' || code == ':' ? optopt : code);
        if (code == '?') {
            throw UsageError(ProblemWith(argv[at], command.options, o != nullptr));
        }
        if (code == ':') {
            throw UsageError(std::string("no ") + o->argument + " behind " + argv[at]);
        }
        Apply(*o, argv[at]);
        if (o->isLast) {
            return {};
        }
    }
    words.insert(words.end(), argv + std::min(optind, argc), argv + argc);  // argc may be 0
    return words;
}

void PrintHelp(const Command& command)
{
    std::printf("Usage: zemtime %s%s\n\n%s\n\nOptions:\n", command.name, command.usage,
                command.description);
    for (const Option& o : command.options) {
        std::string name = o.letter != '\0' ? std::string("-") + o.letter + ", --" : "    --";
        name += o.name;
        name += o.argument != nullptr ? std::string(" ") + o.argument : "";
        for (const char* line = o.help; line != nullptr;) {
            const char* next = std::strchr(line, '\n');
            int length = next != nullptr ? static_cast<int>(next - line) : -1;
            std::printf("  %-20s  %.*s\n", name.c_str(), length, line);
            line = next != nullptr ? next + 1 : nullptr;
            name.clear();
        }
    }
    std::printf("\n%s\n", command.example);
}
