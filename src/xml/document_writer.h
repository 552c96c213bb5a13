// The text of a document, written line by line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace velmora {

// Without memory every later line is left out, and release() gives nothing. What is not released is wiped,
// and so is what a growing text leaves behind.
class DocumentWriter {
public:
    // Begins with room for so many bytes.
    explicit DocumentWriter(std::size_t expected_size);
    ~DocumentWriter();
    DocumentWriter(const DocumentWriter&) = delete;
    DocumentWriter& operator=(const DocumentWriter&) = delete;

    // Texts as they stand, one behind the other; one that is not set leaves its place empty.
    template <typename... Texts>
    void line(const Texts&... texts) {
        append(std::string_view(texts)...);
    }

    // A line with a text in XML: "<", ">" and "&" are replaced. Nothing when the text is at null.
    void escaped(std::string_view open, std::string_view text, std::string_view close) {
        if (text.data() != nullptr) escaped_line(open, text, close);
    }
    void escaped_line(std::string_view open, std::string_view text, std::string_view close);

    // With two decimals.
    void amount(std::string_view open, double euros, std::string_view close);
    void cents(std::string_view open, std::int64_t cents, std::string_view close);
    void number(std::string_view open, std::uint64_t number, std::string_view close);

    // The zero-terminated text, to be released with free(), or null without memory.
    char* release();

private:
    template <typename... Texts>
    void append(Texts... texts) {
        if (!has_room((texts.size() + ...))) return;
        (put(texts), ...);
    }
    void put(std::string_view text) {
        if (text.empty()) return; // it may be at null
        std::memcpy(end_, text.data(), text.size());
        end_ += text.size();
    }

    // One byte more is kept for the terminator.
    bool has_room(std::size_t size) { return size < static_cast<std::size_t>(limit_ - end_) || grow(size); }
    bool grow(std::size_t size);
    void discard();

    char* begin_ = nullptr; // null without memory
    char* end_ = nullptr;
    char* limit_ = nullptr;
};

} // namespace velmora
