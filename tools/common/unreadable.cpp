#include "tools/common/unreadable.hpp"

#include "tools/common/quote.hpp"

std::string DescribeUnreadable(const std::string& file, std::string_view beginning,
                               const std::string& command)
{
    using namespace std::string_view_literals;
    const struct {
        std::string_view magic;
        std::string what;
        std::string program;
    } kForms[] = {{"\x1F\x8B"sv, "compressed by gzip", "zcat"},
                  {"\x28\xB5\x2F\xFD"sv, "compressed by zstd", "zstdcat"},
                  {"\xFD\x37zXZ\0"sv, "compressed by xz", "xzcat"},
                  {"BZh"sv, "compressed by bzip2", "bzcat"},
                  {"\xFF\xFE"sv, "text in UTF-16", "iconv -f UTF-16 -t UTF-8"},
                  {"\xFE\xFF"sv, "text in UTF-16", "iconv -f UTF-16 -t UTF-8"}};

    for (const auto& form : kForms) {
        if (beginning.substr(0, form.magic.size()) == form.magic) {
            return form.what + "; read it with: " + form.program +
                   (file == "-" ? "" : " " + QuoteForShell(file)) + " | zemtime " + command + " -";
        }
    }
    return "";
}
