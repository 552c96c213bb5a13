// Entry points of the account check: the account is normalised, its method looked up and run.

#include <cstring>

#include "checkdigit/methods.h"
#include "velmora.h"

namespace velmora {
namespace {

constexpr MethodRoutine no_method = nullptr;

// Indexed by the two hexadecimal digits of the method code. A row names its columns 0 to 9; the columns A to
// F stay empty. 52, 53, B6 and C0 are not here: they need the bank code.
constexpr MethodRoutine method_table[16][16] = {
    {method_00, method_01, method_02, method_03, method_04, method_05, method_06, method_07, method_08,
     method_09},
    {method_10, method_11, no_method, method_13, method_14, method_15, method_16, method_17, method_18,
     method_19},
    {method_20, method_21, method_22, method_23, method_24, method_25, method_26, method_27, method_28,
     method_29},
    {method_30, method_31, method_32, method_33, method_34, no_method, no_method, no_method, method_38,
     no_method},
    {method_40, method_41, method_42, method_43, method_44, method_45, method_46, method_47, method_48,
     method_49},
    {method_50, method_51, no_method, no_method, no_method, method_55, method_56, method_57, method_58,
     method_59},
    {method_60, method_61, no_method, method_63, method_64, method_65, method_66, method_67, method_68,
     no_method},
    {no_method, method_71, no_method, method_73, method_74, method_75, method_76, no_method, method_78,
     no_method},
    {no_method, method_81, no_method, no_method, method_84, method_85, no_method, method_87, method_88,
     no_method},
    {method_90, method_91, method_92, method_93, method_94, method_95, method_96, no_method, method_98,
     method_99},
    {no_method, method_A1, method_A2, method_A3, method_A4, method_A5, method_A6, method_A7, method_A8,
     method_A9},
    {no_method, method_B1, method_B2, method_B3, no_method, method_B5, no_method, method_B7, method_B8,
     method_B9},
    {no_method, method_C1, method_C2, method_C3, method_C4, method_C5, method_C6, method_C7, method_C8,
     method_C9},
    {method_D0, method_D1, method_D2, method_D3, method_D4, method_D5, method_D6, method_D7, method_D8,
     method_D9},
    {method_E0, method_E1, method_E2, method_E3, method_E4, no_method, no_method, no_method, no_method,
     no_method},
};

CheckResult check_with_bank_code(const char* account, const char* bank_code, std::uint8_t method) {
    switch (method) {
    case 0x52:
        return method_52(account, bank_code);
    case 0x53:
        return method_53(account, bank_code);
    case 0xB6:
        return method_B6(account, bank_code);
    case 0xC0:
        return method_C0(account, bank_code);
    default:
        return account_not_checkable;
    }
}

// The account as the routines read it. Ten characters stand as they are, shorter accounts are filled up with
// zeros on the left.
class NormalisedAccount {
public:
    explicit NormalisedAccount(const char* account) {
        const std::size_t length = account ? std::strlen(account) : 0;
        if (length == 0 || length > account_length) return;
        if (length == account_length) {
            text_ = account;
            return;
        }
        std::memset(padded_, '0', account_length);
        std::memcpy(padded_ + account_length - length, account, length + 1);
        text_ = padded_;
    }
    NormalisedAccount(const NormalisedAccount&) = delete;
    NormalisedAccount& operator=(const NormalisedAccount&) = delete;

    // Null for an account that is missing, empty or too long.
    const char* text() const { return text_; }

private:
    const char* text_ = nullptr;
    char padded_[account_length + 1];
};

} // namespace
} // namespace velmora

// The routine is fetched first: measuring the texts hides the time that the processor needs to jump there.
int sepa_account_check(const char* account, uint8_t method) {
    using namespace velmora;
    const MethodRoutine routine = method_table[method >> 4][method & 15];
    const NormalisedAccount normalised(account);
    if (!normalised.text()) return account_invalid;
    return routine ? routine(normalised.text()) : account_not_checkable;
}

int sepa_account_check2(const char* account, const char* bank_code, uint8_t method) {
    using namespace velmora;
    const MethodRoutine routine = method_table[method >> 4][method & 15];
    const NormalisedAccount normalised(account);
    if (!normalised.text() || !bank_code || std::strlen(bank_code) != bank_code_length)
        return account_invalid;
    return routine ? routine(normalised.text()) : check_with_bank_code(normalised.text(), bank_code, method);
}
