// One text made of several.
#pragma once

#include <string_view>

#include "base/file_memory.h"
#include "base/wiped_buffer.h"

namespace velmora {

// Pieces that are texts of the same file. One alone stays where it is; only a second one costs a copy.
class JoinedText {
public:
    // The piece has a zero byte behind it. False without memory.
    bool add(char* piece, std::size_t length, char separator) {
        if (first_ == nullptr) {
            first_ = piece;
            first_length_ = length;
            return true;
        }
        if (joined_.empty() && !joined_.append({first_, first_length_})) return false;
        return joined_.append({&separator, 1}) && joined_.append({piece, length});
    }

    bool empty() const { return first_ == nullptr; }
    std::size_t length() const { return joined_.empty() ? first_length_ : joined_.view().size(); }

    // Gives the text away, null when there was no piece. False without memory.
    bool take(RecordPool& pool, char*& text) {
        text = first_ == nullptr || joined_.empty() ? first_ : pool.copy_text(joined_.view());
        const bool done = first_ == nullptr || text != nullptr;
        clear();
        return done;
    }

    void clear() {
        first_ = nullptr;
        joined_.clear();
    }

private:
    char* first_ = nullptr;
    std::size_t first_length_ = 0;
    WipedBuffer joined_;
};

} // namespace velmora
