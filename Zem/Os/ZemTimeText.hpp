// Timestamps and durations from string views, and printed into texts that need no memory. C++17;
// formatted by std::format where the library has it, and by {fmt} 9 and later.
//
// What is read and printed is said in ZemTimeText.h. Nothing here allocates, throws, takes a lock
// or depends on the locale.

#ifndef ZEM_OS_ZEMTIMETEXT_HPP
#define ZEM_OS_ZEMTIMETEXT_HPP

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string_view>

#include "Zem/Os/ZemTimeChrono.hpp"
#include "Zem/Os/ZemTimeText.h"

#if defined(__cpp_impl_three_way_comparison) && __has_include(<compare>)
#include <compare>
#endif
#if __has_include(<version>)
#include <version>
#endif
#if defined(__cpp_lib_format)
#include <format>
#endif

namespace zem {

// ---------------------------------------------------------------------------------------------
// Texts
// ---------------------------------------------------------------------------------------------

// A text of at most N characters within the object itself, with a NUL behind it: what printing
// returns. Becomes a string_view, streams, formats, compares and hashes like one. It is no range
// ({fmt} would print its characters one by one): iterate over view().
template <std::size_t N>
class Text {
    static_assert(N < 256, "the size is kept in a byte");

  public:
    // The empty text.
    constexpr Text() noexcept : chars_{}, size_(0) {}

    // The first N characters of `text`.
    constexpr explicit Text(std::string_view text) noexcept : Text()
    {
        while (size_ < N && size_ < text.size()) {
            chars_[size_] = text[size_];
            ++size_;
        }
    }

    // The text that `print(buffer, size)` prints into a buffer of N + 1 bytes, as the printers of
    // ZemTimeText.h do: with a NUL at its end; the result is the size of the whole text, of which N
    // characters are kept. snprintf and strftime are such printers too.
    template <class Print>
    static Text Printed(Print print)
    {
        Text text{Unset()};
        const auto size = static_cast<std::size_t>(print(text.chars_, N + 1));
        text.size_ = static_cast<unsigned char>(size < N ? size : N);
        return text;
    }

    static constexpr std::size_t capacity() noexcept
    {
        return N;
    }

    constexpr std::size_t size() const noexcept
    {
        return size_;
    }

    constexpr bool empty() const noexcept
    {
        return size_ == 0;
    }

    constexpr const char* data() const noexcept
    {
        return chars_;
    }

    constexpr const char* c_str() const noexcept
    {
        return chars_;
    }

    // Holds as long as the text does.
    constexpr std::string_view view() const noexcept
    {
        return {chars_, size_};
    }

    // Implicit: a text goes wherever a string_view does.
    // NOLINTNEXTLINE(google-explicit-constructor)
    constexpr operator std::string_view() const noexcept
    {
        return view();
    }

  private:
    struct Unset {};

    // A printer writes every character that counts.
    explicit Text(Unset /*unused*/) noexcept {}  // NOLINT(cppcoreguidelines-pro-type-member-init)

