// Texts written with the characters that a rulebook takes.
#include <algorithm>
#include <climits>
#include <cstring>

#include "base/utf8.h"
#include "message/characters.h"
#include "message/rulebook.h"
#include "text/transliteration.h"
#include "velmora.h"

namespace velmora {
namespace {

// What may stay: a set under a rulebook.
struct Permitted {
    CharacterSet set;
    const Rulebook& rulebook;

    // Length of what may stay at the start of a text.
    std::size_t run(std::string_view text) const {
        const char* forbidden = find_forbidden_character(text, set, rulebook);
        return forbidden == nullptr ? text.size() : static_cast<std::size_t>(forbidden - text.data());
    }
    bool holds(std::string_view character) const { return run(character) == character.size(); }
};

// Length of the run of basic characters and spaces at the start of a text, in whole groups of bytes.
std::size_t basic_run(std::string_view text) {
    typedef unsigned char Bytes [[gnu::vector_size(16)]];
    struct Group {
        Bytes parts[4];
    };
    const auto within = [](Bytes bytes, unsigned char first, unsigned char last) {
        return bytes - first <= static_cast<unsigned char>(last - first);
    };
    std::size_t length = 0;
    for (; text.size() - length >= sizeof(Group); length += sizeof(Group)) {
        Group group;
        std::memcpy(&group, text.data() + length, sizeof group);
        auto all = ~(Bytes{} != Bytes{}); // of the type that comparing gives
        for (const Bytes& bytes : group.parts)
            all &= within(bytes | ' ', 'a', 'z') | within(bytes, '+', ':') | within(bytes, '\'', ')') |
                   (bytes == ' ') | (bytes == '?');
        std::uint64_t words[2];
        std::memcpy(words, &all, sizeof words);
        if ((words[0] & words[1]) != UINT64_MAX) break;
    }
    return length;
}

bool begins_character(char byte) {
    return (byte & 0xC0) != 0x80;
}

std::size_t count_characters(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, begins_character));
}

// Writes up to a limit of bytes or characters, and up to the end of the caller's memory.
class Output {
public:
    Output(char* out, std::size_t size, std::size_t limit, bool counts_characters)
        : out_(out), size_(size), left_(limit == 0 ? SIZE_MAX : limit),
          counts_characters_(counts_characters) {}
    ~Output() {
        if (size_ != 0) out_[written_] = '\0';
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // All of a text or nothing.
    bool put(std::string_view text) {
        const std::size_t count = counts_characters_ ? count_characters(text) : text.size();
        if (count > left_) return false;
        if (left_ != SIZE_MAX) left_ -= count;
        append(text);
        return true;
    }

    // As many whole characters of a text as there is room for; returns their bytes.
    std::size_t put_run(std::string_view text) {
        if (left_ != SIZE_MAX) {
            std::size_t end = 0;
            for (std::size_t count = 0; end < text.size(); ++end) {
                count += !counts_characters_ || begins_character(text[end]);
                if (count > left_) break;
            }
            while (end < text.size() && !begins_character(text[end]))
                --end;
            text = {text.data(), end};
        }
        put(text);
        return text.size();
    }

    std::size_t length() const { return length_; }

    void clear() { written_ = 0; }

private:
    // What no longer fits into the memory is counted only; what is there ends with a whole character.
    void append(std::string_view text) {
        if (text.empty()) return; // it may be at null
        length_ += text.size();
        if (length_ < size_) {
            std::memcpy(out_ + written_, text.data(), text.size());
            written_ += text.size();
        } else if (size_ != 0) {
            std::size_t room = std::min(size_ - 1 - written_, text.size());
            while (room != 0 && room < text.size() && !begins_character(text[room]))
                --room;
            std::memcpy(out_ + written_, text.data(), room);
            written_ += room;
            size_ = written_ + 1;
        }
    }

    char* out_;
    std::size_t size_;
    std::size_t left_; // SIZE_MAX: no limit
    bool counts_characters_;
    std::size_t written_ = 0;
    std::size_t length_ = 0;
};

char32_t peek(const char* at, const char* end) {
    const char32_t character = next_character(at, end);
    return character == no_character ? 0 : character;
}

// What stands behind the marks of the letter before, of which there are few.
char32_t peek_behind_marks(const char* at, const char* end) {
    constexpr int most_marks = 4;
    for (int marks = 0; marks < most_marks && is_combining_mark(peek(at, end)); ++marks)
        next_character(at, end);
    return peek(at, end);
}

class Converter {
public:
    Converter(std::string_view text, Permitted permitted, Output& out)
        : text_(text), at_(text.data()), end_(at_ + text.size()), permitted_(permitted), out_(out) {}

