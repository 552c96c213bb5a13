// Feeds arbitrary files to the reader of status reports. Every text of every item is read; each payment is
// matched with an item of its identification; a load that fails has a text and no items.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "velmora.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sepa_report_t* const report = sepa_report_new();
    const int loaded = sepa_report_loadMemory(report, reinterpret_cast<const char*>(data), size);
    const sepa_report_item_t* item = sepa_report_getItem(report);
    if ((loaded == 1) != (*sepa_report_getError(report) == '\0') || (loaded == 0 && item != nullptr))
        std::abort();
    std::size_t length = 0;
    for (; item != nullptr; item = item->next) {
        for (const char* text : {item->messageId, item->messageName, item->blockId, item->instructionId,
                                 item->uetr, item->statusId, item->reference, item->reason, item->reasons,
                                 item->text, item->name, item->mandate})
            if (text != nullptr) length += std::strlen(text);
        length += std::strlen(item->status) + std::strlen(item->currency) + std::strlen(item->iban) +
                  std::strlen(item->date);
        const sepa_report_item_t* found = nullptr;
        if (item->endToEndId == nullptr) continue;
        if (sepa_report_match(report, item->endToEndId, &found) != 1 ||
            std::strcmp(found->endToEndId, item->endToEndId) != 0)
            std::abort();
    }
    if (length == SIZE_MAX) std::abort(); // the texts have been read
    sepa_report_free(report);
    return 0;
}
