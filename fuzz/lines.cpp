// The command's line reader against a model, whole files and parts; and its readers of times in
// lines: those of the first form against the library's, the others against themselves.
#include <sys/mman.h>
#include <unistd.h>

#include "Zem/Os/ZemTimeText.h"
#include "fuzz/fuzz.hpp"
#include "tests/line_model.hpp"
#include "tools/common/line_reader.hpp"
#include "tools/forms/time_place.hpp"
#include "tools/forms/time_reader.hpp"

static void RequireLines(LineReader reader, const std::vector<std::string>& lines)
{
    std::string_view line;
    for (const std::string& expected : lines)
        Require(reader.Next(line) && line == expected);
    Require(!reader.Next(line) && !reader.Next(line) && reader.Error() == 0);
}

// The instant that `line` tells at the beginning, by the library's form.
static std::optional<ZemTime> ReadPlain(std::string_view line, const std::optional<Zone>& assumed)
{
    TimeOptions options;
    options.assumed = assumed;
    TimeLayout layout;
    layout.places = {{FormTable().begin(), false, ""}};
    return TimeReader(layout, options).Read(line);
}

// A timestamp as the library reads it, behind a bracket, is read as the library does, and a zone of
// its own wins over the one that is assumed.
static void RequireTimestamp(const std::string& line)
{
    const std::vector<char> exact(line.begin(), line.end());
    const std::string_view text(exact.data(), exact.size());
    const std::size_t skipped = !text.empty() && text[0] == '[' ? 1 : 0;
    ZemTime t = ZEM_TIME_INFINITE;
    const bool isRead = ZemTimeParse(&t, text.data() + skipped, text.size() - skipped) != 0;
    auto found = ReadPlain(text, std::nullopt);
    Require(!isRead || found.value_or(ZEM_TIME_INFINITE) == t);
    Require(!found || ReadPlain(text, Zone{Zone::Kind::kFixed, 3600, {}}) == found);
}

// Whatever form a line has: a match lies within the line, and what stands behind a space behind it
// changes nothing of it, but for what is a zone or a level; so it is another line that is appended.
static void RequireForms(const std::string& line)
{
    const std::vector<char> exact(line.begin(), line.end());
    const std::string_view text(exact.data(), exact.size());
    for (const Form& form : FormTable()) {
        Moment m;
        const std::size_t end = form.match != nullptr ? form.match(text, m) : 0;
        Require(end <= text.size());
        if (end == 0)
            continue;
        Moment again;
        Require(form.match(line + "\t\"x\" 2026", again) == end);
        Require(again.kind == m.kind && again.hasZone == m.hasZone);
        Require(m.kind != Moment::Kind::kInstant || again.t == m.t);
        Require(m.kind == Moment::Kind::kInstant ||
                ZemGregorianTimeEqual(&again.record, &m.record));
    }
    // Finding a layout and reading by it reads no byte outside the line.
    const TimeOptions options;
    TimeLayout layout;
    layout.places = FindPlaces({text}, options);
    layout.isColoured = true;
    auto found = TimeReader(layout, options).Read(text);
    Require(found == TimeReader(layout, options).Read(line) && found != ZEM_TIME_INFINITE);
}

static void Target(FuzzedDataProvider& in)
{
    static const int file = memfd_create("lines", 0);
    std::string text = in.ConsumeRandomLengthString();
    const std::string line = text.substr(0, std::min<std::size_t>(text.find('\n'), 300));
    RequireTimestamp(line);
    RequireForms(line);
    text += in.ConsumeRandomLengthString();
    const auto total = static_cast<off_t>(text.size());
    Require(ftruncate(file, 0) == 0 && pwrite(file, text.data(), text.size(), 0) == total);
    Require(lseek(file, 0, SEEK_SET) == 0);
    const auto blockSize = in.ConsumeIntegralInRange<std::size_t>(16, 64);
    RequireLines(LineReader(file, blockSize), ModelLines(text, 0, 0, text.size(), blockSize));

    auto first = in.ConsumeIntegralInRange<off_t>(0, total);
    auto begin = in.ConsumeIntegralInRange<off_t>(first, total);
    auto end = in.ConsumeIntegralInRange<off_t>(begin, total);
    RequireLines(LineReader(file, first, begin, end, blockSize),
                 ModelLines(text, static_cast<std::size_t>(first), static_cast<std::size_t>(begin),
                            static_cast<std::size_t>(end), blockSize));
}
