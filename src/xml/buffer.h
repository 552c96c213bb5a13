// The growable text into which a document is written.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace velmora {

struct sepa_buf_t {
    char* data = nullptr;   // zero-terminated once anything was appended
    std::uint64_t len = 0;  // bytes in use with the terminator; 0 for a buffer never written
    std::uint64_t size = 0; // bytes allocated
};

// Gives an empty buffer its first bytes. 0 without memory.
int sepa_buf_start(sepa_buf_t* buffer, std::uint64_t size);

// Makes room for `need` more bytes; 0 without memory, the buffer is then unchanged.
int sepa_buf_grow(sepa_buf_t* buffer, std::uint64_t need);

// Makes room ahead of many appends, so that a large document is not reallocated for every few hundred bytes.
// Nothing depends on its success.
void sepa_buf_reserve(sepa_buf_t* buffer, std::uint64_t need);

// Appends a text unchanged; a null text is a successful no-op. 0 when the buffer could not grow.
inline int sepa_buf_append(sepa_buf_t* buffer, std::string_view text) {
    if (text.data() == nullptr) return 1;
    const std::uint64_t need = text.size() + 1;
    if (buffer->size - buffer->len < need && !sepa_buf_grow(buffer, need)) return 0;
    char* end = buffer->data + (buffer->len == 0 ? 0 : buffer->len - 1);
    std::memcpy(end, text.data(), text.size());
    end[text.size()] = '\0';
    buffer->len += buffer->len == 0 ? need : text.size();
    return 1;
}

// Appends the texts in order. 0 at the first that finds no room; those before it stay appended.
template <typename... Texts>
inline int sepa_buf_append_strs(sepa_buf_t* buffer, const Texts&... texts) {
    return (sepa_buf_append(buffer, texts) && ...);
}

// Appends a text as XML element content: "<", ">" and "&" are replaced. 0 when the buffer could not grow; the
// text is left out then.
int sepa_buf_append_escaped(sepa_buf_t* buffer, std::string_view text);

} // namespace velmora
