// Calendar records as text: the parser and the two printed forms.

#include <cstring>

#include "Zem/Os/Private/ZemTimeReader.h"
#include "Zem/Os/Private/ZemTimeWriter.h"
#include "Zem/Os/ZemTimeInline.h"

// ---------------------------------------------------------------------------------------------
// Parsing
// ---------------------------------------------------------------------------------------------

namespace {

// A number as strtoul reads it, white space and sign included, and how many characters it took.
struct Field {
    ZemInt value;
    ZemDistanceT width;
};

Field ReadField(const char* p)
{
    char* end;
    auto value = static_cast<ZemInt>(ZemStrToUint32(p, &end, 10));
    return {value, end - p};
}

struct DateAndTime {
    ZemInt year;
    ZemInt month;
    ZemInt day;
    ZemInt hour;
    ZemInt minute;
    ZemInt second;
};

// Reads YYYY-MM-DD, T or a space, and hh:mm:ss, whatever strtoul reads in the width of each field.
bool ReadFields(const char* s, DateAndTime& t)
{
    Field year = ReadField(s);
    if (year.width != 4 || s[4] != '-') {
        return false;
    }
    Field month = ReadField(s + 5);
    if (month.width != 2 || s[7] != '-') {
        return false;
    }
    Field day = ReadField(s + 8);
    if (day.width != 2 || (s[10] != 'T' && s[10] != ' ')) {
        return false;
    }
    Field hour = ReadField(s + 11);
    if (hour.width != 2 || s[13] != ':') {
        return false;
    }
    Field minute = ReadField(s + 14);
    if (minute.width != 2 || s[16] != ':') {
        return false;
    }
    Field second = ReadField(s + 17);
    t = {year.value, month.value, day.value, hour.value, minute.value, second.value};
    return second.width == 2;
}

// Reads Z, or an optional space, a sign and an offset, as seconds east of UTC, up to the text's
// end.
bool ReadZone(const char* p, ZemInt& offset)
{
    if (*p == 'Z') {
        offset = 0;
        return p[1] == '\0';
    }
    p += *p == ' ' ? 1 : 0;
    char sign = *p;
    if (sign != '+' && sign != '-') {
        return false;
    }
    ++p;

    Field hours = ReadField(p);
    Field minutes = {0, 0};
    Field seconds = {0, 0};
    p += hours.width;
    switch (hours.width) {
        case 2:
            if (*p == ':') {
                minutes = ReadField(p + 1);
                if (minutes.width != 2) {
                    return false;
                }
                p += 3;
                if (*p == ':') {
                    seconds = ReadField(p + 1);
                    if (seconds.width != 2) {
                        return false;
                    }
                    p += 3;
                }
            }
            break;
        case 4:
            minutes.value = hours.value % 100;
            hours.value /= 100;
            break;
        case 6:
            seconds.value = hours.value % 100;
            minutes.value = hours.value / 100 % 100;
            hours.value /= 10000;
            break;
        default:
            return false;
    }
    // A field of two characters is at most 99: the sum cannot overflow.
    ZemInt magnitude = (hours.value * 60 + minutes.value) * 60 + seconds.value;
    offset = sign == '-' ? -magnitude : magnitude;
    return *p == '\0';
}

// The text of any form, field by field.
ZemGregorianTime* ConstructByFields(ZemGregorianTime* gt, const char* s)
{
    DateAndTime t;
    if (!ReadFields(s, t)) {
        return nullptr;
    }
    const char* p = s + ZEM_DATE_AND_TIME_SIZE;

    // Nine digits of a fraction count; further ones are passed over.
    ZemInt nanos = 0;
    if (*p == '.') {
        ZemUint32 digits = 0;
        for (++p; *p >= '0' && *p <= '9'; ++p) {
            if (digits < 9) {
                nanos = nanos * 10 + (*p - '0');
                ++digits;
            }
        }
        nanos *= static_cast<ZemInt>(kZemFractionUnits[digits]);
    }

    ZemInt offset;
    if (!ReadZone(p, offset) ||
        ZemGregorianTimeConstructFields(gt, t.year, t.month, t.day, t.hour, t.minute, t.second,
                                        nanos) == nullptr) {
        return nullptr;
    }
    ZemGregorianTimeSetUTCOffset(gt, offset);
    return gt;
}

}  // namespace

