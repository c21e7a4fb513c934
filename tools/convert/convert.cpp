#include "tools/convert/convert.hpp"

#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <optional>
#include <utility>

#include "Zem/Os/ZemTimeText.h"
#include "tools/common/line_reader.hpp"
#include "tools/common/quote.hpp"
#include "tools/common/text.hpp"
#include "tools/common/unparsed.hpp"

namespace {

// An instant or a duration.
struct Value {
    ZemTime t = 0;
    ZemGregorianTime record = {};  // of an instant, as the input has it, its offset included
    bool isDuration = false;
};

ZemUint64 MagnitudeOf(ZemTime t)
{
    return t < 0 ? 0 - static_cast<ZemUint64>(t) : static_cast<ZemUint64>(t);
}

std::string PrintRfc3339(const ZemGregorianTime& record)
{
    char text[48];
    return {text, ZemGregorianTimePrint(&record, 9, text, sizeof text)};
}

std::string PrintRfc3339(const Value& value)
{
    return PrintRfc3339(value.record);
}

// The same for the eye: spaces between its parts, and numbers for Z.
std::string PrintSpaced(const ZemGregorianTime& record)
{
    constexpr size_t kZoneAt = sizeof "2024-03-01T12:30:45.250000000" - 1;
    std::string text = PrintRfc3339(record);
    std::string zone = text.substr(kZoneAt);
    text[text.find('T')] = ' ';
    return text.substr(0, kZoneAt) + ' ' + (zone == "Z" ? "+00:00" : zone);
}

std::string PrintText(const Value& value)
{
    return PrintSpaced(value.record);
}

std::string PrintUtc(const Value& value)
{
    return PrintSpaced(RecordIn(Zone{}, value.t));
}

std::string PrintLocal(const Value& value)
{
    static const Zone local = LocalZone();
    return PrintSpaced(RecordIn(local, value.t));
}

// [-]seconds[.fraction], exactly
std::string PrintExactSeconds(ZemTime t)
{
    ZemUint64 magnitude = MagnitudeOf(t);
    char fraction[16];
    std::snprintf(fraction, sizeof fraction, ".%09" PRIu64, magnitude % 1000000000);
    std::string text = t < 0 ? "-" : "";
    text += std::to_string(magnitude / 1000000000) + fraction;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return text;
}

// A bare number could be of any unit and stand for a duration, so both forms carry marks.
std::string PrintSeconds(const Value& value)
{
    return "@" + PrintExactSeconds(value.t);
}

std::string PrintNanoseconds(const Value& value)
{
    return "@" + std::to_string(value.t) + "ns";
}

std::string PrintExact(const Value& value)
{
    char text[32];
    return {text, ZemTimePrintDuration(value.t, text, sizeof text)};
}

std::string PrintCompact(const Value& value)
{
    return PrintDuration(value.t);
}

constexpr ZemTime kNtpEraSeconds = ZemTime{1} << 32;

// The era of NTP in which `t` lies: 0 began in 1900.
ZemTime NtpEraOf(ZemTime t)
{
    constexpr ZemTime kSecondsTo1970 = 2208988800;
    ZemTime seconds = t / 1000000000 - (t % 1000000000 < 0 ? 1 : 0) + kSecondsTo1970;
    return seconds / kNtpEraSeconds - (seconds % kNtpEraSeconds < 0 ? 1 : 0);
}

// ntp:0x and 64 bits. An era other than 0 stands in between: ntp:1:0x0000000000000000.
std::string PrintNtp(const Value& value)
{
    ZemTime era = NtpEraOf(value.t);
    char text[32];
    std::snprintf(text, sizeof text, "0x%016" PRIx64, ZemTimeGetNtp(value.t));
    return "ntp:" + (era != 0 ? std::to_string(era) + ":" : "") + text;
}

struct PrintedForm {
    const char* name;
    std::string (*print)(const Value& value);
    bool ofDuration;
};

const PrintedForm kForms[] = {
    {"rfc3339", PrintRfc3339, false}, {"text", PrintText, false},
    {"utc", PrintUtc, false},         {"local", PrintLocal, false},
    {"seconds", PrintSeconds, false}, {"nanoseconds", PrintNanoseconds, false},
    {"ntp", PrintNtp, false},         {"duration", PrintExact, true},
    {"compact", PrintCompact, true}};

// Takes a sign from the front of `text`; whether it is a minus.
bool TakeSign(std::string_view& text)
{
    bool negative = text.substr(0, 1) == "-";
    text.remove_prefix(negative || text.substr(0, 1) == "+" ? 1 : 0);
    return negative;
}

// Nothing when a ZemTime does not hold it.
std::optional<ZemTime> WithSign(bool negative, ZemUint64 magnitude)
{
    if (magnitude > static_cast<ZemUint64>(INT64_MAX) + (negative ? 1 : 0)) {
        return std::nullopt;
    }
    return static_cast<ZemTime>(negative ? 0 - magnitude : magnitude);
}

// Reads [sign]seconds[.fraction]; like those of a timestamp, digits after the ninth are dropped.
std::optional<ZemTime> ParseSeconds(std::string_view text)
{
    constexpr ZemUint64 kMaxSeconds = 9223372036;

    bool negative = TakeSign(text);
    size_t point = std::min(text.find('.'), text.size());
    std::string fraction(text.substr(std::min(point + 1, text.size())));
    if (fraction.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    fraction.resize(9, '0');
    std::optional<ZemUint64> seconds = ParseNumber(text.substr(0, point), 10);
    std::optional<ZemUint64> nanoseconds = ParseNumber(fraction, 10);
    if (!seconds || !nanoseconds || *seconds > kMaxSeconds) {
        return std::nullopt;
    }
    return WithSign(negative, *seconds * 1000000000 + *nanoseconds);
}

std::optional<ZemTime> ParseInteger(std::string_view text)
{
    bool negative = TakeSign(text);
    std::optional<ZemUint64> magnitude = ParseNumber(text, 10);
    return magnitude ? WithSign(negative, *magnitude) : std::nullopt;
}

// The nanosecond that prints as `ntp`, of the era that began in 1900; where none does, the one
// before. Rounding down here as well as in print would lose one at every turn.
ZemTime ReadNtp(ZemUint64 ntp)
{
    ZemTime t = 0;
    ZemTimeConstructFromNtp(&t, ntp);
    return ZemTimeGetNtp(t + 1) == ntp ? t + 1 : t;
}

// Reads [era:]0x and up to 16 digits.
std::optional<ZemTime> ParseNtp(std::string_view text)
{
    size_t colon = text.find(':');
    std::optional<ZemTime> era = 0;
    if (colon != std::string_view::npos) {
        era = ParseInteger(text.substr(0, colon));
        text.remove_prefix(colon + 1);
    }
    if (!era || text.substr(0, 2) != "0x") {
        return std::nullopt;
    }
    std::optional<ZemUint64> ntp = ParseNumber(text.substr(2), 16);
    ZemTime t = 0;
    if (!ntp || __builtin_mul_overflow(*era, ZemTimeSecs(kNtpEraSeconds), &t) ||
        __builtin_add_overflow(t, ReadNtp(*ntp), &t)) {
        return std::nullopt;
    }
    return t;
}

// Reads what follows @: seconds, or nanoseconds with their unit.
std::optional<ZemTime> ParseSince1970(std::string_view text)
{
    if (text.size() > 2 && text.substr(text.size() - 2) == "ns") {
        return ParseInteger(text.substr(0, text.size() - 2));
    }
    return ParseSeconds(text);
}

// The instant of a whole timestamp.
std::optional<Value> ParseTimestamp(std::string_view text)
{
    Value value;
    if (ZemTimeParse(&value.t, text.data(), text.size()) != text.size() ||
        ZemGregorianTimeParse(&value.record, text.data(), text.size()) == 0) {
        return std::nullopt;
    }
    // The last instant that there is reads as one beyond.
    if (value.t == ZEM_TIME_INFINITE) {
        char last[48];
        ZemTimePrint(value.t, ZemGregorianTimeGetUTCOffset(&value.record), 9, last, sizeof last);
        if (PrintRfc3339(value.record) != last) {
            return std::nullopt;
        }
    }
    return value;
}

// The time of a text in any form that logs have, or of a JSON object or pairs that have one.
bool ReadLogForm(std::string_view text, Moment& m)
{
    bool isBracketed = text.size() > 2 && text.front() == '[' && text.back() == ']';
    if (ReadValue(text, m) || (isBracketed && (ReadValue(text.substr(0, text.size() - 1), m) ||
                                               ReadValue(text.substr(1, text.size() - 2), m)))) {
        return true;
    }
    for (const TimePlace& place : FindPlaces({text}, TimeOptions())) {
        if (!place.key.empty() && !place.isSearched) {
            return ReadValue(FindValue(*place.form, text, place.key), m);
        }
    }
    return false;
}

std::optional<Value> ParseLogForm(std::string_view text, const TimeOptions& options)
{
    Moment m;
    if (!ReadLogForm(text, m)) {
        return std::nullopt;
    }
    if (m.kind == Moment::Kind::kInstant && !m.written.empty()) {
        return ParseTimestamp(m.written);
    }
    TimeLayout layout;
    layout.latest = LatestNow();
    bool isAssumed = !m.hasZone;
    std::optional<ZemTime> t = TimeReader(layout, options).InstantOf(m);
    if (!t) {
        return std::nullopt;
    }
    Value value;
    value.t = *t;
    value.record = RecordIn(isAssumed ? *options.assumed : Zone{}, *t);
    return value;
}

// The longest durations that there are stand for anything longer too: they are the ones where the
// text says so in nanoseconds, or as this command prints them.
bool IsExactEnd(const Value& value, std::string_view text)
{
    bool isInNanoseconds = text.size() > 2 && text.substr(text.size() - 2) == "ns";
    return PrintExact(value) == text ||
           (isInNanoseconds && ParseInteger(text.substr(0, text.size() - 2)) == value.t);
}

std::optional<Value> Parse(std::string_view text, const TimeOptions& options)
{
    Value value;
    std::optional<ZemTime> t;
    if (text.empty()) {
        return std::nullopt;
    }
    if (text[0] == '@') {
        t = ParseSince1970(text.substr(1));
    } else if (text.substr(0, 4) == "ntp:") {
        t = ParseNtp(text.substr(4));
    } else if (text == "now") {
        t = ZemTimeGetCurrentWallTime();
    } else if (ZemTimeParseDuration(&value.t, text.data(), text.size()) == text.size()) {
        value.isDuration = true;
        bool isEnd = value.t == ZEM_TIME_INFINITE || value.t == INT64_MIN;
        return isEnd && !IsExactEnd(value, text) ? std::nullopt : std::optional(value);
    } else if (std::optional<Value> timestamp = ParseTimestamp(text)) {
        return timestamp;
    } else {
        return ParseLogForm(text, options);
    }
    if (!t) {
        return std::nullopt;
    }
    value.t = *t;
    ZemGregorianTimeConstructUTC(&value.record, *t);
    return value;
}

// A form's name and the value in it.
using Printed = std::vector<std::pair<std::string, std::string>>;

// The forms that the value has, or the one or the zone that is asked for; none where it has not
// that.
Printed PrintForms(const Value& value, const std::string& form, const std::optional<Zone>& zone)
{
    Printed printed;
    if (zone) {
        if (!value.isDuration) {
            printed.emplace_back("rfc3339", PrintRfc3339(RecordIn(*zone, value.t)));
        }
        return printed;
    }
    for (const PrintedForm& known : kForms) {
        if (known.ofDuration == value.isDuration && (form.empty() || form == known.name)) {
            printed.emplace_back(known.name, known.print(value));
        }
    }
    return printed;
}

void ShowForms(const Printed& printed)
{
    for (const auto& [name, text] : printed) {
        std::printf("%-12s %s\n", name.c_str(), text.c_str());
    }
}

void ShowAsJson(std::string_view input, const Printed& printed)
{
    std::printf("{\"input\":%s", PrintJson(input).c_str());
    for (const auto& [name, text] : printed) {
        std::printf(",\"%s\":%s", name.c_str(), PrintJson(text).c_str());
    }
    std::puts("}");
}

// Converts texts one after another and remembers whether any was one.
class Converter {
  public:
    explicit Converter(const ConvertOptions& options) : options_(options) {}

    void Convert(const std::string& source, ZemUint64 number, std::string_view text)
    {
        std::optional<Value> value = Parse(text, options_.times);
        Printed printed;
        if (value) {
            printed = PrintForms(*value, options_.form, options_.zone);
        }
        if (printed.empty()) {
            UnparsedLines line;
            line.Add(number, text);
            unparsed_.Add(line, source, 0);
            return;
        }
        if (options_.json) {
            ShowAsJson(text, printed);
        } else if (!options_.form.empty() || options_.zone) {
            std::printf("%s\n", printed[0].second.c_str());
        } else {
            std::fputs(any_ ? "\n" : "", stdout);
            ShowForms(printed);
        }
        any_ = true;
    }

    [[nodiscard]] int Finish() const
    {
        unparsed_.ShowRest();
        return any_ ? 0 : 1;
    }

  private:
    const ConvertOptions& options_;
    UnparsedReport unparsed_;
    bool any_ = false;
};

int ConvertStandardInput(Converter& converter)
{
    LineReader reader(STDIN_FILENO);
    std::string_view line;
    for (ZemUint64 number = 1; reader.Next(line); ++number) {
        if (!line.empty()) {
            converter.Convert("-", number, line);
        }
    }
    int status = converter.Finish();
    if (reader.Error() != 0) {
        std::fprintf(stderr, "zemtime: -: %s\n", std::strerror(reader.Error()));
        return 1;
    }
    return status;
}

}  // namespace

std::vector<std::string> FormNames()
{
    std::vector<std::string> names;
    for (const PrintedForm& form : kForms) {
        names.emplace_back(form.name);
    }
    return names;
}

int RunConvert(const ConvertOptions& options)
{
    Converter converter(options);
    if (options.texts.empty()) {
        return ConvertStandardInput(converter);
    }
    ZemUint64 number = 0;
    for (const std::string& text : options.texts) {
        converter.Convert("argument", ++number, text);
    }
    return converter.Finish();
}

int RunNow()
{
    Value now;
    now.t = ZemTimeGetCurrentWallTime();
    if (ZemTimeInitialize() == 0) {
        std::fputs("zemtime: the monotonic clock of this host cannot be read\n", stderr);
        return 1;
    }
    now.record = RecordIn(LocalZone(), now.t);
    ShowForms(PrintForms(now, "", std::nullopt));

    Value monotonic;
    monotonic.t = ZemTimeGetCurrentMonotonicTime();
    std::printf("%-12s %s s, %s\n", "monotonic", PrintExactSeconds(monotonic.t).c_str(),
                PrintDuration(monotonic.t).c_str());
    // The offset ends the text of a local time.
    std::string local = PrintText(now);
    std::printf("%-12s %s, %d s\n", "offset", local.substr(local.rfind(' ') + 1).c_str(),
                ZemGregorianTimeGetUTCOffset(&now.record));
    return 0;
}
