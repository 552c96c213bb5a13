#include "statement/load.h"

namespace velmora {

LoadFunction* find_load_function(std::uint32_t format) {
    switch (format) {
    case SEPA_STMT_FORMAT_MT940:
        return load_mt940;
    case SEPA_STMT_FORMAT_CAMT:
        return load_camt;
    case SEPA_STMT_FORMAT_MT940_TOLERANT:
        return load_tolerant;
    default:
        return nullptr;
    }
}

} // namespace velmora
