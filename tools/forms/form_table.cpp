#include "tools/forms/form_table.hpp"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "Zem/Os/ZemTimeText.h"
#include "Zem/Utils/Private/ZemDigits.h"
#include "tools/common/text.hpp"
#include "tools/forms/scanner.hpp"
#include "tools/forms/zone_names.hpp"

namespace {

// Whether a time may end before byte `at`: what follows must not read as more of it.
bool MayEnd(std::string_view text, size_t at)
{
    char c = at < text.size() ? text[at] : ' ';
    bool isMore =
        (c == ':' || c == '.' || c == ',') && at + 1 < text.size() && IsDigit(text[at + 1]);
    return !IsDigit(c) && !IsLetter(c) && !isMore;
}

// ---------------------------------------------------------------------------------------------
// What stands behind a date
// ---------------------------------------------------------------------------------------------

// Whether a sign and a digit stand at byte `at`.
bool IsOffsetAt(std::string_view text, size_t at)
{
    return at + 1 < text.size() && (text[at] == '+' || text[at] == '-') && IsDigit(text[at + 1]);
}

// Takes AM, pm, a.m. and their kind; 'a', 'p' or NUL.
char TakeHalfOfDay(Scanner& s)
{
    char half = static_cast<char>(s.Peek() | 0x20);
    if (half != 'a' && half != 'p') {
        return '\0';
    }
    Scanner ahead = s;
    ahead.Take(s.Peek());
    bool hasPoint = ahead.Take('.');
    if (!ahead.Take("Mm") || (hasPoint && !ahead.Take('.')) || IsLetter(ahead.Peek()) ||
        IsDigit(ahead.Peek())) {
        return '\0';
    }
    s = ahead;
    return half;
}

// Reads AM or PM and the name of a zone behind the local time of `m`, which takes `end` bytes of
// `text`; returns where all of it ends. 0 where they say of the time what cannot be made use of.
size_t ReadNames(std::string_view text, size_t end, Moment& m)
{
    m.kind = Moment::Kind::kLocal;
    m.hasZone = false;
    m.abbreviation = {};
    m.written = {};
    Scanner s(text, end);
    s.TakeSpaces(2);
    if (char half = TakeHalfOfDay(s)) {
        int hour = m.record.tm.tm_hour;
        if (hour < 1 || hour > 12) {
            return 0;
        }
        m.record.tm.tm_hour = hour % 12 + (half == 'p' ? 12 : 0);
        end = s.At();
        s.Take(' ');
    }
    char bracket = s.Peek() == '[' ? ']' : ')';
    bool isBracketed = s.Take('[') || s.Take('(');
    if (s.Peek() < 'A' || s.Peek() > 'Z') {
        return end;
    }
    std::string_view word = s.TakeAll(IsLetter);
    if (s.Peek() == '/' && IsZoneArea(word)) {
        return 0;  // Europe/Berlin
    }
    if (!IsZoneName(word)) {
        return end;
    }
    if (IsDigit(s.Peek()) || IsOffsetAt(text, s.At() + (s.Peek() == ' ' ? 1 : 0))) {
        return 0;  // EST5EDT, UTC+2, GMT +0200
    }
    if (isBracketed && !s.Take(bracket)) {
        return end;
    }
    if (word == "UTC" || word == "GMT") {
        m.kind = Moment::Kind::kInstant;
        m.hasZone = true;
        m.t = InstantIn(Zone{}, m.record);
    } else {
        m.abbreviation = word;
    }
    return s.At();
}

// Reads YYYY-MM-DDThh:mm:ss [fr] Z at the beginning of `text`: to the library, Z behind a space is
// no zone.
size_t ReadSpacedZulu(std::string_view text, Moment& m)
{
    Scanner s(text, sizeof "YYYY-MM-DDT" - 1);
    size_t size = s.TakeTime() ? s.At() : 0;
    if (size == 0 || !s.Take(' ') || !s.Take("Zz") || !MayEnd(text, s.At()) ||
        ZemGregorianTimeParseLocal(&m.record, text.data(), size) != size) {
        return 0;
    }
    m.kind = Moment::Kind::kInstant;
    m.hasZone = true;
    m.abbreviation = {};
    m.written = {};
    m.t = InstantIn(Zone{}, m.record);
    return s.At();
}

// Reads YYYY-MM-DDThh:mm:ss [fr] [z] at the beginning of `text`.
size_t ReadIsoText(std::string_view text, Moment& m)
{
    size_t end = ZemTimeParse(&m.t, text.data(), text.size());
    if (end != 0) {
        m.kind = Moment::Kind::kInstant;
        m.hasZone = true;
        m.abbreviation = {};
        m.written = text.substr(0, end);
        return end;
    }
    end = ReadLocalText(text, m);
    return end != 0 ? end : ReadSpacedZulu(text, m);
}

constexpr size_t kDateSize = sizeof "YYYY-MM-DDT" - 1;
constexpr size_t kTail =
    sizeof Moment::room - kDateSize - 1;  // so much of what follows is looked at

// Writes the date as the library reads it, in words: it loads eight bytes at a time, and waits for
// bytes that were written one by one.
void WriteDate(const DateDigits& date, Moment& m)
{
    ZemUint64 day = ZemLoad2(date.day);
    ZemUint64 month = ZemLoad2(date.month);
    ZemStore2(m.room, ZemLoad2(date.year));
    ZemStore8(m.room + 2, ZemLoad2(date.year + 2) | ZEM_WORD(0, 0, '-', 0, 0, '-', 0, 0) |
                              month << 24 | day << 48);
    m.room[kDateSize - 1] = 'T';
}

// Reads hms [fr] [z], the `size` bytes behind the date in the room of `m`; `isCut`: there is more
// of them. Returns where it ends, counted from the time on.
size_t ReadTail(size_t size, bool isCut, Moment& m)
{
    constexpr size_t kLongestName = 8;
    size_t taken = ReadIsoText({m.room, kDateSize + size}, m);
    // What was cut off could read as more of it.
    return taken == 0 || (isCut && taken + kLongestName > kDateSize + size) ? 0 : taken - kDateSize;
}

// The same where not that much follows, or an hour lacks its first digit.
size_t ReadShortTail(std::string_view tail, Moment& m)
{
    size_t isShort = tail.size() > 1 && tail[1] == ':' ? 1 : 0;
    size_t size = std::min(tail.size(), kTail);
    m.room[kDateSize] = '0';
    std::memcpy(m.room + kDateSize + isShort, tail.data(), size);
    size_t taken = ReadTail(isShort + size, size < tail.size(), m);
    return taken == 0 ? 0 : taken - isShort;
}

// Reads hms [fr] [z] at byte `at` of `text`, which is of `date`; an hour may lack its first digit.
// Returns where it ends.
size_t ReadTimeOf(const DateDigits& date, std::string_view text, size_t at, Moment& m)
{
    WriteDate(date, m);
    size_t taken;
    if (text.size() - at > kTail && text[at + 1] != ':') {
        std::memcpy(m.room + kDateSize, text.data() + at, kTail);
        taken = ReadTail(kTail, true, m);
    } else {
        taken = ReadShortTail(text.substr(at), m);
    }
    return taken == 0 ? 0 : at + taken;
}

// The same for a date without a year.
size_t ReadTimeOfDay(const DateDigits& date, std::string_view text, size_t at, Moment& m)
{
    size_t end = ReadTimeOf(date, text, at, m);
    if (end != 0 && m.kind == Moment::Kind::kInstant) {
        if (m.written.empty()) {
            ZemGregorianTimeConstructUTC(&m.record, m.t);
        } else {
            ZemGregorianTimeParse(&m.record, m.written.data(), m.written.size());
        }
    }
    m.kind = Moment::Kind::kLocalWithoutYear;
    return end;
}

// ---------------------------------------------------------------------------------------------
// The forms
// ---------------------------------------------------------------------------------------------

size_t MatchIso(std::string_view text, Moment& m)
{
    if (size_t end = ReadIsoText(text, m)) {
        return end;
    }
    DateDigits date;
    Scanner s(text);
    if (!s.TakeDigits(4, 4, date.year)) {
        return 0;
    }
    char separator = s.Peek();
    bool isDivided = s.Take("-/.: ");
    bool isNamed = isDivided && s.TakeMonth(date.month);
    bool isDate = (isNamed || (isDivided && s.TakeDigits(2, 2, date.month))) && s.Take(separator);
    s.TakeSpaces(isNamed ? 1 : 0);
    isDate = isDate && s.TakeDigits(isNamed ? 1 : 2, 2, date.day) &&
             (s.TakeSpaces(2) || s.Take("Tt\t_-:"));
    return isDate ? ReadTimeOf(date, text, s.At(), m) : 0;
}

size_t MatchSyslog(std::string_view text, Moment& m)
{
    DateDigits date;
    Scanner s(text);
    if (!s.TakeMonth(date.month) || !s.TakeSpaces(2) || !s.TakeDigits(1, 2, date.day) ||
        !s.TakeSpaces(2)) {
        return 0;
    }
    size_t end = ReadTimeOfDay(date, text, s.At(), m);
    // A year behind it makes it another form.
    Scanner behind(text, end);
    bool hasYear = behind.Take(' ') && behind.TakeDigits(4, 4, date.year) &&
                   (date.year[0] == '1' || date.year[0] == '2') && MayEnd(text, behind.At());
    return hasYear ? 0 : end;
}

size_t MatchDmy(std::string_view text, Moment& m)
{
    DateDigits date;
    Scanner s(text);
    s.PassWeekday();
    bool isDate = s.TakeDigits(1, 2, date.day) && s.Take(" -/") && s.TakeMonth(date.month) &&
                  s.Take(" -/") && s.TakeDigits(4, 4, date.year);
    s.Take(',');
    return isDate && (s.Take(':') || s.TakeSpaces(2)) ? ReadTimeOf(date, text, s.At(), m) : 0;
}

size_t MatchAccess(std::string_view text, Moment& m)
{
    DateDigits date;
    // Nearly all are [dd/Mon/YYYY:, and the library itself refuses what are no digits: a tenth of
    // the time that a line takes.
    constexpr size_t kSize = sizeof "[dd/Mon/YYYY:" - 1;
    if (text.size() > kSize && text[3] == '/' && text[7] == '/' && text[12] == ':' &&
        ReadShortMonth(text.data() + 4, date.month)) {
        std::memcpy(date.day, text.data() + 1, sizeof date.day);
        std::memcpy(date.year, text.data() + 8, sizeof date.year);
        return text[0] == '[' ? ReadTimeOf(date, text, kSize, m) : 0;
    }
    Scanner s(text);
    bool isDate = s.Take('[') && s.TakeDigits(1, 2, date.day) && s.Take('/') &&
                  s.TakeMonth(date.month) && s.Take('/') && s.TakeDigits(4, 4, date.year) &&
                  s.Take(':');
    return isDate ? ReadTimeOf(date, text, s.At(), m) : 0;
}

// What stands behind the day: hms [fr] [AM or PM] [ZZZ] YYYY [zone].
size_t ReadTimeAndYear(DateDigits date, std::string_view text, size_t at, Moment& m)
{
    Scanner s(text, at);
    if (!s.TakeTime()) {
        return 0;
    }
    std::string whole(s.Since(at));
    Scanner half = s;
    if (half.Take(' ') && half.Take("AP") && half.Take('M')) {
        whole += half.Since(s.At());
        s = half;
    }
    std::string_view zone;
    Scanner named = s;
    if (named.Take(' ') && IsZoneName(named.TakeAll(IsLetter))) {
        zone = named.Since(s.At());
        s = named;
    }
    if (!s.TakeSpaces(2) || !s.TakeDigits(4, 4, date.year)) {
        return 0;
    }
    Scanner behind = s;
    behind.Take(' ');
    if (zone.empty() && IsOffsetAt(text, behind.At())) {
        behind.Take("+-");
        behind.TakeAll([](char c) { return IsDigit(c) || c == ':'; });
        zone = behind.Since(s.At());
        s = behind;
    }
    whole += zone;
    size_t taken = ReadTimeOf(date, whole, 0, m);
    bool isWhole = taken == whole.size() && MayEnd(text, s.At());
    if (isWhole && !m.abbreviation.empty()) {
        m.abbreviation = zone.substr(1);
    }
    return isWhole ? s.At() : 0;
}

size_t MatchCtime(std::string_view text, Moment& m)
{
    DateDigits date;
    Scanner s(text);
    s.PassWeekday();
    if (!s.TakeMonth(date.month)) {
        return 0;
    }
    if (s.Take('-')) {
        bool isDate = s.TakeDigits(2, 2, date.day) && s.Take('-') &&
                      s.TakeDigits(2, 2, date.year + 2) && s.Take(' ');
        return isDate ? ReadTimeOf(date, text, s.At(), m) : 0;
    }
    if (!s.TakeSpaces(2) || !s.TakeDigits(1, 2, date.day)) {
        return 0;
    }
    bool hasComma = s.Take(',');
    Scanner withYear = s;
    if (withYear.TakeSpaces(2) && withYear.TakeDigits(4, 4, date.year)) {
        withYear.Take(',');
        return withYear.Take(' ') ? ReadTimeOf(date, text, withYear.At(), m) : 0;
    }
    return !hasComma && s.TakeSpaces(2) ? ReadTimeAndYear(date, text, s.At(), m) : 0;
}

size_t MatchKlog(std::string_view text, Moment& m)
{
    constexpr size_t kTimeSize = sizeof "hh:mm:ss.ffffff" - 1;
    DateDigits date;
    Scanner s(text);
    if (!s.Take("IWEF")) {
        return 0;
    }
    char digits[8];
    bool hasYear = s.TakeDigits(8, 8, digits);
    bool isDate = hasYear || s.TakeDigits(4, 4, digits + 4);
    Scanner time = s;
    if (!isDate || !s.TakeSpaces(2) || !(time = s).TakeTime() || time.At() - s.At() != kTimeSize) {
        return 0;
    }
    std::memcpy(date.month, digits + 4, 2);
    std::memcpy(date.day, digits + 6, 2);
    if (!hasYear) {
        return ReadTimeOfDay(date, text, s.At(), m);
    }
    std::memcpy(date.year, digits, 4);
    return ReadTimeOf(date, text, s.At(), m);
}

size_t MatchLogcat(std::string_view text, Moment& m)
{
    DateDigits date;
    Scanner s(text);
    if (!s.TakeDigits(2, 2, date.month) || !s.Take('-') || !s.TakeDigits(2, 2, date.day) ||
        !s.Take(' ')) {
        return 0;
    }
    Scanner time = s;
    bool hasFraction = time.TakeTime() && time.At() - s.At() >= sizeof "hh:mm:ss.fff" - 1;
    return hasFraction ? ReadTimeOfDay(date, text, s.At(), m) : 0;
}

bool TakeLevel(Scanner& s)
{
    static constexpr std::string_view kLevels[] = {"TRACE", "DEBUG", "INFO",
                                                   "WARN",  "ERROR", "FATAL"};
    return s.TakeSpaces(2) && std::find(std::begin(kLevels), std::end(kLevels),
                                        s.TakeAll(IsLetter)) != std::end(kLevels);
}

// yy/MM/dd could be another order of numbers, so a level must follow.
size_t MatchSpark(std::string_view text, Moment& m)
{
    DateDigits date;
    Scanner s(text);
    bool isDate = s.TakeDigits(2, 2, date.year + 2) && s.Take('/') &&
                  s.TakeDigits(2, 2, date.month) && s.Take('/') && s.TakeDigits(2, 2, date.day) &&
                  s.Take(' ');
    size_t end = isDate ? ReadTimeOf(date, text, s.At(), m) : 0;
    Scanner behind(text, end);
    return end != 0 && TakeLevel(behind) ? end : 0;
}

// yyMMdd and hms; or yyMMdd, hhmmss, a number and a level, as other pairs of numbers are no times.
size_t MatchCompact(std::string_view text, Moment& m)
{
    DateDigits date;
    char digits[8];
    Scanner s(text);
    if (!s.TakeDigits(6, 6, digits) || !s.TakeSpaces(2)) {
        return 0;
    }
    std::memcpy(date.year + 2, digits, 2);
    std::memcpy(date.month, digits + 2, 2);
    std::memcpy(date.day, digits + 4, 2);
    if (!s.TakeDigits(6, 6, digits)) {
        return ReadTimeOf(date, text, s.At(), m);
    }
    const char time[] = {digits[0], digits[1], ':',       digits[2],
                         digits[3], ':',       digits[4], digits[5]};
    size_t end = s.At();
    bool isTime = s.Take(' ') && s.TakeDigits(1, 7, digits) && TakeLevel(s) &&
                  ReadTimeOf(date, {time, sizeof time}, 0, m) != 0;
    return isTime ? end : 0;
}

// Seconds with or without a fraction, ms, µs or ns since 1970, told by their digits; in 2001 to
// 2065, as other numbers are seldom times.
size_t ReadEpoch(std::string_view text, Moment& m)
{
    Scanner s(text);
    std::string_view digits = s.TakeAll(IsDigit);
    std::string_view fraction;
    if (IsDigit(s.Peek(1)) && s.Take('.')) {
        fraction = s.TakeAll(IsDigit);
    }
    bool isPlausible = !digits.empty() && (digits[0] == '1' || digits[0] == '2');
    bool isWhole = fraction.find_first_not_of('0') == std::string_view::npos;
    size_t count = digits.size();
    if (!isPlausible || (count != 10 && count != 13 && count != 16 && count != 19) ||
        (count != 10 && !isWhole)) {
        return 0;
    }
    std::string nanoseconds(digits);
    nanoseconds += count == 10 ? fraction.substr(0, 9) : "";
    nanoseconds.resize(19, '0');
    m.t = static_cast<ZemTime>(*ParseNumber(nanoseconds, 10));
    m.kind = Moment::Kind::kInstant;
    m.hasZone = true;
    m.abbreviation = {};
    m.written = {};
    return s.At();
}

// Behind the number of a process too, as strace -f has it.
size_t MatchEpoch(std::string_view text, Moment& m)
{
    char process[8];
    bool isTagged = text.substr(0, 4) == "pid ";
    Scanner s(text, isTagged ? 4 : 0);
    s.TakeSpaces(7);
    bool hasProcess = s.TakeDigits(1, 7, process) && (!isTagged || s.Take(']')) && s.TakeSpaces(7);
    size_t begin = hasProcess ? s.At() : 0;
    size_t taken = ReadEpoch(text.substr(begin), m);
    size_t end = begin + taken;
    bool hasFraction = text.substr(begin, taken).find('.') != std::string_view::npos;
    bool isEnd = end >= text.size() || std::strchr(" \t]),:;|\"", text[end]) != nullptr;
    return taken != 0 && isEnd && MayEnd(text, end) && (!hasProcess || hasFraction) ? end : 0;
}

size_t MatchAudit(std::string_view text, Moment& m)
{
    constexpr std::string_view kLead = "audit(";
    if (text.substr(0, kLead.size()) != kLead) {
        return 0;
    }
    size_t taken = ReadEpoch(text.substr(kLead.size()), m);
    Scanner s(text, kLead.size() + taken);
    return taken != 0 && s.Take(':') && !s.TakeAll(IsDigit).empty() && s.Take(')') ? s.At() : 0;
}

const Form kForms[] = {
    {"iso", "YYYY-MM-DD (or / . :), T, space, tab or _, hms [fr] [z]",
     "RFC 3339 and 5424, Python, Java, Go, nginx errors, PostgreSQL, MySQL", Stand::kAnywhere, '0',
     MatchIso},
    {"ctime", "[weekday] mon day hms [fr] [ZZZ] YYYY [zone], mon day YYYY hms [fr] [z], mon-dd-yy",
     "Apache errors, date, git log, dmesg -T, vsftpd", Stand::kAnywhere, 'a', MatchCtime},
    {"syslog", "mon day hms [fr] [z]", "syslog, journalctl, sshd, postfix", Stand::kAnywhere, 'a',
     MatchSyslog},
    {"access", "[d/mon/YYYY:hms [z]]", "nginx and Apache access, HAProxy", Stand::kAnywhere, '[',
     MatchAccess},
    {"dmy", "[weekday] d mon YYYY hms [fr] [z], d-mon-YYYY, d/mon/YYYY",
     "Redis, HTTP, mail, BIND, PHP, Tomcat", Stand::kAnywhere, '*', MatchDmy},
    {"klog", "I, W, E or F, then [YYYY]MMDD hms.ffffff", "Kubernetes, glog", Stand::kAnywhere, 'a',
     MatchKlog},
    {"audit", "audit(seconds.fff:number)", "auditd", Stand::kAnywhere, 'a', MatchAudit},
    {"logcat", "MM-DD hms.fff", "Android, FreeSWITCH", Stand::kAnywhere, '0', MatchLogcat},
    {"spark", "yy/MM/dd hms LEVEL", "Spark, Hadoop", Stand::kAnywhere, '0', MatchSpark},
    {"compact", "yyMMdd h:mm:ss, or yyMMdd hhmmss number LEVEL", "old MySQL, HDFS",
     Stand::kAnywhere, '0', MatchCompact},
    {"epoch", "10 digits [.digits], 13, 16 or 19 digits, since 1970", "squid, strace -ttt",
     Stand::kStart, '*', MatchEpoch},
    {"json", "{\"key\": a text in any form above, or a number as of epoch}", "JSON lines, MongoDB",
     Stand::kKey, '{', nullptr},
    {"logfmt", "key=a text in any form above, or a number as of epoch", "Go services, Grafana",
     Stand::kKey, 'a', nullptr},
};

}  // namespace

const Form* FormTable::begin()
{
    return std::begin(kForms);
}

const Form* FormTable::end()
{
    return std::end(kForms);
}

const Form* FindForm(std::string_view name)
{
    const Form* form = std::find_if(std::begin(kForms), std::end(kForms),
                                    [name](const Form& f) { return f.name == name; });
    return form != std::end(kForms) ? form : nullptr;
}

size_t ReadLocalText(std::string_view text, Moment& m)
{
    size_t end = ZemGregorianTimeParseLocal(&m.record, text.data(), text.size());
    return end == 0 ? 0 : ReadNames(text, end, m);
}

bool ReadValue(std::string_view value, Moment& m)
{
    return std::any_of(std::begin(kForms), std::end(kForms), [&](const Form& form) {
        return form.match != nullptr && !value.empty() && form.match(value, m) == value.size();
    });
}
