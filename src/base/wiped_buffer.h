// A growing text that wipes what it leaves behind.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#include "base/file_memory.h"

namespace velmora {

class WipedBuffer {
public:
    std::string_view view() const { return {text_.data(), used_}; }
    bool empty() const { return used_ == 0; }
    void clear() { used_ = 0; }

    // Room behind the text, `room()` bytes of it; what is written there counts once it is added.
    char* end() { return text_.data() + used_; }
    std::size_t room() const { return text_.size() - used_; }
    void add(std::size_t written) { used_ += written; }

    // Makes room for so many bytes behind the text. False without memory; the text is then as it was.
    bool reserve(std::size_t more) {
        if (more <= room()) return true;
        FileText larger = FileText::allocate(used_ + (more > used_ ? more : used_));
        if (!larger) return false;
        if (used_ != 0) std::memcpy(larger.data(), text_.data(), used_);
        text_ = std::move(larger);
        return true;
    }

    bool append(std::string_view piece) {
        if (!reserve(piece.size())) return false;
        if (!piece.empty()) std::memcpy(end(), piece.data(), piece.size());
        used_ += piece.size();
        return true;
    }

    // The text with a zero byte behind it, for which the caller has made room; the buffer is empty then.
    FileText release() {
        text_.data()[used_] = '\0';
        used_ = 0;
        return std::move(text_);
    }

private:
    FileText text_;
    std::size_t used_ = 0;
};

} // namespace velmora
