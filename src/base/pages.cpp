#include "base/pages.h"

#include <cstdint>
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

} // namespace velmora
