// The parser wants the text of a timestamp alone, so this finds where the timestamp ends in a
// line. Date and time have a fixed width; only the fraction and the zone have to be walked over.

#include "timestamp.hpp"

#include <algorithm>
#include <cstring>

namespace {

constexpr ptrdiff_t kDateAndTime = 19;  // YYYY-MM-DDThh:mm:ss
constexpr ptrdiff_t kFraction = 10;     // the point and the digits that count
constexpr ptrdiff_t kZone = 10;         // a space, a sign, hh:mm:ss

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsDigitOrLetter(char c)
{
    return IsDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsDigitAt(const char* p, const char* end)
{
    return p < end && IsDigit(*p);
}

const char* SkipDigits(const char* p, const char* end)
{
    while (IsDigitAt(p, end)) {
        ++p;
    }
    return p;
}

// Whether a timestamp may end before `p`: what follows must not read as more of it.
bool MayEndBefore(const char* p, const char* end)
{
    if (p == end) {
        return true;
    }
    return !IsDigitOrLetter(*p) && !(*p == ':' && IsDigitAt(p + 1, end));
}

// Where the offset's sign stands when an offset seems to begin at `p`, else null.
const char* FindSign(const char* p, const char* end)
{
    if (p < end && *p == ' ') {
        ++p;
    }
    return p < end && (*p == '+' || *p == '-') && IsDigitAt(p + 1, end) ? p : nullptr;
}

// Whether a time without a zone ends before `p`. A broken offset, or a fraction behind a comma,
// must not pass for one.
bool MayLackZone(const char* p, const char* end)
{
    bool comma = p < end && *p == ',' && IsDigitAt(p + 1, end);
    return MayEndBefore(p, end) && FindSign(p, end) == nullptr && !comma;
}

// The end of the zone at `p`, or null when what stands there is none.
const char* FindZoneEnd(const char* p, const char* end)
{
    if (p < end && *p == 'Z') {
        return MayEndBefore(p + 1, end) ? p + 1 : nullptr;
    }
    const char* sign = FindSign(p, end);
    if (sign == nullptr) {
        return nullptr;
    }
    p = SkipDigits(sign + 1, end);
    ptrdiff_t width = p - sign - 1;
    if (width == 2) {
        for (int part = 0; part < 2 && p < end && *p == ':'; ++part) {
            const char* next = SkipDigits(p + 1, end);
            if (next - p != 3) {
                break;
            }
            p = next;
        }
    } else if (width != 4 && width != 6) {
        return nullptr;
    }
    return MayEndBefore(p, end) ? p : nullptr;
}

std::optional<ZemTime> Known(ZemTime t)
{
    return t == ZEM_TIME_INFINITE ? std::nullopt : std::optional<ZemTime>(t);
}

}  // namespace

std::optional<ZemTime> ReadTimestamp(std::string_view line, const std::optional<Zone>& assumed)
{
    const char* p = line.data();
    const char* end = p + line.size();
    if (p < end && *p == '[') {
        ++p;
    }
    if (end - p < kDateAndTime) {
        return std::nullopt;
    }

    const char* fractionEnd = p + kDateAndTime;
    if (fractionEnd < end && *fractionEnd == '.') {
        fractionEnd = SkipDigits(fractionEnd + 1, end);
    }
    const char* zoneEnd = FindZoneEnd(fractionEnd, end);
    bool hasZone = zoneEnd != nullptr;
    if (!hasZone && !(assumed && MayLackZone(fractionEnd, end))) {
        return std::nullopt;
    }

    char text[kDateAndTime + kFraction + kZone + 1];
    ptrdiff_t length = std::min(fractionEnd - p, kDateAndTime + kFraction);
    std::memcpy(text, p, static_cast<size_t>(length));
    const char* zone = hasZone ? fractionEnd : "Z";
    ptrdiff_t zoneLength = hasZone ? zoneEnd - fractionEnd : 1;
    std::memcpy(text + length, zone, static_cast<size_t>(zoneLength));
    text[length + zoneLength] = '\0';

    ZemGregorianTime record;
    if (ZemGregorianTimeConstructCStr(&record, text) == nullptr) {
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
