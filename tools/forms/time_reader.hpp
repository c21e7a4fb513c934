// The time that each line of an input tells, in the form in which its program writes it.
//
// An input is looked at once, in samples, to find which forms its lines have and where
// (FindTimeLayout). Then each line is read for itself, by that layout alone: neither the number of
// parts that an input is read in nor their order counts. Only times that lack a year depend on
// their neighbours; see YearSteps.

#ifndef ZEMTIME_TOOLS_TIME_READER_HPP
#define ZEMTIME_TOOLS_TIME_READER_HPP

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Zem/Os/ZemTimeText.h"
#include "tools/common/text.hpp"
#include "tools/forms/form_table.hpp"

// What the command line says of times.
struct TimeOptions {
    std::optional<Zone> assumed;  // of times without a zone; none: they are not read
    std::optional<int> year;      // of the first time without one; none: by the date of the input
    const Form* form = nullptr;   // null: found out
    std::string key;              // whose value is the time; empty: the usual ones
};

// A form and where it stands: to be searched for, or at the beginning of the line, perhaps behind a
// bracket, a syslog priority or an asterisk; or as the value of a key.
struct TimePlace {
    const Form* form = nullptr;
    bool isSearched = false;
    std::string key;
};

// Which forms the lines of one input have, and where. Read only.
struct TimeLayout {
    static constexpr size_t kMostPlaces = 4;

    std::vector<TimePlace> places;  // tried in this order; inside lines the leftmost wins
    bool isColoured = false;        // colour codes stand among what is read
    bool hasOrder = false;          // a file: years that lack follow from the order of its lines
    ZemTime latest = 0;             // no time that lacks a year lies beyond this one
};

// How many bytes of an input's beginning FindTimeLayout looks at.
constexpr size_t kTimeSample = size_t{64} << 10;

// Looks at samples of an input: of a regular file at its modification time and at what stands at
// the beginning, in the middle and at the end of what the descriptor has not read yet, which it
// does not move; of anything else at `beginning`, which is what LineReader::Beginning gave.
TimeLayout FindTimeLayout(int descriptor, std::string_view beginning, const TimeOptions& options);

// The same from sample lines.
std::vector<TimePlace> FindPlaces(const std::vector<std::string_view>& lines,
                                  const TimeOptions& options);

// No time of now that lacks a year lies beyond this: a day ahead, for clocks and zones that differ.
ZemTime LatestNow();

// How the times that lack a year ran over the end of a year in one part of a file. Read each part
// with a TimeReader, then ask YearsBehind; a part whose answer is not 0 is to be read again with
// it.
struct YearSteps {
    bool any = false;
    ZemTime first = 0;  // both as if they were of the year 2000, in UTC
    ZemTime last = 0;
    int firstYear = 0;  // the one that the first was read with
    int steps = 0;      // how many years later the last is

    // Adds those of the part that follows.
    void Append(const YearSteps& next);
};

// For each part of a file, in order, how many years too late its times were read.
std::vector<int> YearsBehind(const std::vector<YearSteps>& parts, const TimeLayout& layout,
                             const TimeOptions& options);

// What became of the lines.
struct TimeCounts {
    std::array<ZemUint64, TimeLayout::kMostPlaces> atPlace = {};  // lines read by each place
    ZemUint64 withoutYear = 0;  // read with the year that follows from the others
    ZemUint64 assumed = 0;      // read as of the assumed zone
    ZemUint64 withoutZone = 0;  // not read: a zone is lacking, or not the one that is assumed
    ZemUint64 repeated = 0;     // read as the earlier of two
    ZemUint64 skipped = 0;      // moved on with the clock

    void Add(const TimeCounts& other)
    {
        for (size_t i = 0; i < atPlace.size(); ++i) {
            atPlace[i] += other.atPlace[i];
        }
        withoutYear += other.withoutYear;
        assumed += other.assumed;
        withoutZone += other.withoutZone;
        repeated += other.repeated;
        skipped += other.skipped;
    }
};

// Reads the lines of one part of an input, in their order.
class TimeReader {
  public:
    // `yearsBehind`: what YearsBehind said of the part, 0 in the first turn. Keeps references.
    TimeReader(const TimeLayout& layout, const TimeOptions& options, int yearsBehind = 0);

    // The instant that `line` tells; none when it tells no time, or one whose zone is not known, or
    // one that a ZemTime does not hold. Never ZEM_TIME_INFINITE.
    std::optional<ZemTime> Read(std::string_view line)
    {
        // Most lines: a timestamp at the beginning, as the library reads it. Where the last had no
        // zone this one will not have one either; what is tried first makes no difference.
        ZemTime t = ZEM_TIME_INFINITE;
        size_t bracket = !line.empty() && line[0] == '[' ? 1 : 0;
        if (isPlain_ && !wasLocal_ &&
            ZemTimeParse(&t, line.data() + bracket, line.size() - bracket) != 0 &&
            t != ZEM_TIME_INFINITE) {
            counts_.atPlace[0] += 1;
            return t;
        }
        return ReadPlaces(line);
    }

    // The same of a text whose form is known. Sets the year of its record.
    std::optional<ZemTime> InstantOf(Moment& m);

    [[nodiscard]] const YearSteps& Years() const
    {
        return years_;
    }

    [[nodiscard]] const TimeCounts& Counts() const
    {
        return counts_;
    }

  private:
    std::optional<ZemTime> ReadPlaces(std::string_view line);
    std::optional<ZemTime> ReadPlain(std::string_view line, Moment& m);
    std::optional<ZemTime> InstantInAssumedZone(const Moment& m);
    bool SetYear(ZemGregorianTime& record);

    const TimeLayout& layout_;
    const TimeOptions& options_;
    bool isPlain_;  // the first place is the beginning, and the form the library's own
    bool wasLocal_ = false;
    int yearsBehind_;
    int year_ = 0;  // of the last time that lacked one
    YearSteps years_;
    TimeCounts counts_;
};

#endif
