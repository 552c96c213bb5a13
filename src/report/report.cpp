#include "report/report.h"

#include <cstdlib>
#include <memory>
#include <new>

#include "base/file.h"
#include "report/reading.h"

using namespace velmora;

namespace {

// Gives a report that has not been used its text; `get` gets it from wherever it lies.
template <typename Get>
int load(sepa_report_t* report, Get get) {
    if (report == nullptr) return 0;
    if (report->is_used) return report->error.fail("Report already used");
    report->is_used = true;
    report->text = get(report->error);
    if (!report->text) return 0;
    if (report::read(*report)) return 1;

    report->first = report->last = nullptr;
    report->index.clear();
    report->items.clear();
    report->text = {};
    return 0;
}

} // namespace

sepa_report_t* sepa_report_new(void) {
    void* const report = std::malloc(sizeof(sepa_report_t));
    return report == nullptr ? nullptr : new (report) sepa_report_t;
}

int sepa_report_load(sepa_report_t* report, const char* path) {
    return load(report, [&](ErrorText& error) { return read_file(path, error); });
}

int sepa_report_loadMemory(sepa_report_t* report, const char* data, size_t size) {
    return load(report, [&](ErrorText& error) { return copy_bytes(data, size, error); });
}

const sepa_report_item_t* sepa_report_getItem(sepa_report_t* report) {
    return report == nullptr ? nullptr : report->first;
}

int sepa_report_match(const sepa_report_t* report, const char* endToEndId, const sepa_report_item_t** item) {
    const sepa_report_item_t* found = nullptr;
    if (report != nullptr && endToEndId != nullptr) {
        found = report->index.find(endToEndId);
        if (found == nullptr) found = report->refused;
    }
    if (item != nullptr) *item = found;
    return found != nullptr ? 1 : 0;
}

const char* sepa_report_getError(sepa_report_t* report) {
    return report == nullptr ? "invalid sepa_report_t handle" : report->error.text;
}

void sepa_report_free(sepa_report_t* report) {
    if (report == nullptr) return;
    std::destroy_at(report);
    std::free(report);
}
