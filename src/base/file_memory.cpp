#include "base/file_memory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "base/pages.h"

namespace velmora {
namespace {

constexpr std::size_t first_block = std::size_t{16} << 10;
constexpr std::size_t largest_block = std::size_t{8} << 20;

} // namespace

FileText FileText::allocate(std::size_t size) {
    FileText text;
    std::size_t whole = 0;
    if (__builtin_add_overflow(size, zeros_behind, &whole)) return text;
    text.data_ = static_cast<char*>(allocate_block(whole));
    if (text.data_ == nullptr) return text;
    text.size_ = size;
    std::memset(text.data_ + size, 0, zeros_behind);
    return text;
}

FileText::~FileText() {
    if (data_ != nullptr) release_block(data_, size_ + zeros_behind, size_);
}

void RecordPool::clear() {
    while (last_ != nullptr) {
        Block* previous = last_->previous;
        release_block(last_, last_->size, last_->size - left_); // the rest was never written
        left_ = 0;
        last_ = previous;
    }
}

bool RecordPool::owns(const void* address) const {
    const auto at = reinterpret_cast<std::uintptr_t>(address);
    for (const Block* block = last_; block != nullptr; block = block->previous) {
        const auto begin = reinterpret_cast<std::uintptr_t>(block + 1);
        if (at >= begin && at < begin + block->size - sizeof(Block)) return true;
    }
    return false;
}

char* RecordPool::copy_text(std::string_view text) {
    constexpr std::size_t step = alignof(Block);
    auto* copy = static_cast<char*>(take((text.size() + step) / step * step));
    if (copy != nullptr) text.copy(copy, text.size());
    return copy;
}

bool RecordPool::grow(std::size_t least) {
    const std::size_t usual = std::clamp(last_ == nullptr ? 0 : last_->size * 2, first_block, largest_block);
    const std::size_t size = std::max(usual, sizeof(Block) + least);
    auto* block = static_cast<Block*>(allocate_block(size));
    if (block == nullptr) return false;
    if (size < smallest_pages) std::memset(block, 0, size);
    block->previous = last_;
    block->size = size;
    last_ = block;
    free_ = reinterpret_cast<char*>(block + 1);
    left_ = size - sizeof(Block);
    return true;
}

} // namespace velmora
