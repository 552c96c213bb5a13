// Functions that the library is about to get; until then what it has answers in their place.
#pragma once

#include <cstdlib>
#include <cstring>
#include <velmora.h>

namespace velmora::tool {

enum {
    SEPA_FINDING_OK = 0,
    SEPA_FINDING_EMPTY = 1,
    SEPA_FINDING_COUNTRY = 2,
    SEPA_FINDING_TOO_SHORT = 3,
    SEPA_FINDING_TOO_LONG = 4,
    SEPA_FINDING_CHARACTER = 5,
    SEPA_FINDING_CLASS = 6,
    SEPA_FINDING_CHECK_DIGITS = 7,
    SEPA_FINDING_BANK_CODE = 8,
    SEPA_FINDING_ACCOUNT = 9,
    SEPA_FINDING_UNCHECKED = 15
};
struct sepa_finding_t {
    int32_t code, position, length, expected;
    char method[3];
    const char* text;
};

inline int sepa_iban_explain(const char* iban, sepa_finding_t* finding) {
    const int result = sepa_iban_check(iban);
    *finding = sepa_finding_t{result == 1 ? SEPA_FINDING_OK : SEPA_FINDING_CHECK_DIGITS,
                              -1,
                              0,
                              0,
                              "",
                              result == 1 ? "" : "Invalid IBAN"};
    return result;
}
inline int sepa_bic_explain(const char* bic, sepa_finding_t* finding) {
    const int result = sepa_bic_getBank(bic, nullptr) == 1 ? 1 : -1;
    *finding = sepa_finding_t{result == 1 ? SEPA_FINDING_OK : SEPA_FINDING_CHARACTER,
                              -1,
                              0,
                              0,
                              "",
                              result == 1 ? "" : "Invalid BIC"};
    return result;
}
inline int sepa_account_explain(const char* account, const char* bank_code, sepa_finding_t* finding) {
    const int result = sepa_iban_convert("DE", account, bank_code, nullptr, nullptr) == 1 ? 1 : -1;
    *finding = sepa_finding_t{result == 1 ? SEPA_FINDING_UNCHECKED : SEPA_FINDING_ACCOUNT,
                              -1,
                              0,
                              0,
                              "",
                              result == 1 ? "" : "Invalid account"};
    return result;
}
inline int sepa_iban_suggest(const char*, char*, size_t) {
    return 0;
}
inline int sepa_iban_convert2(const char* country, const char* account, const char* bank_code, char* iban,
                              int* status, int* account_result) {
    uint8_t small = 0;
    const int result = sepa_iban_convert(country, account, bank_code, iban, &small);
    *status = small;
    *account_result = 0;
    return result;
}
inline int sepa_iban_normalise(const char*, char*, size_t) {
    return -1;
}

struct sepa_report_t;
enum { SEPA_REPORT_GROUP = 0, SEPA_REPORT_BLOCK = 1, SEPA_REPORT_PAYMENT = 2 };
struct sepa_report_item_t {
    uint8_t level;
    char status[5];
    char *messageId, *messageName, *blockId, *instructionId, *endToEndId, *uetr, *statusId, *reference,
        *reason, *reasons, *text;
    double amount;
    char currency[4];
    uint32_t count;
    char* name;
    char iban[35];
    sepa_report_item_t* next;
};
inline sepa_report_t* sepa_report_new() {
    return reinterpret_cast<sepa_report_t*>(1);
}
inline int sepa_report_loadMemory(sepa_report_t*, const char*, size_t) {
    return 0;
}
inline const sepa_report_item_t* sepa_report_getItem(sepa_report_t*) {
    return nullptr;
}
inline int sepa_report_match(const sepa_report_t*, const char*, const sepa_report_item_t**) {
    return 0;
}
inline const char* sepa_report_getError(sepa_report_t*) {
    return "";
}
inline void sepa_report_free(sepa_report_t*) {}
inline const char* sepa_reason_text(const char*) {
    return nullptr;
}

} // namespace velmora::tool
