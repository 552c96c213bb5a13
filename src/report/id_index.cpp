#include "report/id_index.h"

#include <bit>
#include <cstring>

namespace velmora::report {
namespace {

// A file cannot be made so that its identifications fall together: `seed` is another one in each process.
std::uint64_t hash(std::string_view id, std::uint64_t seed) {
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
    std::uint64_t value = (seed + id.size()) * odd;
    for (; !id.empty(); id.remove_prefix(id.size() < 8 ? id.size() : 8)) {
        std::uint64_t word = 0;
        std::memcpy(&word, id.data(), id.size() < 8 ? id.size() : 8);
        value = (value ^ word) * odd;
        value ^= std::rotl(value, 29) + seed;
    }
    return value ^ value >> 32;
}

} // namespace

bool IdIndex::reserve(std::size_t items) {
    const std::size_t size = std::bit_ceil(items * 2 + 1);
    slots_.reset(static_cast<const sepa_report_item_t**>(std::calloc(size, sizeof(void*))));
    mask_ = size - 1;
    return slots_ != nullptr;
}

std::size_t IdIndex::find_slot(std::string_view id) const {
    std::size_t at = hash(id, reinterpret_cast<std::uintptr_t>(slots_.get())) & mask_;
    while (slots_[at] != nullptr && id != slots_[at]->endToEndId)
        at = (at + 1) & mask_;
    return at;
}

void IdIndex::add(const sepa_report_item_t& item) {
    const sepa_report_item_t*& slot = slots_[find_slot(item.endToEndId)];
    if (slot == nullptr) slot = &item;
}

const sepa_report_item_t* IdIndex::find(std::string_view id) const {
    return slots_ == nullptr ? nullptr : slots_[find_slot(id)];
}

} // namespace velmora::report
