#include "tools/forms/explain.hpp"

#include <cinttypes>
#include <cstdio>

#include "tools/common/quote.hpp"

void AddExample(std::vector<TimeExample>& examples, ZemTime t, std::string_view line)
{
    constexpr size_t kExamples = 3;
    constexpr size_t kShown = 160;
    if (examples.size() < kExamples) {
        examples.push_back({t, std::string(line.substr(0, kShown))});
    }
}

namespace {

std::string CountTimes(ZemUint64 count)
{
    return std::to_string(count) + (count == 1 ? " time" : " times");
}

}  // namespace

void ReportCounts(const std::string& file, const TimeCounts& counts, const TimeOptions& options)
{
    std::string name = Printable(file);
    if (counts.withoutZone != 0) {
        std::fprintf(stderr, "zemtime: %s: %s %s\n", name.c_str(),
                     CountTimes(counts.withoutZone).c_str(),
                     options.assumed ? "of another zone than the one that --assume names: not read"
                                     : "without a zone's name: --assume local reads them as local "
                                       "time, or utc, or Europe/Berlin");
    }
    if (counts.repeated != 0 || counts.skipped != 0) {
        std::fprintf(stderr,
                     "zemtime: %s: the clock was changed: %s occurring twice, read as the earlier; "
                     "%s not occurring, moved on\n",
                     name.c_str(), CountTimes(counts.repeated).c_str(),
                     CountTimes(counts.skipped).c_str());
    }
}

namespace {

std::string Describe(const TimePlace& place)
{
    std::string where = place.isSearched ? "inside the line" : "at the beginning of the line";
    if (!place.key.empty()) {
        where = "under the key " + Printable(place.key) +
                (place.isSearched ? " of an object inside the line" : "");
    }
    return std::string(place.form->name) + ", " + where;
}

}  // namespace

void Explain(const std::string& file, const TimeLayout& layout, const TimeOptions& options,
             const TimeCounts& counts, const YearSteps& years, const Explanation& explanation)
{
    std::printf("%s: %" PRIu64 " lines\n", Printable(file).c_str(), explanation.lines);
    for (size_t i = 0; i < layout.places.size(); ++i) {
        if (counts.atPlace[i] != 0) {
            std::printf("  %10" PRIu64 "  %s: %s\n", counts.atPlace[i],
                        Describe(layout.places[i]).c_str(), layout.places[i].form->grammar);
        }
    }
    if (counts.withoutYear != 0) {
        int last = years.firstYear + years.steps;
        std::string range = std::to_string(years.firstYear);
        range += last != years.firstYear ? " to " + std::to_string(last) : "";
        std::printf("  %10" PRIu64 "  without a year: %s, %s\n", counts.withoutYear, range.c_str(),
                    options.year      ? "counted from --year on"
                    : layout.hasOrder ? "counted back from when the file was modified"
                                      : "each the latest that does not lie beyond tomorrow");
    }
    if (counts.assumed != 0) {
        std::printf("  %10" PRIu64 "  without a zone: as of the one that --assume names\n",
                    counts.assumed);
    }
    for (const TimeExample& example : explanation.examples) {
        std::printf("  %s  %s\n", PrintInstant(example.t, explanation.zone).c_str(),
                    Printable(example.line).c_str());
    }
}
