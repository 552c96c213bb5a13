// Functions that the library is about to get; until then what it has answers in their place.
#pragma once

#include <cstdlib>
#include <cstring>
#include <velmora.h>

namespace velmora::tool {

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
