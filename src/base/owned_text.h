// A text that its owner copies, and wipes before it frees it.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace velmora {

// One pointer wide: the length stands in front of the text. Null when nothing is set, which is not the same
// as an empty text.
class OwnedText {
public:
    OwnedText() = default;
    OwnedText(OwnedText&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    OwnedText& operator=(OwnedText&& other) noexcept {
        if (this != &other) {
            reset();
            text_ = std::exchange(other.text_, nullptr);
        }
        return *this;
    }
    ~OwnedText() { reset(); }

    // Copies a text, which may overlap the present one, and releases that. False without memory: what was set
    // stays.
    bool assign(std::string_view text) {
        const std::size_t length = text.size();
        auto* block = static_cast<char*>(std::malloc(header_size + length + 1));
        if (block == nullptr) return false;
        std::memcpy(block, &length, header_size);
        std::memcpy(block + header_size, text.data(), length);
        block[header_size + length] = '\0';
        reset();
        text_ = block + header_size;
        return true;
    }

    void reset() {
        if (text_ == nullptr) return;
        explicit_bzero(text_, size());
        std::free(text_ - header_size);
        text_ = nullptr;
    }

    explicit operator bool() const { return text_ != nullptr; }
    const char* c_str() const { return text_; }
    std::string_view view() const {
        return text_ == nullptr ? std::string_view() : std::string_view(text_, size());
    }

private:
    static constexpr std::size_t header_size = sizeof(std::size_t);

    std::size_t size() const {
        std::size_t length;
        std::memcpy(&length, text_ - header_size, header_size);
        return length;
    }

    char* text_ = nullptr;
};

} // namespace velmora
