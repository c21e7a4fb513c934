// Durations: as compact text (1.50 ms, 2 h 5 m), as exact text (2h5m30.5s), and read back from
// that.

#include <absl/strings/str_format.h>
#include <absl/time/time.h>
#include <fmt/chrono.h>
#include <fmt/compile.h>

#include <cmath>
#include <string>
#include <string_view>

#include "Zem/Os/ZemTime.hpp"
#include "limit.h"
#include "values.h"

namespace bench {

namespace {

ZemTime g_durations[kValues];
std::string g_texts[kValues];
char g_buf[32];
char g_exact[32];

// The reference: the text of a magnitude with one of the eight forms, put together from decimal
// digits cut off a longer text.
std::string TextOf(std::uint64_t n)
{
    auto two = [n](std::uint64_t unit, std::uint64_t part, const char* first, const char* second) {
        return fmt::format("{} {} {} {}", n / unit, first, n % unit / part, second);
    };
    constexpr std::uint64_t minute = 60000000000;
    if (n < 1000) {
        return fmt::format("{} ns", n);
    }
    if (n < minute) {
        std::string digits = std::to_string(n);
        std::size_t wholes = (digits.size() - 1) % 3 + 1;
        std::size_t power = (digits.size() - 1) / 3;
        const char* units[] = {"ns", "\xC2\xB5s", "ms", "s"};
        std::string text = digits.substr(0, wholes);
        if (wholes < 3) {
            text += fmt::format(".{}", digits.substr(wholes, 3 - wholes));
        }
        return fmt::format("{} {}", text, units[power]);
    }
    if (n < 60 * minute) {
        return two(minute, minute / 60, "m", "s");
    }
    if (n < 1440 * minute) {
        return two(60 * minute, minute, "h", "m");
    }
    if (n < 144000 * minute) {
        return two(1440 * minute, 60 * minute, "d", "h");
    }
    return fmt::format("{} d", n / (1440 * minute));
}

// All magnitudes are as likely, three values in four are positive.
void MakeValues()
{
    for (std::size_t i = 0; i < kValues; ++i) {
        double exponent = static_cast<double>(Between(0, 62999)) / 1000;
        auto n = static_cast<std::int64_t>(std::exp2(exponent));
        bool negative = Between(0, 3) == 0;
        g_durations[i] = negative ? -n : n;
        g_texts[i] =
            fmt::format("{}{}", negative ? "-" : "", TextOf(static_cast<std::uint64_t>(n)));
    }
}

// Chooses the form as a caller would who has only a formatter: `print(format, values...)` appends.
template <class Printer>
const char* ByForm(ZemTime t, Printer printer)
{
    using U = unsigned;
    auto n = static_cast<std::uint64_t>(t);
    char* p = g_buf;
    if (t < 0) {
        n = 0 - n;
        *p++ = '-';
    }
    auto fraction = [&](U thousandths, const char* unit) {
        U whole = thousandths / 1000;
        U rest = thousandths % 1000;
        if (whole >= 100) {
            printer.Whole(p, whole, unit);
        } else if (whole >= 10) {
            printer.Tenths(p, whole, rest / 100, unit);
        } else {
            printer.Hundredths(p, whole, rest / 10, unit);
        }
    };
    constexpr std::uint64_t second = 1000000000;
    if (n < 1000) {
        printer.Whole(p, static_cast<U>(n), "ns");
    } else if (n < 1000000) {
        fraction(static_cast<U>(n), "\xC2\xB5s");
    } else if (n < second) {
        fraction(static_cast<U>(n / 1000), "ms");
    } else if (n < 60 * second) {
        fraction(static_cast<U>(n / 1000000), "s");
    } else if (n < 3600 * second) {
        auto s = static_cast<U>(n / second);
        printer.Two(p, s / 60, "m", s % 60, "s");
    } else if (n < 86400 * second) {
        auto m = static_cast<U>(n / (60 * second));
        printer.Two(p, m / 60, "h", m % 60, "m");
    } else if (n < 8640000 * second) {
        auto h = static_cast<U>(n / (3600 * second));
        printer.Two(p, h / 24, "d", h % 24, "h");
    } else {
        printer.Whole(p, static_cast<U>(n / (86400 * second)), "d");
    }
    return g_buf;
}

struct FmtCompiled {
    static void Whole(char* p, unsigned whole, const char* unit)
    {
        *fmt::format_to(p, FMT_COMPILE("{} {}"), whole, unit) = '\0';
    }
    static void Tenths(char* p, unsigned whole, unsigned tenths, const char* unit)
    {
        *fmt::format_to(p, FMT_COMPILE("{}.{} {}"), whole, tenths, unit) = '\0';
    }
    static void Hundredths(char* p, unsigned whole, unsigned hundredths, const char* unit)
    {
        *fmt::format_to(p, FMT_COMPILE("{}.{:02} {}"), whole, hundredths, unit) = '\0';
    }
    static void Two(char* p, unsigned a, const char* aUnit, unsigned b, const char* bUnit)
    {
        *fmt::format_to(p, FMT_COMPILE("{} {} {} {}"), a, aUnit, b, bUnit) = '\0';
    }
};

struct Snprintf {
    static constexpr std::size_t kRoom = sizeof g_buf - 1;

