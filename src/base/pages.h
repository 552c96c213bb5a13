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

} // namespace velmora
