#include "text/transliteration.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "base/ascii.h"

namespace velmora {
namespace {

struct Row {
    char16_t character;
    char text[4];

    constexpr std::string_view view() const { return text; }
};

// Letters that are no other letter with marks, ligatures and digraphs, in the order of the character.
constexpr Row letters[] = {
    {u'Æ', "AE"}, {u'Ð', "D"},  {u'Ø', "O"},  {u'Þ', "TH"},  {u'ß', "ss"},  {u'æ', "ae"}, {u'ð', "d"},
    {u'ø', "o"},  {u'þ', "th"}, {u'Đ', "D"},  {u'đ', "d"},   {u'Ħ', "H"},   {u'ħ', "h"},  {u'ı', "i"},
    {u'Ĳ', "IJ"}, {u'ĳ', "ij"}, {u'ĸ', "q"},  {u'Ŀ', "L"},   {u'ŀ', "l"},   {u'Ł', "L"},  {u'ł', "l"},
    {u'ŉ', "n"},  {u'Ŋ', "N"},  {u'ŋ', "n"},  {u'Œ', "OE"},  {u'œ', "oe"},  {u'Ŧ', "T"},  {u'ŧ', "t"},
    {u'ſ', "s"},  {u'Ǆ', "DZ"}, {u'ǅ', "Dz"}, {u'ǆ', "dz"},  {u'Ǉ', "LJ"},  {u'ǈ', "Lj"}, {u'ǉ', "lj"},
    {u'Ǌ', "NJ"}, {u'ǋ', "Nj"}, {u'ǌ', "nj"}, {u'Ǳ', "DZ"},  {u'ǲ', "Dz"},  {u'ǳ', "dz"}, {u'ẞ', "SS"},
    {u'ﬀ', "ff"}, {u'ﬁ', "fi"}, {u'ﬂ', "fl"}, {u'ﬃ', "ffi"}, {u'ﬄ', "ffl"}, {u'ﬅ', "st"}, {u'ﬆ', "st"},
};

// Signs, in the order of the character. What is not here and no letter has no equivalent.
constexpr Row signs[] = {
    {u'"', "'"},   {u'&', "+"},   {u'[', "("},   {u']', ")"},   {u'_', "-"},      {u'`', "'"},
    {u'{', "("},   {u'}', ")"},   {u'~', "-"},   {u'£', "GBP"}, {u'¥', "JPY"},    {u'«', "'"},
    {u'²', "2"},   {u'³', "3"},   {u'´', "'"},   {u'¹', "1"},   {u'»', "'"},      {u'¼', "1/4"},
    {u'½', "1/2"}, {u'¾', "3/4"}, {u'×', "x"},   {u'÷', ":"},   {u'\u2010', "-"}, {u'\u2011', "-"},
    {u'–', "-"},   {u'—', "-"},   {u'‘', "'"},   {u'’', "'"},   {u'‚', "'"},      {u'“', "'"},
    {u'”', "'"},   {u'„', "'"},   {u'…', "..."}, {u'‹', "'"},   {u'›', "'"},      {u'€', "EUR"},
    {u'−', "-"},
};

struct LetterWithMarks {
    char16_t letter, base;
};
constexpr LetterWithMarks letters_with_marks[] = {
#include "data/letters.inc"
};

static_assert(std::ranges::is_sorted(letters, {}, &Row::character));
static_assert(std::ranges::is_sorted(signs, {}, &Row::character));
static_assert(std::ranges::is_sorted(letters_with_marks, {}, &LetterWithMarks::letter));

// Capitals by ELOT 743; the small letters lie 0x20 behind them, the final sigma where no capital is.
constexpr char32_t first_greek = U'Α', first_small_greek = U'α';
constexpr char greek[][3] = {"A", "V", "G", "D", "E", "Z", "I", "TH", "I", "K",  "L",  "M", "N",
                             "X", "O", "P", "R", "S", "S", "T", "Y",  "F", "CH", "PS", "O"};

// Capitals from U+0400 on: first those of other languages than Bulgarian, whose small letters lie 0x50 behind
// them, then the Bulgarian table with the letters that only Russian has.
constexpr char32_t first_cyrillic = U'\u0400', first_small_cyrillic = U'а', last_small_cyrillic = U'\u045F';
constexpr char32_t first_bulgarian = U'А';
constexpr char cyrillic[][4] = {
    "E", "E", "D", "G", "YE", "DZ", "I",  "YI", "J",  "LJ",  "NJ", "C", "K", "I", "U",  "DZ", // to U+040F
    "A", "B", "V", "G", "D",  "E",  "ZH", "Z",  "I",  "Y",   "K",  "L", "M", "N", "O",  "P",
    "R", "S", "T", "U", "F",  "H",  "TS", "CH", "SH", "SHT", "A",  "Y", "Y", "E", "YU", "YA"};
static_assert(std::size(greek) == 25 && std::size(cyrillic) == 48);

template <typename Entry, std::size_t size>
const Entry* find(const Entry (&table)[size], char32_t character, char16_t Entry::*key) {
    const Entry* entry = std::ranges::lower_bound(table, character, {}, key);
    return entry != std::end(table) && entry->*key == character ? entry : nullptr;
}

char32_t without_marks(char32_t character) {
    const auto* entry = find(letters_with_marks, character, &LetterWithMarks::letter);
    return entry == nullptr ? character : entry->base;
}

// The letter itself, or its capital in a table of capitals.
struct Capital {
    std::string_view text; // empty: not such a letter
    bool is_small = false;
};

Capital find_greek(char32_t c) {
    if (c >= first_greek && c < first_greek + std::size(greek) && c != 0x3A2) return {greek[c - first_greek]};
    if (c >= first_small_greek && c < first_small_greek + std::size(greek))
        return {greek[c - first_small_greek], true};
    return {};
}

Capital find_cyrillic(char32_t c) {
    if (c == U'Ґ' || c == U'ґ') return {"G", c == U'ґ'};
    if (c < first_cyrillic || c > last_small_cyrillic) return {};
    if (c < first_small_cyrillic) return {cyrillic[c - first_cyrillic]};
    const char32_t distance = c < U'\u0450' ? first_small_cyrillic - first_bulgarian : 0x50;
    return {cyrillic[c - distance - first_cyrillic], true};
}

Capital find_greek_or_cyrillic(char32_t c) {
    const Capital found = find_greek(c);
    return found.text.empty() ? find_cyrillic(c) : found;
}

enum class Case : std::uint8_t { none, capital, small };

constexpr Case case_of_ascii(char c) {
    return !is_letter(c) ? Case::none : is_capital(c) ? Case::capital : Case::small;
}

Case case_of(char32_t character) {
    character = without_marks(character);
    if (character < 0x80) return case_of_ascii(static_cast<char>(character));
    if (const Row* row = find(letters, character, &Row::character)) return case_of_ascii(row->text[0]);
    const Capital found = find_greek_or_cyrillic(character);
    return found.text.empty() ? Case::none : found.is_small ? Case::small : Case::capital;
}

// Two letters for an umlaut; the second is a capital beside one.
std::string_view umlaut(char32_t character, char32_t before, char32_t behind) {
    const bool beside_capital = case_of(before) == Case::capital || case_of(behind) == Case::capital;
    switch (character) {
    case U'Ä':
        return beside_capital ? "AE" : "Ae";
    case U'Ö':
        return beside_capital ? "OE" : "Oe";
    case U'Ü':
        return beside_capital ? "UE" : "Ue";
    case U'ä':
        return "ae";
    case U'ö':
        return "oe";
    case U'ü':
        return "ue";
    default:
        return {};
    }
}

constexpr bool is_blank(char32_t c) {
    return (c >= '\t' && c <= '\r') || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
           c == 0x3000;
}

// Marks, soft hyphens, joiners, marks of direction, variation selectors and byte order marks.
constexpr bool is_invisible(char32_t c) {
    return is_combining_mark(c) || c == 0xAD || (c >= 0x200B && c <= 0x200F) ||
           (c >= 0x202A && c <= 0x202E) || (c >= 0x2060 && c <= 0x2064) || (c >= 0x2066 && c <= 0x2069) ||
           (c >= 0xFE00 && c <= 0xFE0F) || c == 0xFEFF;
}

// The letters in the case of the source: all capitals, but "Sht" before a small letter.
std::string_view in_case(const Capital& capital, char32_t behind, char (&buffer)[longest_transliteration]) {
    const std::string_view text = capital.text;
    if (!capital.is_small && (text.size() == 1 || case_of(behind) != Case::small)) return text;
    for (std::size_t i = 0; i < text.size(); ++i)
        buffer[i] = i == 0 && !capital.is_small ? text[i] : static_cast<char>(text[i] - 'A' + 'a');
    return {buffer, text.size()};
}

} // namespace

char32_t narrow(char32_t character) {
    return character >= 0xFF01 && character <= 0xFF5E ? character - 0xFF01 + U'!' : character;
}

char32_t compose(char32_t letter, char32_t mark) {
    if (!is_combining_mark(mark)) return 0;
    constexpr char32_t diaeresis = 0x308, breve = 0x306, grave = 0x300, acute = 0x301, macron = 0x304,
                       caron = 0x30C;
    constexpr char32_t pairs[][3] = {
        {U'A', diaeresis, U'Ä'}, {U'O', diaeresis, U'Ö'}, {U'U', diaeresis, U'Ü'}, {U'a', diaeresis, U'ä'},
        {U'o', diaeresis, U'ö'}, {U'u', diaeresis, U'ü'}, {U'І', diaeresis, U'Ї'}, {U'і', diaeresis, U'ї'},
        {U'И', breve, U'Й'},     {U'и', breve, U'й'},     {U'Ä', macron, U'Ǟ'},    {U'Ö', macron, U'Ȫ'},
        {U'Ü', macron, U'Ǖ'},    {U'Ü', acute, U'Ǘ'},     {U'Ü', caron, U'Ǚ'},     {U'Ü', grave, U'Ǜ'},
        {U'ä', macron, U'ǟ'},    {U'ö', macron, U'ȫ'},    {U'ü', macron, U'ǖ'},    {U'ü', acute, U'ǘ'},
        {U'ü', caron, U'ǚ'},     {U'ü', grave, U'ǜ'},
    };
    for (const auto& [from, with, to] : pairs)
        if (from == letter && with == mark) return to;
    return 0;
}

std::string_view transliterate(char32_t character, char32_t before, char32_t behind,
                               char (&buffer)[longest_transliteration]) {
    if (is_blank(character)) return " ";
    if (is_invisible(character)) return {};
    if (const std::string_view text = umlaut(character, before, behind); !text.empty()) return text;
    character = without_marks(character);
    if (character < 0x80 && is_letter_or_digit(static_cast<char>(character))) {
        buffer[0] = static_cast<char>(character);
        return {buffer, 1};
    }
    if (const Row* row = find(letters, character, &Row::character)) return row->view();
    if (const Row* row = find(signs, character, &Row::character)) {
        const bool is_fraction = row->text[1] == '/';
        if (!is_fraction || before < '0' || before > '9') return row->view();
        buffer[0] = ' ';
        std::ranges::copy(row->view(), buffer + 1);
        return {buffer, 1 + row->view().size()};
    }
    // Omicron and upsilon are one sound.
    const auto is_letter_of = [](char32_t c, char32_t capital, char32_t small) {
        return c == capital || c == small;
    };
    if (is_letter_of(character, U'Υ', U'υ') && is_letter_of(without_marks(before), U'Ο', U'ο'))
        return character == U'Υ' ? "U" : "u";
    const Capital found = find_greek_or_cyrillic(character);
    return found.text.empty() ? "." : in_case(found, behind, buffer);
}

} // namespace velmora
