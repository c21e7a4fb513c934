// The forms in which programs write times, as one table.
//
// A form reads the date and hands it to the library with the time behind it, rewritten as the
// library wants dates; what follows a match must not read as more of it, and a shorter match is
// never taken instead.

#ifndef ZEMTIME_TOOLS_FORM_TABLE_HPP
#define ZEMTIME_TOOLS_FORM_TABLE_HPP

#include <cstddef>
#include <string_view>

#include "Zem/Os/ZemTime.h"

// What a text says of its time, as far as it does.
struct Moment {
    enum class Kind { kInstant, kLocal, kLocalWithoutYear };

    Kind kind = Kind::kInstant;
    bool hasZone = true;
    ZemTime t = 0;                  // an instant; ZEM_TIME_INFINITE beyond those that there are
    ZemGregorianTime record;        // otherwise: the fields, and the offset where there is a zone;
                                    // of the year 2000 where the text has no year
    std::string_view abbreviation;  // of the zone, such as CET, where only that is known of it
    std::string_view written;       // an instant: as the library reads it; empty for epochs
    char room[64];                  // for `written`
};

// Where a form may stand in a line.
enum class Stand {
    kAnywhere,  // at the beginning, or found by a search for `lead`
    kStart,     // at the beginning alone, as numbers could be anything
    kKey,       // the value of a key
};

struct Form {
    const char* name;     // what --input takes and --explain shows
    const char* grammar;  // hms: hh:mm:ss; fr: . or , and digits; z: a zone; mon: Jan to Dec
    const char* writers;  // some of the programs that write it
    Stand stand;
    char lead;  // what it begins with: '0' a digit, 'a' a letter, '*' either, or that character
    // Reads it at the beginning of `text`; returns how many bytes it takes, 0 when there is none.
    std::size_t (*match)(std::string_view text, Moment& m);
};

// All forms; those before others win where both match.
struct FormTable {
    static const Form* begin();
    static const Form* end();
};

// The row of that name, or null.
const Form* FindForm(std::string_view name);

// Reads the first form where it has no zone, or its name: what ZemGregorianTimeParseLocal takes.
std::size_t ReadLocalText(std::string_view text, Moment& m);

// Reads the value of a key, all of it, in any form that does not stand under a key itself.
bool ReadValue(std::string_view value, Moment& m);

// Finds the value of `key`, without its quotes, in the JSON object or the key=value pairs that
// `line` begins with; null when there is none. The form says which of both.
std::string_view FindValue(const Form& form, std::string_view line, std::string_view key);

#endif
