// The bank behind a BIC, and the payment schemes in which it is reachable.
#include <cctype>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "bank/bank_record.h"
#include "bank/bic.h"
#include "bank/directory.h"
#include "velmora.h"

using namespace velmora;

namespace {

bool is_capital_or_digit(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

} // namespace

int sepa_bic_getBank(const char* bic, sepa_bank_t** bank) {
    if (bic == nullptr) return -2;
    const std::size_t length = ::strnlen(bic, bic_length + 1);
    if (length != head_office_bic_length && length != bic_length) return -2;
    char key[bic_length + 1] = "________XXX"; // the head office, unless a branch is given
    for (std::size_t i = 0; i < length; ++i) {
        key[i] = bic[i];
        if (is_capital_or_digit(key[i])) continue; // the usual case, and the same in every locale
        const auto c = static_cast<unsigned char>(bic[i]);
        if (!std::isalnum(c)) return -2;
        key[i] = static_cast<char>(std::toupper(c));
    }
    const std::string_view record = directory_find({key, bic_length});
    if (record.empty()) return -2;
    if (bank == nullptr) return 1;

    const auto flags = static_cast<std::uint8_t>(record[bic_length]);
    std::string_view name = record;
    name.remove_prefix(bic_length + 1);
    // Deliberate: a BIC without any scheme has an empty name, because the flags byte 0 ends the record's text
    // (callers rely on it).
    if (flags == 0) name.remove_suffix(name.size());
    sepa_bank_t* result = make_bank_record(name, {}, {}, {key + 4, 2}, {key, bic_length}, flags);
    if (result == nullptr) return -3;
    *bank = result;
    return 1;
}
