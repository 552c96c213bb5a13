#include "base/pages.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>

namespace velmora {
namespace {

constexpr std::size_t huge_page = std::size_t{2} << 20;

} // namespace

void* map_pages(std::size_t size) {
    // A huge page more than asked for, so that a place at a huge page's boundary is among them.
    std::size_t whole = 0;
    if (__builtin_add_overflow(size, huge_page, &whole)) return nullptr;
    void* const mapped = mmap(nullptr, whole, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) return nullptr;
    auto* const begin = static_cast<char*>(mapped);
    const std::size_t before = (0 - reinterpret_cast<std::uintptr_t>(begin)) % huge_page;
    constexpr std::size_t page = 4096;
    const std::size_t used = before + (size + page - 1) / page * page;
    if (before != 0) munmap(begin, before);
    if (used < whole) munmap(begin + used, whole - used);
    // Large files cost more time in page faults than in reading otherwise. Only a hint: its failure is
    // ignored.
    madvise(begin + before, size, MADV_HUGEPAGE);
    return begin + before;
}

void unmap_pages(void* pages, std::size_t size) {
    munmap(pages, size);
}

void* allocate_block(std::size_t size) {
    return size >= smallest_pages ? map_pages(size) : std::malloc(size);
}

void release_block(void* block, std::size_t size, std::size_t used) {
    if (size >= smallest_pages) {
        unmap_pages(block, size);
    } else {
        explicit_bzero(block, used);
        std::free(block);
    }
}

void prefer_huge_pages(void* block, std::size_t size) {
    const std::size_t skipped = (0 - reinterpret_cast<std::uintptr_t>(block)) % huge_page;
    if (size < skipped + huge_page) return;
    madvise(static_cast<char*>(block) + skipped, (size - skipped) / huge_page * huge_page, MADV_HUGEPAGE);
}

} // namespace velmora
