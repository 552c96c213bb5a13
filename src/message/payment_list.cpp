#include "message/payment_list.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "base/pages.h"

namespace velmora {
namespace {

constexpr std::size_t first_block = std::size_t{1} << 10;
constexpr std::size_t largest_block = std::size_t{8} << 20;

Field lowest(FieldSet set) {
    return static_cast<Field>(std::countr_zero(set));
}

} // namespace

std::string_view StoredPayment::operator[](Field field) const {
    const FieldSet bit = fields(field);
    if ((present_ & bit) == 0) return {};
    const int index = std::popcount(present_ & (bit - 1));
    const std::size_t begin = index == 0 ? 0 : ends()[index - 1];
    return {texts() + begin, ends()[index] - begin};
}

Payment StoredPayment::read() const {
    Payment payment;
    static_cast<PaymentNumbers&>(payment) = numbers_;
    const std::uint16_t* end = ends();
    std::size_t begin = 0;
    for (FieldSet left = present_; left != 0; left &= left - 1, begin = *end++)
        payment.set(lowest(left), {texts() + begin, *end - begin});
    return payment;
}

PaymentList::~PaymentList() {
    while (block_ != nullptr) {
        Block* previous = block_->previous;
        release_block(block_, block_->size, block_->size - left_); // the rest was never written
        left_ = 0;
        block_ = previous;
    }
}

void* PaymentList::take(std::size_t size) {
    constexpr std::size_t alignment = alignof(StoredPayment);
    size = (size + alignment - 1) / alignment * alignment;
    if (left_ < size) {
        // A quarter of what there is, so that little of it stays unused.
        const std::size_t usual = std::clamp(allocated_ / 4, first_block, largest_block);
        const std::size_t block_size = std::max(usual, sizeof(Block) + size);
        auto* block = static_cast<Block*>(allocate_block(block_size));
        if (block == nullptr) return nullptr;
        *block = {block_, block_size};
        block_ = block;
        free_ = reinterpret_cast<char*>(block + 1);
        left_ = block_size - sizeof(Block);
        allocated_ += block_size;
    }
    left_ -= size;
    return std::exchange(free_, free_ + size);
}

bool PaymentList::append(const Payment& payment) {
    std::size_t text_count = 0, text_size = 0;
    for (FieldSet left = payment.present(); left != 0; left &= left - 1, ++text_count)
        text_size += payment[lowest(left)].size();
    auto* stored = static_cast<StoredPayment*>(
        take(sizeof(StoredPayment) + text_count * sizeof(std::uint16_t) + text_size));
    if (stored == nullptr) return false;

    *stored = {};
    stored->numbers_ = payment;
    stored->present_ = payment.present();
    stored->text_count_ = text_count;
    auto* end = const_cast<std::uint16_t*>(stored->ends());
    char* const texts = const_cast<char*>(stored->texts());
    char* to = texts;
    for (FieldSet left = payment.present(); left != 0; left &= left - 1) {
        const std::string_view text = payment[lowest(left)];
        std::memcpy(to, text.data(), text.size());
        to += text.size();
        *end++ = static_cast<std::uint16_t>(to - texts);
    }

    (last_ == nullptr ? first_ : last_->next_) = stored;
    last_ = stored;
    ++count_;
    text_count_ += text_count;
    text_size_ += text_size;
    return true;
}

void PaymentList::return_to(const End& end) {
    last_ = end.last;
    (last_ == nullptr ? first_ : last_->next_) = nullptr;
    count_ = end.count;
    text_count_ = end.text_count;
    text_size_ = end.text_size;
}

} // namespace velmora
