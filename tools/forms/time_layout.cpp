// Finds out which forms an input has.

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "tools/forms/time_place.hpp"
#include "tools/forms/time_reader.hpp"

namespace {

constexpr off_t kSampled = kTimeSample;  // bytes of each sample
constexpr ZemTime kTolerance = ZemTime{86400} * 1000000000;
constexpr size_t kLines = 300;  // of all samples together

const char* const kKeys[] = {
    "@timestamp", "timestamp",    "time",        "ts",         "t",
    "date",       "datetime",     "eventTime",   "asctime",    "@t",
    "started_at", "timeUnixNano", "epochSecond", "timeMillis", "__REALTIME_TIMESTAMP"};

struct Found {
    TimePlace place;
    size_t at = 0;     // where in the line
    size_t lines = 0;  // how many samples
};

std::vector<std::string> KeysOf(const TimeOptions& options)
{
    if (!options.key.empty()) {
        return {options.key};
    }
    return {std::begin(kKeys), std::end(kKeys)};
}

// Where in `line` that place has a time; npos: nowhere.
size_t FindAt(const TimePlace& place, std::string_view line)
{
    Moment m;
    size_t at = 0;
    return ReadPlace(place, line, m, at) ? at : std::string_view::npos;
}

// The first of `places` that has a time, or the one whose time stands leftmost.
Found FirstOf(const std::vector<TimePlace>& places, std::string_view line, bool isLeftmost)
{
    Found best;
    best.at = std::string_view::npos;
    for (const TimePlace& place : places) {
        size_t at = FindAt(place, line);
        if (at < best.at) {
            best.place = place;
            best.at = at;
            if (!isLeftmost) {
                break;
            }
        }
    }
    return best;
}

// All places that the options allow, by what a line is tried for first.
struct Candidates {
    explicit Candidates(const TimeOptions& options)
    {
        for (const Form& form : FormTable()) {
            if (options.form != nullptr && options.form != &form) {
                continue;
            }
            if (form.stand == Stand::kKey) {
                for (const std::string& key : KeysOf(options)) {
                    (form.lead == '{' ? objects : pairs).push_back({&form, false, key});
                }
            } else if (options.key.empty()) {
                starts.push_back({&form, false, ""});
                if (form.stand == Stand::kAnywhere) {
                    searches.push_back({&form, true, ""});
                }
            }
        }
        for (TimePlace place : objects) {
            place.isSearched = true;
            searches.push_back(place);
        }
    }

    std::vector<TimePlace> objects;  // at the beginning of the line
    std::vector<TimePlace> starts;
    std::vector<TimePlace> pairs;
    std::vector<TimePlace> searches;
};

Found FindIn(std::string_view line, const Candidates& candidates)
{
    for (const std::vector<TimePlace>* places : {&candidates.objects, &candidates.starts}) {
        Found found = FirstOf(*places, line, false);
        if (found.place.form != nullptr) {
            return found;
        }
    }
    // Of an object only its own members tell when it was written.
    if (!line.empty() && line[0] == '{' && !candidates.objects.empty()) {
        return {};
    }
    // A search finds the value of a key too, which is the more telling, and in a line of pairs what
    // other keys have.
    Found pair = FirstOf(candidates.pairs, line, false);
    if (pair.place.form != nullptr && IsOwn(pair.place, line)) {
        return pair;
    }
    Found searched = FirstOf(candidates.searches, line, true);
    return pair.at <= searched.at ? pair : searched;
}

bool IsSame(const TimePlace& a, const TimePlace& b)
{
    return a.form == b.form && a.isSearched == b.isSearched && a.key == b.key;
}

// What a line is tried for first: what stands at its beginning is its own.
int RankOf(const TimePlace& place)
{
    return place.isSearched ? 2 : place.form->lead == 'a' && !place.key.empty() ? 1 : 0;
}

std::vector<std::string_view> LinesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (!line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

// The whole lines of `size` bytes from `offset` on; `first` and `end` are those of the input.
std::string ReadSample(int descriptor, off_t offset, off_t first, off_t end)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    std::string text(static_cast<size_t>(std::min(kSampled, end - offset)), '\0');
    ssize_t size = pread(descriptor, text.data(), text.size(), offset);
    text.resize(size > 0 ? static_cast<size_t>(size) : 0);
    if (offset != first) {
        text.erase(0, std::min(text.find('\n'), text.size()));
    } else if (text.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0) {
        text.erase(0, kByteOrderMark.size());
    }
    size_t newline = text.rfind('\n');
    if (offset + kSampled < end && newline != std::string::npos) {
        text.erase(newline + 1);
    }
    return text;
}

// So many of the lines, evenly.
void ThinOut(std::vector<std::string_view>& lines)
{
    if (lines.size() > kLines) {
        for (size_t i = 0; i < kLines; ++i) {
            lines[i] = lines[i * lines.size() / kLines];
        }
        lines.resize(kLines);
    }
}

// Where nothing is known: what most programs write, or wherever what was asked for may stand.
std::vector<TimePlace> DefaultPlaces(const TimeOptions& options)
{
    if (options.form == nullptr && options.key.empty()) {
        return {{FormTable::begin(), false, ""}};
    }
    Candidates candidates(options);
    std::vector<TimePlace> places;
    for (const auto* some :
         {&candidates.objects, &candidates.starts, &candidates.pairs, &candidates.searches}) {
        places.insert(places.end(), some->begin(), some->end());
    }
    places.resize(std::min(places.size(), TimeLayout::kMostPlaces));
    return places;
}

}  // namespace

