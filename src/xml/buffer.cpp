#include "xml/buffer.h"

#include <cstdlib>

namespace velmora {
namespace {

constexpr std::uint64_t growth_step = 256;

int resize(sepa_buf_t* buffer, std::uint64_t size) {
    auto* data = static_cast<char*>(std::realloc(buffer->data, size));
    if (data == nullptr) return 0;
    buffer->data = data;
    buffer->size = size;
    return 1;
}

// What a byte becomes in element content; empty when it stays itself.
constexpr std::string_view replacement(char c) {
    switch (c) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    default:
        return {};
    }
}

} // namespace

int sepa_buf_start(sepa_buf_t* buffer, std::uint64_t size) {
    return resize(buffer, size);
}

int sepa_buf_grow(sepa_buf_t* buffer, std::uint64_t need) {
    if (buffer->size - buffer->len >= need) return 1;
    return resize(buffer, (buffer->len + need) / growth_step * growth_step + growth_step);
}

void sepa_buf_reserve(sepa_buf_t* buffer, std::uint64_t need) {
    if (buffer->size - buffer->len >= need) return;
    resize(buffer, (buffer->size + buffer->size / 2 + need) / growth_step * growth_step + growth_step);
}

int sepa_buf_append_escaped(sepa_buf_t* buffer, std::string_view text) {
    std::size_t escaped_length = text.size();
    for (const char c : text)
        if (const std::string_view r = replacement(c); !r.empty()) escaped_length += r.size() - 1;
    if (escaped_length == text.size()) return sepa_buf_append(buffer, text);

    if (!sepa_buf_grow(buffer, escaped_length + 1)) return 0;
    char* p = buffer->data + (buffer->len == 0 ? 0 : buffer->len - 1);
    for (const char c : text) {
        const std::string_view r = replacement(c);
        if (r.empty()) {
            *p++ = c;
        } else {
            std::memcpy(p, r.data(), r.size());
            p += r.size();
        }
    }
    *p++ = '\0';
    buffer->len = static_cast<std::uint64_t>(p - buffer->data);
    return 1;
}

} // namespace velmora
