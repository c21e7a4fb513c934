// Texts from outside, file names above all, made safe to print.

#ifndef ZEMTIME_TOOLS_QUOTE_HPP
#define ZEMTIME_TOOLS_QUOTE_HPP

#include <string>
#include <string_view>

// `text` with nothing in it that a terminal would act on: control characters and bytes that are
// not UTF-8 become \x1b and the like.
std::string Printable(std::string_view text);

// The name of a file as a word for the shell: in quotes where it has characters that the shell acts
// on. Where it has any that a terminal acts on, in $'...', which bash, zsh and ksh know.
std::string QuoteForShell(std::string_view text);

// A JSON string, quotes included. Each byte that is not UTF-8 becomes U+FFFD.
std::string PrintJson(std::string_view text);

#endif