std::vector<TimePlace> FindPlaces(const std::vector<std::string_view>& lines,
                                  const TimeOptions& options)
{
    const Candidates candidates(options);
    std::vector<Found> tally;
    size_t dated = 0;
    for (std::string_view line : lines) {
        Found found = FindIn(line, candidates);
        if (found.place.form == nullptr) {
            continue;
        }
        ++dated;
        auto known = std::find_if(tally.begin(), tally.end(), [&found](const Found& other) {
            return IsSame(found.place, other.place);
        });
        if (known == tally.end()) {
            known = tally.insert(known, found);
        }
        known->lines += 1;
    }
    // A few times inside lines may well be of messages, and a few numbers no times.
    auto isRare = [&](const Found& found) {
        bool isNumber = found.place.form->stand == Stand::kStart;
        return (isNumber && 4 * found.lines < lines.size()) ||
               (found.place.isSearched && 8 * found.lines < dated);
    };
    tally.erase(std::remove_if(tally.begin(), tally.end(), isRare), tally.end());
    std::sort(tally.begin(), tally.end(), [](const Found& a, const Found& b) {
        return a.lines != b.lines ? a.lines > b.lines : a.place.form < b.place.form;
    });
    tally.resize(std::min(tally.size(), TimeLayout::kMostPlaces));
    std::stable_sort(tally.begin(), tally.end(), [](const Found& a, const Found& b) {
        return RankOf(a.place) < RankOf(b.place);
    });
    std::vector<TimePlace> places;
    places.reserve(tally.size());
    for (Found& found : tally) {
        places.push_back(std::move(found.place));
    }
    return places;
}

ZemTime LatestNow()
{
    return AddSaturating(ZemTimeGetCurrentWallTime(), kTolerance);
}

TimeLayout FindTimeLayout(int descriptor, std::string_view beginning, const TimeOptions& options)
{
    TimeLayout layout;
    std::vector<std::string> samples;
    struct stat status;
    off_t begin = lseek(descriptor, 0, SEEK_CUR);
    if (begin >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        off_t end = std::max(status.st_size, begin);
        samples.push_back(ReadSample(descriptor, begin, begin, end));
        for (off_t offset : {begin + (end - begin - kSampled) / 2, end - kSampled}) {
            if (offset >= begin + kSampled) {
                samples.push_back(ReadSample(descriptor, offset, begin, end));
            }
        }
        layout.hasOrder = true;
        // A file system holds times that a ZemTime does not.
        constexpr time_t kMost = ZEM_TIME_INFINITE / 1000000000;
        time_t modified = std::clamp(status.st_mtime, -kMost, kMost);
        layout.latest = AddSaturating(ZemTimeSecs(modified), kTolerance);
    } else {
        samples.emplace_back(beginning.substr(0, kTimeSample));
        layout.latest = LatestNow();
    }
    std::vector<std::string_view> lines;
    std::vector<std::string> plain;
    for (const std::string& sample : samples) {
        std::vector<std::string_view> more = LinesOf(sample);
        lines.insert(lines.end(), more.begin(), more.end());
    }
    ThinOut(lines);
    plain.reserve(lines.size());
    for (std::string_view& line : lines) {
        if (HasColour(line)) {
            layout.isColoured = true;
            line = plain.emplace_back(WithoutColour(line));
        }
    }
    layout.places = FindPlaces(lines, options);
    if (layout.places.empty()) {
        layout.places = DefaultPlaces(options);
    }
    return layout;
}
