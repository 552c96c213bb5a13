// The handle of a status report.
#pragma once

#include <cstddef>

#include "base/error_text.h"
#include "base/file_memory.h"
#include "report/id_index.h"
#include "velmora.h"

struct sepa_report {
    velmora::ErrorText error{};
    bool is_used = false;
    velmora::FileText text;
    velmora::RecordPool items;
    sepa_report_item_t* first = nullptr;
    sepa_report_item_t* last = nullptr;
    velmora::report::IdIndex index;
    const sepa_report_item_t* refused = nullptr; // what answers for payments that the report does not name
};
