// The payments of a report by their end-to-end identification.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "velmora.h"

namespace velmora::report {

class IdIndex {
public:
    // False without memory.
    bool reserve(std::size_t items);
    // Of several payments of one identification the first counts.
    void add(const sepa_report_item_t& item);
    // Null when there is none.
    const sepa_report_item_t* find(std::string_view id) const;
    void clear() { *this = {}; }

private:
    struct Free {
        void operator()(const sepa_report_item_t** slots) const { std::free(slots); }
    };

    // Where the item of this identification is, or the free slot for it.
    std::size_t find_slot(std::string_view id) const;

    std::unique_ptr<const sepa_report_item_t*[], Free> slots_; // a power of two of them, half are free
    std::size_t mask_ = 0;
};

} // namespace velmora::report
