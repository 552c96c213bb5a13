// The numbered subfields of a field ":86:".
#pragma once

#include <algorithm>
#include <cstddef>

#include "statement/scan.h"

namespace velmora {

struct Subfield {
    static constexpr std::ptrdiff_t marker_length = 3; // "?" and two digits

    int number;
    char* marker;

    char* content() const { return marker + marker_length; }
};

inline bool is_marker(const char* at, const char* end) {
    return end - at >= Subfield::marker_length && is_digit(at[1]) && is_digit(at[2]);
}

// The subfields of a text, in its order and that of their numbers. Built in one pass over the markers.
class Subfields {
public:
    Subfields(char* begin, char* end, int largest) {
        visit_characters(begin, end, '?', '?', [&](char* at) {
            if (is_marker(at, end) && two_digits(at + 1) <= largest) add({two_digits(at + 1), at});
        });
    }

    const Subfield* begin() const { return list_; }
    const Subfield* end() const { return list_ + count_; }

private:
    // A marker with a greater number than the last one ends its subfield; other markers belong to a content.
    // Deliberate: where the number after a subfield's own is met again, the subfield goes on up to there and
    // what stood between becomes content: texts with a "?21" of their own are read that way.
    void add(const Subfield& subfield) {
        if (count_ != 0 && subfield.number <= list_[count_ - 1].number) {
            const auto lower = [](const Subfield& listed, int number) { return listed.number < number; };
            const Subfield* before = std::lower_bound(begin(), end(), subfield.number - 1, lower);
            if (before->number != subfield.number - 1) return;
            count_ = before + 1 - begin();
        }
        list_[count_++] = subfield;
    }

    Subfield list_[100]; // one for each number at most
    std::ptrdiff_t count_ = 0;
};

inline bool is_purpose(int number) {
    return (number >= 20 && number <= 29) || (number >= 60 && number <= 63);
}

} // namespace velmora
