// The information to the account owner (":86:") of format 940: with the German subfields, with "/CODE/"
// marks, with keywords alone, or without any structure.
#include <algorithm>
#include <cstring>

#include "base/ascii.h"
#include "base/mod97.h"
#include "statement/subfields.h"
#include "statement/tolerant_fields.h"

namespace velmora::tolerant {
namespace {

constexpr std::ptrdiff_t full_piece = 27; // characters of a purpose line or name that goes on in the next
constexpr int largest_number = 63;        // of a subfield

// ------------------------------------------------------------------------------------------------------
// Keywords

// Beside the keywords of the standard.
constexpr Keyword account_keyword{"IBAN", nullptr};
constexpr Keyword bank_keyword{"BIC", nullptr};

// With its mark.
std::ptrdiff_t length_of(const Keyword& keyword) {
    return keyword.word[3] == '\0' ? 4 : 5;
}

bool is_mark(char c) {
    return c == '+' || c == ':';
}

// The keyword whose mark, "+" or ":", stands at `mark`, in the text that starts at `begin`. "IBAN" and "BIC"
// are words of other words, too: only behind something else than a letter or digit, or at `start`.
const Keyword* find_keyword_at(const char* begin, const char* start, const char* mark) {
    const auto starts_word = [&](const char* at) {
        return at == begin || at == start || !is_letter_or_digit(at[-1]);
    };
    const std::ptrdiff_t before = mark - begin;
    if (before >= 4) {
        const char* const word = mark - 4;
        if (const Keyword* const keyword = find_keyword(word)) return keyword;
        if (std::memcmp(word, "IBAN", 4) == 0 && starts_word(word)) return &account_keyword;
    }
    const bool is_bank = before >= 3 && std::memcmp(mark - 3, "BIC", 3) == 0 && starts_word(mark - 3);
    return is_bank ? &bank_keyword : nullptr;
}

// The word at the start, with a zero byte behind it, if it is a BIC.
std::string_view take_bic(char* begin, char* end) {
    char* const word_end = std::find(begin, end, ' ');
    const std::string_view word(begin, static_cast<std::size_t>(word_end - begin));
    if (!looks_like_bic(word)) return {};
    *word_end = '\0';
    return word;
}

// The same for an IBAN, which may be written in groups: they move together, and blanks fill the gap. Where
// its end is then, its check digits tell.
std::string_view take_iban(char* begin, char* end) {
    char compact[34];
    std::size_t length = 0;
    for (char* at = begin; length <= sizeof compact; ++at) {
        if (at == end || *at == ' ') {
            const std::string_view text(compact, length);
            const bool in_one = static_cast<std::size_t>(at - begin) == length;
            if (looks_like_iban(text) && (in_one || mod97_rotated(text, 4, Letters::upper_case) == 1)) {
                std::memset(begin, ' ', static_cast<std::size_t>(at - begin));
                std::memcpy(begin, compact, length);
                if (begin + length != end) begin[length] = '\0';
                return {begin, length};
            }
            if (at == end) break;
        } else if (length < sizeof compact) {
            compact[length++] = *at;
        } else {
            break;
        }
    }
    return {};
}

// A text with keywords in it, handed over piece by piece and joined in place. Between two pieces lie at least
// as many bytes as a separator needs.
class Purpose {
public:
    Purpose(Reader& reader, Fields& fields, char*& unmarked)
        : reader_(reader), fields_(fields), unmarked_(unmarked) {}

