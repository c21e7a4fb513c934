#include "convert.hpp"

#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <optional>

#include "line_reader.hpp"
#include "text.hpp"
#include "unparsed.hpp"

namespace {

struct Instant {
    ZemTime t = 0;
    ZemGregorianTime record;  // as the input has it, its offset included
};

ZemUint64 MagnitudeOf(ZemTime t)
{
    return t < 0 ? 0 - static_cast<ZemUint64>(t) : static_cast<ZemUint64>(t);
}

std::string PrintText(const Instant& instant)
{
    return PrintRecord(instant.record);
}

std::string PrintUtc(const Instant& instant)
{
    return PrintInstant(instant.t, {Zone::Kind::kUtc, 0});
}

std::string PrintLocal(const Instant& instant)
{
    return PrintInstant(instant.t, {Zone::Kind::kLocal, 0});
}

std::string PrintSeconds(const Instant& instant)
{
    ZemUint64 magnitude = MagnitudeOf(instant.t);
    char fraction[16];
    std::snprintf(fraction, sizeof fraction, ".%09" PRIu64, magnitude % 1000000000);
    std::string text = instant.t < 0 ? "-" : "";
    text += std::to_string(magnitude / 1000000000) + fraction;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return text;
}

std::string PrintNanoseconds(const Instant& instant)
{
    return std::to_string(instant.t);
}

std::string PrintNtp(const Instant& instant)
{
    char text[32];
    std::snprintf(text, sizeof text, "ntp:0x%016" PRIx64, ZemTimeGetNtp(instant.t));
    return text;
}

struct Form {
    const char* name;
    std::string (*print)(const Instant& instant);
};

const Form kForms[] = {{"text", PrintText},
                       {"utc", PrintUtc},
                       {"local", PrintLocal},
                       {"seconds", PrintSeconds},
                       {"nanoseconds", PrintNanoseconds},
                       {"ntp", PrintNtp}};

// Reads all of `digits` as a number in `base`.
std::optional<ZemUint64> ParseNumber(std::string_view digits, int base)
{
    ZemUint64 value = 0;
    const char* end = digits.data() + digits.size();
    auto number = std::from_chars(digits.data(), end, value, base);
    return number.ec == std::errc() && number.ptr == end ? std::optional(value) : std::nullopt;
}

// Reads [sign]seconds[.fraction]; like those of a timestamp, digits after the ninth are dropped.
std::optional<ZemTime> ParseSeconds(std::string_view text)
{
    constexpr ZemUint64 kMaxSeconds = 9223372036;

    bool negative = text.substr(0, 1) == "-";
    text.remove_prefix(negative || text.substr(0, 1) == "+" ? 1 : 0);
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
    ZemUint64 magnitude = *seconds * 1000000000 + *nanoseconds;
    if (magnitude > static_cast<ZemUint64>(INT64_MAX) + (negative ? 1 : 0)) {
        return std::nullopt;
    }
    return static_cast<ZemTime>(negative ? 0 - magnitude : magnitude);
}

std::optional<ZemTime> ParseNtp(std::string_view digits)
{
    std::optional<ZemUint64> ntp = ParseNumber(digits, 16);
    ZemTime t = 0;
    return ntp ? std::optional(*ZemTimeConstructFromNtp(&t, *ntp)) : std::nullopt;
}

std::optional<Instant> ParseInstant(const std::string& text)
{
    Instant instant;
    std::optional<ZemTime> t;
    if (text.compare(0, 1, "@") == 0) {
        t = ParseSeconds(std::string_view(text).substr(1));
    } else if (text.compare(0, 6, "ntp:0x") == 0) {
        t = ParseNtp(std::string_view(text).substr(6));
    } else if (text.find('\0') == std::string::npos &&
               ZemGregorianTimeConstructCStr(&instant.record, text.c_str()) != nullptr) {
        instant.t = ZemGregorianTimeGetTime(&instant.record);
        return instant.t != ZEM_TIME_INFINITE ? std::optional(instant) : std::nullopt;
    }
    if (!t) {
        return std::nullopt;
    }
    instant.t = *t;
    ZemGregorianTimeConstructUTC(&instant.record, *t);
    return instant;
}

void PrintForms(const Instant& instant, const std::string& form)
{
    for (const Form& known : kForms) {
        if (form.empty()) {
            std::printf("%-12s %s\n", known.name, known.print(instant).c_str());
        } else if (form == known.name) {
            std::printf("%s\n", known.print(instant).c_str());
        }
    }
}

// Converts texts one after another and remembers whether any was one.
class Converter {
  public:
    explicit Converter(const std::string& form) : form_(form) {}

    void Convert(const std::string& source, ZemUint64 number, std::string_view text)
    {
        std::optional<Instant> instant = ParseInstant(std::string(text));
        if (!instant) {
            UnparsedLines line;
            line.Add(number, text);
            unparsed_.Add(line, source, 0);
            return;
        }
        if (any_ && form_.empty()) {
            std::puts("");
        }
        PrintForms(*instant, form_);
        any_ = true;
    }

    [[nodiscard]] int Finish() const
    {
        unparsed_.ShowRest();
        return any_ ? 0 : 1;
    }

  private:
    const std::string& form_;
    UnparsedReport unparsed_;
    bool any_ = false;
};

int ConvertStandardInput(Converter& converter)
{
    LineReader reader(STDIN_FILENO);
    Line line;
    for (ZemUint64 number = 1; reader.Next(line); ++number) {
        if (line.size != 0) {
            converter.Convert("-", number, line.View());
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
    for (const Form& form : kForms) {
        names.emplace_back(form.name);
    }
    return names;
}

int RunConvert(const ConvertOptions& options)
{
    Converter converter(options.form);
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
    Instant now;
    now.t = ZemTimeGetCurrentWallTime();
    if (ZemTimeInitialize() == 0 || ZemGregorianTimeConstruct(&now.record, now.t) == nullptr) {
        std::fputs("zemtime: a clock of this host cannot be read\n", stderr);
        return 1;
    }
    PrintForms(now, "");

    Instant monotonic;
    monotonic.t = ZemTimeGetCurrentMonotonicTime();
    std::printf("%-12s %s s, %s\n", "monotonic", PrintSeconds(monotonic).c_str(),
                PrintDuration(monotonic.t).c_str());
    // The offset ends the text of a local time.
    std::string local = PrintText(now);
    std::printf("%-12s %s, %d s\n", "offset", local.substr(local.rfind(' ') + 1).c_str(),
                ZemGregorianTimeGetUTCOffset(&now.record));
    return 0;
}