ZemGregorianTime* ZemGregorianTimeConstructCStr(ZemGregorianTime* gt, const char* s)
{
    // What programs write is read as a text of known size; odd forms, and what is no timestamp at
    // all, field by field.
    constexpr ZemSizeT kUsualSize = sizeof "2024-03-01 12:30:45.123456789 +01:00:00";
    ZemSizeT size = strnlen(s, kUsualSize);
    ZemTimestamp_ x;
    if (size != 0 && size < kUsualSize && ZemReadTimestamp(s, size, 1, &x) == size) {
        ZemFillRecord(gt, &x);
        return gt;
    }
    return ConstructByFields(gt, s);
}

// ---------------------------------------------------------------------------------------------
// Printing
// ---------------------------------------------------------------------------------------------

namespace {

const char kSigns[2][2] = {"+", "-"};

// Writes 2024-03-01 12:30:45.250 and a NUL, 24 bytes in all, where the fields fill their width;
// false, with nothing written, where they do not. Takes the record, not its fields: passed on,
// those go through memory, which is half of the time of a text.
bool WriteDate(char* p, const ZemGregorianTime* gt)
{
    ZemPrintedTime_ x = ZemFieldsToPrint(gt);
    if (!ZemFieldsFillTheirWidth(&x)) {
        return false;
    }
    ZemWriteDateAndTime(p, &x, ' ');
    ZemStore4(p + 19, '.' | ZemThreeDigits(static_cast<ZemUint32>(x.nanosecs) / 1000000) << 8);
    p[23] = '\0';
    return true;
}

}  // namespace

char* ZemGregorianTimeGetAsString(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen)
{
    if (buflen >= 24 && WriteDate(buf, gt)) {
        return buf;
    }
    ZemPrintedTime_ x = ZemFieldsToPrint(gt);
    ZemSizeT ret =
        ZemSNPrintf(buf, buflen, "%04d-%02d-%02d %02d:%02d:%02d.%03d", x.year, x.month, x.day,
                    x.hour, x.minute, x.second, static_cast<ZemInt>(x.nanosecs / 1000000));
    return ret < buflen ? buf : nullptr;
}

char* ZemGregorianTimeGetAsStringWithOffset(const ZemGregorianTime* gt, char* buf, ZemSizeT buflen)
{
    ZemPrintedOffset_ o = ZemOffsetToPrint(ZemGregorianTimeGetUTCOffset(gt));
    if (buflen >= 31 && o.seconds == 0 && o.hours < 100 && WriteDate(buf, gt)) {
        ZemStore8(buf + 23, ' ' | ZemOffsetWord(&o) << 8);
        return buf;
    }
    ZemPrintedTime_ x = ZemFieldsToPrint(gt);
    auto millisecond = static_cast<ZemInt>(x.nanosecs / 1000000);
    ZemSizeT ret;
    if (o.seconds == 0) {
        ret = ZemSNPrintf(buf, buflen, "%04d-%02d-%02d %02d:%02d:%02d.%03d %s%02u:%02u", x.year,
                          x.month, x.day, x.hour, x.minute, x.second, millisecond,
                          kSigns[o.negative], o.hours, o.minutes);
    } else {
        ret = ZemSNPrintf(buf, buflen, "%04d-%02d-%02d %02d:%02d:%02d.%03d %s%02u:%02u:%02u",
                          x.year, x.month, x.day, x.hour, x.minute, x.second, millisecond,
                          kSigns[o.negative], o.hours, o.minutes, o.seconds);
    }
    return ret < buflen ? buf : nullptr;
}
