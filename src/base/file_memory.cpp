#include "base/file_memory.h"

#include <algorithm>
#include <cstdint>
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

FileText allocate_text(std::size_t size) {
    FileText text(static_cast<char*>(std::malloc(size)), {size});
    if (text != nullptr) prefer_huge_pages(text.get(), size);
    return text;
}

RecordPool::~RecordPool() {
    while (last_ != nullptr) {
        Block* previous = last_->previous;
        explicit_bzero(last_, last_->size - left_); // the rest was never written
        left_ = 0;
        std::free(last_);
        last_ = previous;
    }
}

bool RecordPool::grow() {
    const std::size_t size = std::clamp(last_ == nullptr ? 0 : last_->size * 2, first_block, largest_block);
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
    if (left_ < size && !grow()) return nullptr;
    void* record = free_;
    free_ += size;
    left_ -= size;
    return record;
}

} // namespace velmora