    void add(char* piece, char* piece_end) {
        bool has_marks = false;
        visit_characters(piece, piece_end, '+', ':', [&](const char*) { has_marks = true; });
        std::ptrdiff_t length = piece_end - piece;
        if (length >= full_piece) length = reader_.lines.count_characters(piece, piece_end);

        // Most pieces begin with a keyword, and stay where they are.
        const Keyword* const found = has_marks ? find_first_keyword(piece, piece_end) : nullptr;
        if (begin_ == nullptr || found != nullptr) {
            if (begin_ != nullptr) finish_value(end_);
            keyword_ = found;
            begin_ = piece + (found != nullptr ? length_of(*found) : 0);
            end_ = piece_end;
        } else {
            append(piece, piece_end, has_marks);
        }
        if (has_marks) split(std::max(begin_, end_ - (piece_end - piece)));
        last_length_ = length;
    }

    // Fills the last field, and account and bank as far as nothing else has.
    bool finish() {
        if (begin_ != nullptr) finish_value(end_);
        return done_;
    }
    bool use_account() {
        return (iban_.empty() || fields_.set_account(iban_)) && (bic_.empty() || fields_.set_bank(bic_));
    }

private:
    static const Keyword* find_first_keyword(const char* piece, const char* piece_end) {
        for (std::ptrdiff_t length = 3; length <= 4 && length < piece_end - piece; ++length)
            if (is_mark(piece[length])) return find_keyword_at(piece, piece, piece + length);
        return nullptr;
    }

    void append(const char* piece, const char* piece_end, bool has_marks) {
        if (!has_marks || !splits_keyword(piece, piece_end)) {
            if (keyword_ == nullptr)
                *end_++ = '\n';
            else if (last_length_ < full_piece)
                *end_++ = ' ';
        }
        const std::ptrdiff_t length = piece_end - piece;
        std::memmove(end_, piece, static_cast<std::size_t>(length));
        end_ += length;
    }

    // Looks for keywords from `start` on, where a piece has been added.
    void split(char* start) {
        visit_characters(start, end_, '+', ':', [&](char* mark) {
            const Keyword* const found = find_keyword_at(begin_, start, mark);
            if (found == nullptr) return;
            finish_value(mark + 1 - length_of(*found));
            keyword_ = found;
            begin_ = mark + 1;
        });
    }

    // Whether a keyword begins in the text before and ends in the piece.
    bool splits_keyword(const char* piece, const char* piece_end) const {
        constexpr std::ptrdiff_t longest = 4;
        if (std::none_of(piece, std::min(piece + longest, piece_end), is_mark)) return false;
        char text[2 * longest];
        const std::ptrdiff_t before = std::min(longest, end_ - begin_);
        const std::ptrdiff_t behind = std::min(longest, piece_end - piece);
        std::memcpy(text, end_ - before, static_cast<std::size_t>(before));
        std::memcpy(text + before, piece, static_cast<std::size_t>(behind));
        for (std::ptrdiff_t at = before; at < before + behind; ++at) {
            if (!is_mark(text[at])) continue;
            const Keyword* const found = find_keyword_at(text, text, text + at);
            return found != nullptr && at + 1 - length_of(*found) < before;
        }
        return false;
    }

    void finish_value(char* end) {
        char* begin = begin_;
        const auto is_separator = [](char c) { return c == ' ' || c == '\n'; };
        while (begin != end && is_separator(*begin))
            ++begin;
        while (begin != end && is_separator(end[-1]))
            --end;
        *end = '\0';
        const std::string_view text(begin, static_cast<std::size_t>(end - begin));
        if (keyword_ == &account_keyword)
            keep_first(iban_, take_iban(begin, end), begin, end);
        else if (keyword_ == &bank_keyword)
            keep_first(bic_, take_bic(begin, end), begin, end);
        else if (keyword_ != nullptr)
            done_ &= fields_.set_keyword(*keyword_, text);
        else
            done_ &= fields_.set(unmarked_, text);
    }

    // What is not one, and a second one, is kept; so is what follows it.
    void keep_first(std::string_view& field, std::string_view one, char* begin, char* end) {
        const bool is_used = field.empty() && !one.empty();
        if (is_used) field = one;
        char* rest = is_used ? begin + one.size() : begin;
        if (is_used && rest != end) ++rest; // behind its zero byte
        done_ &= fields_.keep(trim(rest, end));
    }