    static void Whole(char* p, unsigned whole, const char* unit)
    {
        std::snprintf(p, kRoom, "%u %s", whole, unit);
    }
    static void Tenths(char* p, unsigned whole, unsigned tenths, const char* unit)
    {
        std::snprintf(p, kRoom, "%u.%u %s", whole, tenths, unit);
    }
    static void Hundredths(char* p, unsigned whole, unsigned hundredths, const char* unit)
    {
        std::snprintf(p, kRoom, "%u.%02u %s", whole, hundredths, unit);
    }
    static void Two(char* p, unsigned a, const char* aUnit, unsigned b, const char* bUnit)
    {
        std::snprintf(p, kRoom, "%u %s %u %s", a, aUnit, b, bUnit);
    }
};

// {fmt}'s own text of a duration, in a unit that suits its size: 1.50ms.
std::string_view WithFmtChrono(ZemTime t)
{
    using Ratio = std::ratio<1>;
    ZemTime magnitude = t < 0 ? -t : t;
    auto value = static_cast<double>(t);
    auto print = [&](auto duration) {
        char* end = fmt::format_to(g_buf, FMT_COMPILE("{:.3}"), duration);
        return std::string_view(g_buf, static_cast<std::size_t>(end - g_buf));
    };
    if (magnitude < 1000) {
        return print(std::chrono::duration<double, std::nano>(value));
    }
    if (magnitude < 1000000) {
        return print(std::chrono::duration<double, std::micro>(value / 1e3));
    }
    if (magnitude < 1000000000) {
        return print(std::chrono::duration<double, std::milli>(value / 1e6));
    }
    return print(std::chrono::duration<double, Ratio>(value / 1e9));
}

void RegisterExactly()
{
    // Abseil's text stands for any, as it has a form of its own below a second.
    auto accept = [](std::size_t i, std::string_view text) {
        absl::Duration read;
        return absl::ParseDuration(absl::string_view(text.data(), text.size()), &read) &&
               read == absl::Nanoseconds(g_durations[i]);
    };
    Job job("exact duration", [](std::size_t) { return ""; });
    job.AddOther(
        "ours exported", "",
        [](std::size_t i) {
            return std::string_view(g_exact,
                                    ZemTimePrintDuration(g_durations[i], g_exact, sizeof g_exact));
        },
        accept);
    job.AddOther(
        "Abseil FormatDuration", "",
        [](std::size_t i) { return absl::FormatDuration(absl::Nanoseconds(g_durations[i])); },
        accept);
}

void RegisterReading()
{
    static std::string texts[kValues];
    for (std::size_t i = 0; i < kValues; ++i) {
        texts[i] = absl::FormatDuration(absl::Nanoseconds(g_durations[i]));
    }
    Job job("parse a duration", [](std::size_t i) { return g_durations[i]; });
    job.Add("ours exported", [](std::size_t i) {
        ZemTime t;
        ZemSizeT taken = ZemTimeParseDuration(&t, texts[i].data(), texts[i].size());
        return taken == texts[i].size() ? t : ZEM_TIME_INFINITE;
    });
    job.Add("C++ face", [](std::size_t i) {
        std::optional<std::chrono::nanoseconds> read = zem::ParseDuration(texts[i]);
        return read ? zem::FromChrono(*read) : ZEM_TIME_INFINITE;
    });
    job.Add("Abseil ParseDuration", [](std::size_t i) {
        absl::Duration read;
        return absl::ParseDuration(texts[i], &read) ? absl::ToInt64Nanoseconds(read)
                                                    : ZEM_TIME_INFINITE;
    });
}

}  // namespace

void RegisterCompact()
{
    MakeValues();
    Job job("compact duration", [](std::size_t i) -> std::string_view { return g_texts[i]; });
    auto add = [&](const char* column, auto op) {
        job.Add(column, op, [](const char* text) { return std::string_view(text); });
    };
    add("ours exported",
        [](std::size_t i) { return ZemTimePrintCompact(g_durations[i], g_buf, sizeof g_buf); });
    job.Add(
        "C++ face", [](std::size_t i) { return zem::Compact(zem::ToDuration(g_durations[i])); },
        [](const auto& text) { return std::string_view(text); });
    add("hand kernel",
        [](std::size_t i) { return limit::PrintCompact(g_durations[i], g_buf, sizeof g_buf); });
    add("{fmt} by hand, compiled",
        [](std::size_t i) { return ByForm(g_durations[i], FmtCompiled()); });
    add("snprintf by hand", [](std::size_t i) { return ByForm(g_durations[i], Snprintf()); });

    job.AddOther(
        "{fmt} chrono", "its own form, such as 1.50ms",
        [](std::size_t i) { return WithFmtChrono(g_durations[i]); },
        [](std::size_t i, std::string_view text) {
            return text.back() == 's' && (text.front() == '-') == (g_durations[i] < 0);
        });
    job.AddOther(
        "Abseil FormatDuration", "its own form, such as 2h5m30.5s",
        [](std::size_t i) { return absl::FormatDuration(absl::Nanoseconds(g_durations[i])); },
        [](std::size_t i, const std::string& text) {
            absl::Duration read;
            return absl::ParseDuration(text, &read) && read == absl::Nanoseconds(g_durations[i]);
        });
    RegisterExactly();
    RegisterReading();
}

}  // namespace bench
