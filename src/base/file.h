// Reading a whole file, or a caller's bytes in its place, into memory.
#pragma once

#include <cstddef>

#include "base/error_text.h"
#include "base/file_memory.h"

namespace velmora {

// Null with the reason in `error`.
FileText read_file(const char* path, ErrorText& error);

// The same for bytes that lie in memory already; they are copied.
FileText copy_bytes(const char* data, std::size_t size, ErrorText& error);

} // namespace velmora
