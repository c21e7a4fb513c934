// The abbreviations of time zones that stand behind times.

#ifndef ZEMTIME_TOOLS_ZONE_NAMES_HPP
#define ZEMTIME_TOOLS_ZONE_NAMES_HPP

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

// The letters of a name of three or four, as one number that sorts like them.
constexpr std::uint32_t PackName(std::string_view name)
{
    std::uint32_t packed = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        packed = packed << 8 | (i < name.size() ? static_cast<unsigned char>(name[i]) : 0);
    }
    return packed;
}

// Whether `word` is one that is in use, UTC and GMT included. Without such a list every word in
// capitals, such as INFO, could be one. Many lines have such a word, so numbers are compared.
inline bool IsZoneName(std::string_view word)
{
    static constexpr std::uint32_t kNames[] = {
        PackName("ACDT"), PackName("ACST"), PackName("ADT"),  PackName("AEDT"), PackName("AEST"),
        PackName("AKDT"), PackName("AKST"), PackName("ART"),  PackName("AST"),  PackName("AWST"),
        PackName("BRT"),  PackName("BST"),  PackName("CAT"),  PackName("CDT"),  PackName("CEST"),
        PackName("CET"),  PackName("CST"),  PackName("EAT"),  PackName("EDT"),  PackName("EEST"),
        PackName("EET"),  PackName("EST"),  PackName("GMT"),  PackName("HDT"),  PackName("HKT"),
        PackName("HST"),  PackName("IDT"),  PackName("IST"),  PackName("JST"),  PackName("KST"),
        PackName("MDT"),  PackName("MEST"), PackName("MESZ"), PackName("MET"),  PackName("MEZ"),
        PackName("MSD"),  PackName("MSK"),  PackName("MST"),  PackName("NDT"),  PackName("NST"),
        PackName("NZDT"), PackName("NZST"), PackName("PDT"),  PackName("PHT"),  PackName("PKT"),
        PackName("PST"),  PackName("SAST"), PackName("SGT"),  PackName("SST"),  PackName("UTC"),
        PackName("WAT"),  PackName("WEST"), PackName("WET"),  PackName("WIB"),  PackName("WIT"),
        PackName("WITA")};
    // Most words in capitals, such as INFO and WARN, end otherwise.
    bool mayBe = !word.empty() && (word.back() == 'T' || word.back() == 'C' || word.back() == 'Z' ||
                                   word.back() == 'D' || word.back() == 'K' || word.back() == 'B' ||
                                   word.back() == 'A');
    return mayBe && word.size() >= 3 && word.size() <= 4 &&
           std::binary_search(std::begin(kNames), std::end(kNames), PackName(word));
}

// Whether `word` is the first part of a name such as Europe/Berlin.
inline bool IsZoneArea(std::string_view word)
{
    static constexpr std::string_view kAreas[] = {"Africa", "America",  "Antarctica", "Arctic",
                                                  "Asia",   "Atlantic", "Australia",  "Etc",
                                                  "Europe", "Indian",   "Pacific"};
    return std::find(std::begin(kAreas), std::end(kAreas), word) != std::end(kAreas);
}

#endif