    Reader& reader_;
    Fields& fields_;
    char*& unmarked_;       // for the text in front of the first keyword
    char* begin_ = nullptr; // of the text that the next piece continues
    char* end_ = nullptr;
    const Keyword* keyword_ = nullptr; // of that text
    std::ptrdiff_t last_length_ = 0;   // of the piece before, in characters
    std::string_view iban_, bic_; // what somebody has written does not take the place of what the bank knows
    bool done_ = true;
};

// ------------------------------------------------------------------------------------------------------
// German subfields

// Name lines: the second follows the first one in the file.
class Name {
public:
    void add(const Reader& reader, char* piece, char* piece_end) {
        const auto length = static_cast<std::size_t>(piece_end - piece);
        if (begin_ == nullptr) {
            begin_ = piece;
            end_ = piece_end;
            return;
        }
        if (end_ != begin_ && reader.lines.count_characters(begin_, end_) < full_piece) *end_++ = ' ';
        std::memmove(end_, piece, length);
        end_ += length;
    }
    bool is_begun() const { return begin_ != nullptr; }
    std::string_view text() const { return begin_ == nullptr ? std::string_view() : trim(begin_, end_); }

private:
    char* begin_ = nullptr;
    char* end_ = nullptr;
};

// One to three digits and nothing else.
bool read_code(std::string_view text, std::uint32_t& code) {
    if (text.empty() || text.size() > 3) return false;
    std::uint32_t value = 0;
    for (const char c : text) {
        if (!is_digit(c)) return false;
        value = value * 10 + static_cast<std::uint32_t>(c - '0');
    }
    code = value;
    return true;
}

// "166", with what follows it up to `end` kept.
bool read_transaction_code(Fields& fields, char* begin, char* end) {
    if (end - begin >= 3 && read_code({begin, 3}, fields.booking().gvc)) begin += 3;
    return fields.keep(trim(begin, end));
}

bool read_subfield(Reader& reader, Fields& fields, Purpose& purpose, Name& name, const Subfield& subfield,
                   char* end) {
    char* const content = subfield.content();
    if (subfield.number > 33 && name.is_begun()) {
        // Purpose lines may be moved to where it stands.
        if (!fields.set_name(name.text())) return false;
        name = {};
    }
    if (is_purpose(subfield.number)) {
        purpose.add(content, end);
        return true;
    }
    if (subfield.number == 32 || subfield.number == 33) {
        name.add(reader, content, end);
        return true;
    }
    const std::string_view text = trim(content, end);
    switch (subfield.number) {
    case 0:
        return fields.set(fields.booking().txtext, text);
    case 10:
        return fields.set(fields.booking().primanota, text);
    case 30:
        return fields.set_bank(text);
    case 31:
        return fields.set_account(text);
    case 34:
        return read_code(text, fields.booking().extcode) || fields.keep_copy(text);
    case 38:
        return fields.set_iban(text);
    default:
        return fields.keep_copy(text);
    }
}

bool read_subfields(Reader& reader, char* begin, char* end) {
    Fields fields(reader);
    const Subfields subfields(begin, end, largest_number);
    if (!read_transaction_code(fields, begin, subfields.begin()->marker)) return false;
    Purpose purpose(reader, fields, fields.booking().purpose);
    Name name;
    for (const Subfield* subfield = subfields.begin(); subfield != subfields.end(); ++subfield) {
        char* const behind = subfield + 1 != subfields.end() ? subfield[1].marker : end;
        if (!read_subfield(reader, fields, purpose, name, *subfield, behind)) return false;
    }
    return purpose.finish() && fields.set_name(name.text()) && purpose.use_account();
}

// ------------------------------------------------------------------------------------------------------
// "/CODE/"

enum class Code : std::uint8_t {
    posting_text,
    iban,
    bic,
    name,
    remittance,
    end_to_end,
    mandate,
    creditor,
    return_reason,
    purpose,
    ultimate_debtor,
    ultimate_creditor,
    counterpart, // IBAN, BIC and name with "/" between
    other,       // begins a text that has no field of its own
};

struct CodeWord {
    char word[5];
    Code code;
};

constexpr CodeWord code_words[] = {
    {"EREF", Code::end_to_end},
    {"REMI", Code::remittance},
    {"IBAN", Code::iban},
    {"BIC", Code::bic},
    {"NAME", Code::name},
    {"TRTP", Code::posting_text},
    {"MARF", Code::mandate},
    {"CSID", Code::creditor},
    {"RTRN", Code::return_reason},
    {"PURP", Code::purpose},
    {"ULTD", Code::ultimate_debtor},
    {"ULTC", Code::ultimate_creditor},
    {"CNTP", Code::counterpart},
    {"ORDP", Code::other},
    {"BENM", Code::other},
    {"ISDT", Code::other},
    {"RTYP", Code::other},
    {"PREF", Code::other},
    {"OCMT", Code::other},
    {"CHGS", Code::other},
    {"EXCH", Code::other},
    {"ADDR", Code::other},
    {"ACCW", Code::other},
    {"BUSP", Code::other},
    {"TRCD", Code::other},
    {"SVCL", Code::other},
    {"INIT", Code::other},
};

// The word between the "/" at `at` and the next one; null when it is none of the words.
const CodeWord* find_code(const char* at, const char* end) {
    for (const CodeWord& code : code_words) {
        const std::size_t length = code.word[3] == '\0' ? 3 : 4;
        if (end - at > static_cast<std::ptrdiff_t>(length) + 1 && at[length + 1] == '/' &&
            std::memcmp(at + 1, code.word, length) == 0)
            return &code;
    }
    return nullptr;
}

char* find_next_code(char* at, char* end) {
    while ((at = static_cast<char*>(std::memchr(at, '/', static_cast<std::size_t>(end - at)))) != nullptr) {
        if (find_code(at, end) != nullptr) return at;
        ++at;
    }
    return end;
}

// Without blanks and "/" at its ends, with a zero byte behind it.
std::string_view trim_slashes(char* begin, char* end) {
    const auto is_outside = [](char c) { return c == ' ' || c == '/'; };
    while (begin != end && is_outside(*begin))
        ++begin;
    while (begin != end && is_outside(end[-1]))
        --end;
    *end = '\0';
    return {begin, static_cast<std::size_t>(end - begin)};
}

// Takes the text up to the next "/" off its front.
std::string_view take_piece(char*& at, char* end) {
    char* const begin = at;
    void* const slash = std::memchr(begin, '/', static_cast<std::size_t>(end - begin));
    char* const piece_end = slash != nullptr ? static_cast<char*>(slash) : end;
    at = slash != nullptr ? piece_end + 1 : end;
    return trim(begin, piece_end);
}

bool read_coded(Fields& fields, Code code, char* word, char* begin, char* end) {
    sepa_stmt_tx_t& booking = fields.booking();
    if (code == Code::counterpart)
        return fields.set_iban(take_piece(begin, end)) && fields.set_bank(take_piece(begin, end)) &&
               fields.set_name(take_piece(begin, end)) && fields.keep(trim_slashes(begin, end));
    if (code == Code::other)
        return trim_slashes(begin, end).empty() || fields.keep({word + 1, std::strlen(word + 1)});
    if (code == Code::remittance && end - begin >= 5 && std::memcmp(begin, "STRD/", 5) == 0) {
        begin += 5;
        take_piece(begin, end);
        return fields.set(fields.info().creditorReference, trim_slashes(begin, end));
    }
    if (code == Code::remittance && end - begin >= 5 && std::memcmp(begin, "USTD/", 5) == 0) begin += 5;

    const std::string_view text = trim_slashes(begin, end);
    switch (code) {
    case Code::posting_text:
        return fields.set(booking.txtext, text);
    case Code::iban:
        return fields.set_iban(text);
    case Code::bic:
        return fields.set_bank(text);
    case Code::name:
        return fields.set_name(text);
    case Code::remittance:
        return fields.set(booking.svwz, text);
    case Code::end_to_end:
        return fields.set_end_to_end_reference(text);
    case Code::mandate:
        return fields.set(booking.mref, text);
    case Code::creditor:
        return fields.set(booking.cred, text);
    case Code::return_reason:
        return fields.set(fields.info().returnReason, text);
    case Code::purpose:
        return fields.set(booking.purp, text);
    case Code::ultimate_debtor:
        return fields.set(booking.abwa, text);
    default:
        return fields.set(booking.abwe, text);
    }
}

bool read_codes(Reader& reader, char* begin, char* end) {
    Fields fields(reader);
    while (begin != end) {
        const CodeWord& code = *find_code(begin, end);
        char* const value = begin + (code.word[3] == '\0' ? 5 : 6);
        char* const next = find_next_code(value - 1, end);
        // The "/" in front of a code may be the one behind the code before.
        if (next >= value && !read_coded(fields, code.code, begin, value, next)) return false;
        begin = next;
    }
    return true;
}

// ------------------------------------------------------------------------------------------------------
// Keywords alone, or nothing

bool has_keywords(char* begin, char* end) {
    bool found = false;
    visit_characters(begin, end, '+', ':', [&](const char* mark) {
        if (mark - begin < 4 || find_keyword(mark - 4) == nullptr) return;
        found |= mark - begin == 4 || mark[-5] == ' ';
    });
    return found;
}

bool read_plain(Reader& reader, char* begin, char* end) {
    Fields fields(reader);
    sepa_stmt_tx_t& booking = fields.booking();
    const std::string_view text = trim(begin, end);
    if (text.size() == 3 && read_code(text, booking.gvc)) return true;
    if (!has_keywords(begin, end)) return fields.set(booking.svwz, text);

    const bool has_code = end - begin > 3 && !is_digit(begin[3]) && read_code({begin, 3}, booking.gvc);
    char* unmarked = nullptr;
    Purpose purpose(reader, fields, unmarked);
    purpose.add(begin + (has_code ? 3 : 0), end);
    if (!purpose.finish() || !purpose.use_account()) return false;
    if (unmarked == nullptr) return true;
    return fields.set(booking.svwz == nullptr ? booking.svwz : booking.purpose, unmarked);
}

bool has_subfields(const Field& field) {
    const auto starts_here = [](const char* at, const char* end) {
        return is_marker(at, end) && two_digits(at + 1) <= largest_number;
    };
    // Most often behind the transaction code.
    bool found =
        field.end - field.begin > 3 && field.begin[3] == '?' && starts_here(field.begin + 3, field.end);
    if (!found)
        visit_characters(field.begin, field.rest_end, '?', '?',
                         [&](const char* at) { found |= starts_here(at, field.rest_end); });
    return found;
}

} // namespace

bool read_information(Reader& reader, const Field& field) {
    if (reader.booking == nullptr || reader.has_information) {
        char* const end = join_lines(reader, field, Join::as_cut);
        JoinedText& text = reader.booking == nullptr ? reader.statement_text : reader.booking_text;
        return add_text(reader, text, trim(field.begin, end));
    }
    reader.has_information = true;
    if (has_subfields(field))
        return read_subfields(reader, field.begin, join_lines(reader, field, Join::directly));
    char* const end = join_lines(reader, field, Join::as_cut);
    if (*field.begin == '/' && find_code(field.begin, end) != nullptr)
        return read_codes(reader, field.begin, end);
    return read_plain(reader, field.begin, end);
}

} // namespace velmora::tolerant
