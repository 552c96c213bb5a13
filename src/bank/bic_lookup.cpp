// The bank behind a BIC, and the payment schemes in which it is reachable.
#include <cctype>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "bank/bank_record.h"
#include "bank/directory.h"
#include "velmora.h"

using namespace velmora;

namespace {
constexpr std::size_t kHeadOfficeLength = 8;
constexpr std::size_t kBicLength = 11;
} // namespace

int sepa_bic_getBank(const char* bic, sepa_bank_t** bank) {
    if (bic == nullptr) return -2;
    const std::size_t length = ::strnlen(bic, kBicLength + 1);
    if (length != kHeadOfficeLength && length != kBicLength) return -2;
    char key[kBicLength + 1] = "________XXX"; // the head office, unless a branch is given
    for (std::size_t i = 0; i < length; ++i) {
        const auto c = static_cast<unsigned char>(bic[i]);
        if (!std::isalnum(c)) return -2;
        key[i] = static_cast<char>(std::toupper(c));
    }
    const std::string_view record = directory_find({key, kBicLength});
    if (record.empty()) return -2;
    if (bank == nullptr) return 1;

    const auto flags = static_cast<std::uint8_t>(record[kBicLength]);
    // Deliberate: a BIC without any scheme has an empty name, because its flags byte ends the record's text
    // (callers rely on it).
    const char* name = flags == 0 ? "" : record.data() + kBicLength + 1;
    const char country[] = {key[4], key[5], '\0'};
    sepa_bank_t* result = make_bank_record(name, nullptr, nullptr, country, key, flags);
    if (result == nullptr) return -3;
    *bank = result;
    return 1;
}
