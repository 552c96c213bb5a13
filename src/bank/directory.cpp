#include "bank/directory.h"

namespace velmora {
int directory_hash(std::string_view) { return -1; }
std::string_view directory_record(int) { return {}; }
int directory_size() { return 0; }
int directory_lookup(const char*, const char*, DirectoryEntry*) { return 0; }
}  // namespace velmora
