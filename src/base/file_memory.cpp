#include "base/file_memory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>

namespace velmora {
namespace {

constexpr std::size_t first_block = std::size_t{16} << 10;
constexpr std::size_t largest_block = std::size_t{8} << 20;

// Large files cost more time in page faults than in reading otherwise. Only a hint: its failure is ignored.
void prefer_huge_pages(void* block, std::size_t size) {
    constexpr std::uintptr_t huge_page = std::uintptr_t{2} << 20;
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t skipped = (huge_page - address % huge_page) % huge_page;
    if (size < skipped + huge_page) return;
    madvise(static_cast<char*>(block) + skipped, (size - skipped) / huge_page * huge_page, MADV_HUGEPAGE);
}

} // namespace

FileText FileText::allocate(std::size_t size) {
    FileText text;
    if (size == SIZE_MAX) return text;
    text.data_ = static_cast<char*>(std::malloc(size + 1));
    if (text.data_ == nullptr) return text;
    text.size_ = size;
    text.data_[size] = '\0';
    prefer_huge_pages(text.data_, size + 1);
    return text;
}

FileText::~FileText() {
    if (data_ == nullptr) return;
    explicit_bzero(data_, size_);
    std::free(data_);
}

void RecordPool::clear() {
    while (last_ != nullptr) {
        Block* previous = last_->previous;
        explicit_bzero(last_, last_->size - left_); // the rest was never written
        left_ = 0;
        std::free(last_);
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
    auto* block = static_cast<Block*>(std::calloc(1, size));
    if (block == nullptr) return false;
    prefer_huge_pages(block, size);
    block->previous = last_;
    block->size = size;
    last_ = block;
    free_ = reinterpret_cast<char*>(block + 1);
    left_ = size - sizeof(Block);
    return true;
}

void* RecordPool::take(std::size_t size) {
    if (left_ < size && !grow(size)) return nullptr;
    void* record = free_;
    free_ += size;
    left_ -= size;
    return record;
}

} // namespace velmora
