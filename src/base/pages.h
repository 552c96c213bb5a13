// Large blocks of memory from the kernel itself. It clears pages before it gives them to anybody again, so
// their owner need not wipe them.
#pragma once

#include <cstddef>

namespace velmora {

// From this size on pages are worth their two calls of the kernel.
inline constexpr std::size_t smallest_pages = std::size_t{1} << 20;

// Zero-filled, huge where the system can; null without memory.
void* map_pages(std::size_t size);

void unmap_pages(void* pages, std::size_t size);

// Large blocks are pages; small ones are wiped, as far as they were used, before they are released. Null
// without memory.
void* allocate_block(std::size_t size);
void release_block(void* block, std::size_t size, std::size_t used);

// The hint alone, for memory of malloc(): its failure is ignored.
void prefer_huge_pages(void* block, std::size_t size);

} // namespace velmora