    char chars_[N + 1];
    unsigned char size_;
};

// Texts of any two sizes, and a text and whatever becomes a string_view: compared as string views.
#define ZEM_COMPARE_TEXTS_(op)                                                \
    template <std::size_t N, std::size_t M>                                   \
    constexpr bool operator op(const Text<N>& a, const Text<M>& b) noexcept   \
    {                                                                         \
        return a.view() op b.view();                                          \
    }                                                                         \
    template <std::size_t N>                                                  \
    constexpr bool operator op(const Text<N>& a, std::string_view b) noexcept \
    {                                                                         \
        return a.view() op b;                                                 \
    }                                                                         \
    template <std::size_t N>                                                  \
    constexpr bool operator op(std::string_view a, const Text<N>& b) noexcept \
    {                                                                         \
        return a op b.view();                                                 \
    }
ZEM_COMPARE_TEXTS_(==)
ZEM_COMPARE_TEXTS_(!=)
ZEM_COMPARE_TEXTS_(<)
ZEM_COMPARE_TEXTS_(>)
ZEM_COMPARE_TEXTS_(<=)
ZEM_COMPARE_TEXTS_(>=)
#undef ZEM_COMPARE_TEXTS_

#if defined(__cpp_lib_three_way_comparison)
// By way of compare(): not every library has <=> for string views.
template <std::size_t N, std::size_t M>
constexpr std::strong_ordering operator<=>(const Text<N>& a, const Text<M>& b) noexcept
{
    return a.view().compare(b.view()) <=> 0;
}

template <std::size_t N>
constexpr std::strong_ordering operator<=>(const Text<N>& a, std::string_view b) noexcept
{
    return a.view().compare(b) <=> 0;
}
#endif

// To any stream of char, with its width and fill.
template <class Traits, std::size_t N>
std::basic_ostream<char, Traits>& operator<<(std::basic_ostream<char, Traits>& stream,
                                             const Text<N>& text)
{
    return stream << std::basic_string_view<char, Traits>(text.data(), text.size());
}

// What {fmt} 10 and later formats a text as.
template <std::size_t N>
constexpr std::string_view format_as(const Text<N>& text) noexcept
{
    return text.view();
}

// ---------------------------------------------------------------------------------------------
// Reading
// ---------------------------------------------------------------------------------------------

namespace detail {

// Reads at the beginning of `text` with one of the readers of ZemTimeText.h and takes off what it
// read.
template <class T>
std::optional<T> Read(ZemSizeT (*reader)(T*, const char*, ZemSizeT),
                      std::string_view& text) noexcept
{
    T value;
    const ZemSizeT size = reader(&value, text.data(), text.size());
    if (size == 0) {
        return std::nullopt;
    }
    text.remove_prefix(size);
    return value;
}

// Reads a text that has to be all of it.
template <class T>
std::optional<T> Parse(ZemSizeT (*reader)(T*, const char*, ZemSizeT),
                       std::string_view text) noexcept
{
    T value;
    const ZemSizeT size = reader(&value, text.data(), text.size());
    return size != 0 && size == text.size() ? std::optional<T>(value) : std::nullopt;
}

// Nothing for an instant that a ZemTime does not reach.
inline std::optional<Instant> Reached(std::optional<ZemTime> t) noexcept
{
    return t && *t != ZEM_TIME_INFINITE ? std::optional<Instant>(ToInstant(*t)) : std::nullopt;
}

}  // namespace detail

// Parse...: the value of the whole text, or nothing. Read...: the value of what stands at the
// beginning of `text`, which is then taken off it; or nothing, and `text` is as it was.

// The instant that a timestamp such as 2024-03-01T12:30:45.250+01:00 names: see ZemTimeParse.
// Nothing where an Instant does not reach it, which is also said of the very last nanosecond.
inline std::optional<Instant> ParseInstant(std::string_view text) noexcept
{
    return detail::Reached(detail::Parse(ZemTimeParse, text));
}

inline std::optional<Instant> ReadInstant(std::string_view& text) noexcept
{
    std::string_view rest = text;
    const std::optional<Instant> instant = detail::Reached(detail::Read(ZemTimeParse, rest));
    if (instant) {
        text = rest;
    }
    return instant;
}

// The fields of such a timestamp as they are written, its offset beside them: see
// ZemGregorianTimeParse.
inline std::optional<ZemGregorianTime> ParseRecord(std::string_view text) noexcept
{
    return detail::Parse(ZemGregorianTimeParse, text);
}

inline std::optional<ZemGregorianTime> ReadRecord(std::string_view& text) noexcept
{
    return detail::Read(ZemGregorianTimeParse, text);
}

// The fields of a date and time without a zone, for Zone::instant or Zone::resolve: see
// ZemGregorianTimeParseLocal.
inline std::optional<ZemGregorianTime> ParseLocalRecord(std::string_view text) noexcept
{
    return detail::Parse(ZemGregorianTimeParseLocal, text);
}

inline std::optional<ZemGregorianTime> ReadLocalRecord(std::string_view& text) noexcept
{
    return detail::Read(ZemGregorianTimeParseLocal, text);
}

// The duration that a text such as 1h30m, 1.5s or -250ms names: see ZemTimeParseDuration. One that
// does not fit is the largest or the smallest there is.
inline std::optional<std::chrono::nanoseconds> ParseDuration(std::string_view text) noexcept
{
    const std::optional<ZemTime> t = detail::Parse(ZemTimeParseDuration, text);
    return t ? std::optional<std::chrono::nanoseconds>(*t) : std::nullopt;
}

inline std::optional<std::chrono::nanoseconds> ReadDuration(std::string_view& text) noexcept
{
    const std::optional<ZemTime> t = detail::Read(ZemTimeParseDuration, text);
    return t ? std::optional<std::chrono::nanoseconds>(*t) : std::nullopt;
}

// ---------------------------------------------------------------------------------------------
// Printing
// ---------------------------------------------------------------------------------------------

// Time points and durations of any period are taken; those that do not fit a ZemTime print as the
// nearest that does.

// The instant as RFC 3339 has it, with `digits` (0 to 9) digits of the second's fraction, cut, at
// the UTC offset `offset` (within 68 years, which farther ones are cut to):
// 2024-03-01T11:30:45.250000000Z. See ZemTimePrint.
template <class Duration>
Text<42> Print(std::chrono::time_point<std::chrono::system_clock, Duration> t, int digits = 9,
               std::chrono::seconds offset = std::chrono::seconds(0)) noexcept
{
    constexpr std::chrono::seconds::rep bound = std::numeric_limits<ZemInt>::max();
    const auto east = offset.count();
    const auto near = east < -bound ? -bound : (east > bound ? bound : east);
    return Text<42>::Printed([=](char* buffer, std::size_t size) {
        return ZemTimePrint(FromChrono(t), static_cast<ZemInt>(near), digits, buffer, size);
    });
}

// The record in the same form, with its own offset: see ZemGregorianTimePrint.
inline Text<94> Print(const ZemGregorianTime& gt, int digits = 9) noexcept
{
    return Text<94>::Printed([&](char* buffer, std::size_t size) {
        return ZemGregorianTimePrint(&gt, digits, buffer, size);
    });
}

// The duration exactly, as ParseDuration reads it: 1h30m, 1.5s, 250ms. See ZemTimePrintDuration.
template <class Rep, class Period>
Text<25> Print(std::chrono::duration<Rep, Period> d) noexcept
{
    return Text<25>::Printed([=](char* buffer, std::size_t size) {
        return ZemTimePrintDuration(FromChrono(d), buffer, size);
    });
}

// The duration for people, in two units or three digits: 1 h 30 m, 1.50 s, 250 ms, 12.3 µs. See
// ZemTimePrintCompact.
template <class Rep, class Period>
Text<15> Compact(std::chrono::duration<Rep, Period> d) noexcept
{
    return Text<15>::Printed([=](char* buffer, std::size_t size) {
        return std::char_traits<char>::length(ZemTimePrintCompact(FromChrono(d), buffer, size));
    });
}

}  // namespace zem

// The same hash as that of a string_view.
template <std::size_t N>
struct std::hash<zem::Text<N>> {
    std::size_t operator()(const zem::Text<N>& text) const noexcept
    {
        return std::hash<std::string_view>()(text.view());
    }
};

#if defined(__cpp_lib_format)
// Takes the options of a string_view: {:>30}.
template <std::size_t N>
struct std::formatter<zem::Text<N>, char> : std::formatter<std::string_view, char> {
    template <class Context>
    auto format(const zem::Text<N>& text, Context& context) const
    {
        return std::formatter<std::string_view, char>::format(text.view(), context);
    }
};
#endif

#endif
