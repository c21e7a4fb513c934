// The parser wants the text of a timestamp alone, so this finds where the timestamp ends in a
// line. Date and time have a fixed width; only the fraction and the zone have to be walked over.

#include "timestamp.hpp"

namespace {

constexpr size_t kDateAndTime = 19;  // YYYY-MM-DDThh:mm:ss

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsDigitOrLetter(char c)
{
    return IsDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

char* SkipDigits(char* p)
{
    while (IsDigit(*p)) {
        ++p;
    }
    return p;
}

// Whether a timestamp may end before `p`: what follows must not read as more of it.
bool MayEndBefore(const char* p)
{
    return !IsDigitOrLetter(*p) && !(*p == ':' && IsDigit(p[1]));
}

// Where the offset's sign stands when an offset seems to begin at `p`, else null.
char* FindSign(char* p)
{
    p += *p == ' ' ? 1 : 0;
    return (*p == '+' || *p == '-') && IsDigit(p[1]) ? p : nullptr;
}

// Whether a time without a zone ends before `p`. A broken offset, or a fraction behind a comma,
// must not pass for one.
bool MayLackZone(char* p)
{
    return MayEndBefore(p) && FindSign(p) == nullptr && !(*p == ',' && IsDigit(p[1]));
}

// The end of the zone at `p`, or null when what stands there is none.
char* FindZoneEnd(char* p)
{
    if (*p == 'Z') {
        return MayEndBefore(p + 1) ? p + 1 : nullptr;
    }
    char* sign = FindSign(p);
    if (sign == nullptr) {
        return nullptr;
    }
    p = SkipDigits(sign + 1);
    ptrdiff_t width = p - sign - 1;
    for (int part = 0; part < 2 && width == 2 && *p == ':' && IsDigit(p[1]); ++part) {
        p = SkipDigits(p + 1);
    }
    return (width == 2 || width == 4 || width == 6) && MayEndBefore(p) ? p : nullptr;
}

std::optional<ZemTime> Known(ZemTime t)
{
    return t == ZEM_TIME_INFINITE ? std::nullopt : std::optional<ZemTime>(t);
}

}  // namespace

std::optional<ZemTime> ReadTimestamp(Line line, const std::optional<Zone>& assumed)
{
    char* text = line.text + (line.text[0] == '[' ? 1 : 0);
    if (line.text + line.size < text + kDateAndTime) {
        return std::nullopt;
    }
    char* fractionEnd = text + kDateAndTime;
    if (*fractionEnd == '.') {
        fractionEnd = SkipDigits(fractionEnd + 1);
    }
    char* end = FindZoneEnd(fractionEnd);
    bool hasZone = end != nullptr;
    if (!hasZone && !(assumed && MayLackZone(fractionEnd))) {
        return std::nullopt;
    }

    // For a moment the text ends where the timestamp does, with a zone in any case.
    ZemGregorianTime record;
    end = hasZone ? end : fractionEnd + 1;
    const char saved[] = {end[-1], end[0]};
    end[-1] = hasZone ? end[-1] : 'Z';
    end[0] = '\0';
    bool isParsed = ZemGregorianTimeConstructCStr(&record, text) != nullptr;
    end[-1] = saved[0];
    end[0] = saved[1];
    if (!isParsed) {
        return std::nullopt;
    }

    if (!hasZone && assumed->kind == Zone::Kind::kLocal) {
        return Known(ZemGregorianTimeGetLocalTime(&record));
    }
    if (!hasZone) {
        ZemGregorianTimeSetUTCOffset(&record, assumed->offset);
    }
    return Known(ZemGregorianTimeGetTime(&record));
}