    // False for what is not UTF-8.
    bool convert(sepa_text_report_t& report) {
        while (at_ != end_ && convert_run() && at_ != end_ && convert_character()) {
        }
        while (at_ != end_) {
            const char32_t lost = next_character(at_, end_);
            if (lost == no_character) return false;
            report_.cut += !is_combining_mark(lost); // a letter and its mark are lost as one
        }
        report = report_;
        return true;
    }

private:
    // What may stay as it is. False at the limit.
    bool convert_run() {
        std::size_t length = basic_run(rest());
        if (length == 0) length = next_run();
        // A mark belongs to the letter before it.
        if (length != 0 && is_combining_mark(peek(at_ + length, end_)))
            while (!begins_character(at_[--length])) {
            }
        const std::size_t written = out_.put_run({at_, length});
        at_ += written;
        if (written == length) {
            if (written != 0) find_last(at_ - written);
            return true;
        }
        note_change(at_);
        return false;
    }

    // The single bytes that Austria's rulebook takes are no texts.
    std::size_t next_run() const {
        constexpr std::size_t window = 64;
        const std::size_t length = permitted_.run({at_, std::min(rest().size(), window)});
        const char* const invalid = find_invalid_utf8({at_, length});
        return invalid == nullptr ? length : static_cast<std::size_t>(invalid - at_);
    }

    bool convert_character() {
        const char* const begin = at_;
        char32_t character = narrow(next_character(at_, end_));
        if (character == no_character) return false;
        for (const char* behind = at_; at_ != end_; at_ = behind) {
            const char32_t composed = compose(character, next_character(behind, end_));
            if (composed == 0) break;
            character = composed;
        }
        char utf8[4], buffer[longest_transliteration];
        std::string_view text(utf8, put_character(character, utf8));
        const bool stays = permitted_.holds(text);
        if (!stays) text = transliterate(character, before_, peek_behind_marks(at_, end_), buffer);
        if (!out_.put(text)) {
            at_ = begin;
            note_change(begin);
            return false;
        }
        if (!text.empty()) before_ = character;
        if (text == std::string_view(begin, static_cast<std::size_t>(at_ - begin))) return true;
        note_change(begin);
        ++(text == "." ? report_.replaced : report_.changed);
        return true;
    }

    void find_last(const char* from) {
        const char* last = at_ - 1;
        while (last != from && !begins_character(*last))
            --last;
        before_ = peek(last, end_);
    }

    void note_change(const char* at) {
        if (report_.first < 0)
            report_.first = static_cast<std::int32_t>(std::min<std::ptrdiff_t>(at - text_.data(), INT32_MAX));
    }

    std::string_view rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }

    std::string_view text_;
    const char* at_;
    const char* end_;
    Permitted permitted_;
    Output& out_;
    char32_t before_ = 0; // the character written last
    sepa_text_report_t report_ = {0, 0, 0, -1};
};

// The basic set is what the oldest rulebook permits in names.
Permitted permitted_by(std::uint32_t mode, const Rulebook& rulebook) {
    return {CharacterSet::name, mode == SEPA_TEXT_BASIC ? *find_rulebook("DE-2.6") : rulebook};
}

} // namespace
} // namespace velmora

using namespace velmora;

int sepa_text_convert(const char* text, uint32_t mode, size_t limit, char* out, size_t size,
                      sepa_text_report_t* report) {
    if (report != nullptr) *report = {0, 0, 0, -1};
    if (out == nullptr) size = 0;
    if (size != 0) *out = '\0';
    if (text == nullptr || mode > SEPA_TEXT_BASIC) return -1;
    const std::string_view input = text;

    settle_rulebook();
    const Rulebook& rulebook = *selected_rulebook();

    Output output(out, size, limit, counts_characters(rulebook));
    sepa_text_report_t done;
    if (!Converter(input, permitted_by(mode, rulebook), output).convert(done) || output.length() > INT_MAX) {
        output.clear();
        return -1;
    }
    if (report != nullptr) *report = done;
    return static_cast<int>(output.length());
}
